// Names, colours and numbers of areas in the main window.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/shapes/area_look.h"
#include "platform/color_dialog.h"

namespace pavane
{

int MainWindow::runAreaCommand(unsigned id)
{
    if (!map_)
        return 0;
    switch (id) {
    case idAreaNumbers:
        return toggleAreaNumbers(), 1;
    case idAreaName:
        return askAreaName(), 1;
    case idAreaColour:
        return askAreaColour(), 1;
    case idAreaNoColour:
        return (void)areas().SetLabels(&view(), labelledAreas(), {}, 0, 1), 1;
    case idAreaNames:
        return view().SetAreaNames(!view().GetAreaNames()), 1;
    case idEmptyArea:
    case idNumbersOfPlanes:
        if (!areaNumbers_.isShown())
            toggleAreaNumbers();
        return areaNumbers_.RunTableCommand(id);
    default:
        return 0;
    }
}

void MainWindow::showAreaCommands(CMenu& popup)
{
    const int hasAreas = map_ && !areas().SelectedItems().empty();
    for (CMenu::Line& line : popup.lines())
        if (line.id == idAreaName || line.id == idAreaColour || line.id == idAreaNoColour)
            line.enabled = hasAreas;
        else if (line.id == idAreaNumbers)
            line.checked = areaNumbers_.isShown();
        else if (line.id == idAreaNames)
            line.checked = view().GetAreaNames();
        else if (line.id == idEmptyArea) {
            line.enabled = map_ && areas().count() > 0;
            line.checked = areaNumbers_.emptyArea() >= 0;
        } else if (line.id == idNumbersOfPlanes) {
            line.enabled = isCube();
            line.checked = areaNumbers_.isShown() && areaNumbers_.isOfAllPlanes();
        }
}

void MainWindow::toggleAreaNumbers()
{
    const int shown = !areaNumbers_.isShown();
    if (!shown && !areaNumbers_.storeEditor())
        return;
    if (!shown && part() == Part::areaNumbers)
        view().SetFocus();
    areaNumbers_.Show(shown);
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    if (shown)
        areaNumbers_.SetFocus();
}

/// Those that are selected; says so when there are none.
std::vector<int> MainWindow::labelledAreas()
{
    std::vector<int> items = areas().SelectedItems();
    if (items.empty())
        status_.SetMessage("Choose an area first");
    return items;
}

void MainWindow::askAreaName()
{
    const std::vector<int> items = labelledAreas();
    if (items.empty())
        return;
    CString name = areas().Label(items.front()).name;
    const CString title = items.size() == 1 ? "Name of the area" : "Name of the areas";
    if (!askText(this, title, "Name", name))
        return;
    AreaLabel label;
    label.name = fittingName(name);
    (void)areas().SetLabels(&view(), items, label, 1, 0);
}

void MainWindow::askAreaColour()
{
    const std::vector<int> items = labelledAreas();
    if (items.empty())
        return;
    COLORREF color = areaLineColor(areas().Label(items.front()).colour,
                                   areas().trackerAt(items.front())->IsNeverClean());
    if (!AskColor(color, "Colour of areas", this))
        return;
    AreaLabel label;
    label.colour = GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color);
    (void)areas().SetLabels(&view(), items, label, 0, 1);
}

}  // namespace pavane

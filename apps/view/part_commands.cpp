// The parts of the window: whose commands the menu and the keys mean, and the table of components.
#include "apps/view/MainWindow.h"
#include "apps/view/part_menu.h"
#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"

namespace pavane
{

/// Null for the map, and for a table that does not show.
ATableWnd* MainWindow::tableOf(Part part)
{
    if (part == Part::numbers && showTable_)
        return &table_;
    if (part == Part::areaNumbers && areaNumbers_.isShown())
        return &areaNumbers_;
    return part == Part::model && model_.session().isOpen() ? &model_.table() : nullptr;
}

/// The part with the keyboard, or that had it before a menu or a button.
Part MainWindow::part()
{
    const CWnd* const focus = CWnd::GetFocus();
    if (isWithin(focus, &view()))
        part_ = Part::map;
    else if (isWithin(focus, &table_))
        part_ = Part::numbers;
    else if (isWithin(focus, &areaNumbers_))
        part_ = Part::areaNumbers;
    else if (isWithin(focus, &model_.table()))
        part_ = Part::model;
    else if (isWithin(focus, &curves_))
        part_ = Part::curves;
    else if (isWithin(focus, &planes_))
        part_ = Part::planes;
    else if (isWithin(focus, &surface_.window()))
        part_ = Part::surface;
    return part_;
}

/// The next part that shows, round the end.
void MainWindow::goToPart(int step)
{
    constexpr int parts = 7;
    const auto shows = [this](Part wanted) {
        return wanted == Part::map || (wanted == Part::planes && isCube()) || tableOf(wanted) ||
               (wanted == Part::surface && surface_.isShown()) ||
               (wanted == Part::curves && curves_.isShown());
    };
    int next = static_cast<int>(part());
    do {
        next = (next + step + parts) % parts;
    } while (!shows(static_cast<Part>(next)));
    if (static_cast<Part>(next) == Part::planes)
        return planes_.FocusNumber();
    if (static_cast<Part>(next) == Part::surface) {
        surface_.window().SetFocus();
        return;
    }
    if (static_cast<Part>(next) == Part::curves) {
        curves_.SetFocus();
        return;
    }
    ATableWnd* const table = tableOf(static_cast<Part>(next));
    (table ? static_cast<CWnd&>(*table) : view()).SetFocus();
}

/// Runs what a command of the menu means in the part with the keyboard; 0 when that is the map's.
int MainWindow::runPartCommand(unsigned id)
{
    ATableWnd* const table = tableOf(part());
    if (!table)
        return 0;
    if (part_ == Part::model && (id == idSaveAreas || id == idSaveAreasAs))
        return runModelCommand(id == idSaveAreas ? idSaveModel : idSaveModelAs);
    return runInTable(*table, part_ == Part::model, id);
}

/// Texts and states of the lines that mean something else in each part.
void MainWindow::showPartCommands(CMenu& popup)
{
    ATableWnd* const table = tableOf(part());
    if (table)
        showForTable(popup, *table, part_ == Part::model);
}

// --- components

int MainWindow::runModelCommand(unsigned id)
{
    if (!map_)
        return 0;
    switch (id) {
    case idOpenModel:
        return (void)model_.OpenCommand(map_->file()), 1;
    case idMapModel:
        return (void)model_.Open(map_->file()), 1;
    case idSaveModel:
        return (void)model_.Save(map_->file()), 1;
    case idSaveModelAs:
        return (void)model_.SaveAs(map_->file()), 1;
    case idModel:
        if (!model_.session().isOpen())
            model_.Begin();
        else if (model_.MayLeave())
            model_.Close();
        if (model_.session().isOpen())
            model_.table().SetFocus();
        return 1;
    case idNextMapPart:
        return goToPart(1), 1;
    case idPreviousMapPart:
        return goToPart(-1), 1;
    default:
        return 0;
    }
}

void MainWindow::modelChanged()
{
    isModelOld_ = 1;
    viewOf(modelMap_).Invalidate();  // the components lie over its picture
    updateTitle();
}

void MainWindow::modelSelected(int before, int now)
{
    MapWindow& window = viewOf(modelMap_);
    if (const ABAxis* const axis = window.GetPlot())
        for (const int component : {before, now})
            window.InvalidateRect(model_.BoundsOf(component, *axis));
}

void MainWindow::modelOpened()
{
    const int isOpen = model_.session().isOpen();
    // they lie on the map that was the current one when they were opened
    viewOf(modelMap_).SetMarks(nullptr);
    modelMap_ = std::max(0, maps_.current());
    model_.SetFrame(map_ ? &map_->inputs().frame : nullptr);
    view().SetMarks(&model_);
    if (!isOpen && part() == Part::model)
        view().SetFocus();
    split_.ShowOnly(isOpen ? -1 : 0);
    modelChanged();
}

}  // namespace pavane

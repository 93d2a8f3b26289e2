// The menu of the surface beside the map.
#include "apps/view/long_work.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "platform/CMenu.h"
#include "platform/message.h"
#include "tessel/paths.h"

#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

/// In the order of their lines.
constexpr int surfaceStyles[] = {surfaceLinesX | surfaceLinesY, surfaceColors, surfaceLight,
                                 surfaceContours, surfaceSkirt};
constexpr unsigned styles = std::size(surfaceStyles);
constexpr unsigned floors = 4;
constexpr const char* mapsFilter =
    "Maps (*.fits *.fit *.fts *.FITS)|*.fits *.fit *.fts *.FITS|All files (*)|*|";
/// Growth of one "Higher", as of its key.
constexpr double heightOfStep = 1.1;

bool isStyle(unsigned id) { return id >= idSurfaceStyle && id < idSurfaceStyle + styles; }
bool isFloor(unsigned id) { return id >= idSurfaceFloor && id < idSurfaceFloor + floors; }

}  // namespace

/// Reads a map that the user chooses; null when there is none, which the user knows then.
std::unique_ptr<SideMap> MainWindow::askMap(const CString& title)
{
    CString name = folderOf(map_->file());
    if (!askName(name, mapsFilter, title, 1, "fits"))
        return nullptr;
    auto side = std::make_unique<SideMap>();
    std::string error;
    int isRead = 0;
    const int isDone =
        doLongWork(this, "Reading " + baseNameOf(name), [&](const ProgressFunction& tell) {
            return isRead = side->read(name, error, tell);
        });
    if (isDone && !isRead)
        AfxMessageBox(name + ": " + error, MB_ICONERROR);
    if (!isDone || !isRead)
        return nullptr;
    return side;
}

int MainWindow::runSurfaceCommand(unsigned id)
{
    if (!isStyle(id) && !isFloor(id) && (id < idSurfaceHigher || id > idSurfaceOwnColors))
        return 0;
    if (!map_ || !surface_.isShown())
        return 1;
    SurfaceDisplay display = surface_.display();
    if (isStyle(id)) {
        display.style ^= surfaceStyles[id - idSurfaceStyle];
    } else if (isFloor(id)) {
        display.floor = static_cast<int>(id - idSurfaceFloor);
    }
    ASurfaceWnd& window = surface_.window();
    switch (id) {
    case idSurfaceHigher:
    case idSurfaceLower:
        window.GrowHeight(id == idSurfaceHigher ? heightOfStep : 1 / heightOfStep);
        return 1;
    case idSurfaceFirst:
        window.ShowFirstView();
        return 1;
    case idSurfaceSecond:
        if (std::unique_ptr<SideMap> second = askMap("Second map on the surface"))
            (void)surface_.SetSecond(std::move(second));
        return 1;
    case idSurfaceNoSecond:
        (void)surface_.SetSecond(nullptr);
        return 1;
    case idSurfaceColorMap:
        if (std::unique_ptr<SideMap> colors = askMap("Colours of another map"))
            if (!surface_.SetColorMap(std::move(colors)))
                AfxMessageBox("Colours come from a map of as many columns and rows", MB_ICONERROR);
        return 1;
    case idSurfaceOwnColors:
        (void)surface_.SetColorMap(nullptr);
        return 1;
    case idSurfaceSameRange:
        display.sameRange = !display.sameRange;
        break;
    }
    surface_.SetDisplay(display);
    return 1;
}

/// What is copied, printed and saved, and whose views are gone through: the map, or the surface or
/// the curves while they have the keyboard.
APlotWnd& MainWindow::shownPicture()
{
    if (part() == Part::curves && curves_.isShown())
        return curves_;
    return part() == Part::surface && surface_.isShown() ? static_cast<APlotWnd&>(surface_.window())
                                                         : view();
}

void MainWindow::showSurfaceCommands(CMenu& popup)
{
    const SurfaceDisplay& display = surface_.display();
    for (CMenu::Line& line : popup.lines()) {
        if (line.id == ID_VIEW_BACK || line.id == ID_VIEW_FORWARD)
            line.enabled = map_ && shownPicture().IsCommandEnabled(line.id);
        if (!isStyle(line.id) && !isFloor(line.id) &&
            (line.id < idSurfaceHigher || line.id > idSurfaceOwnColors))
            continue;
        line.enabled = surface_.isShown();
        if (isStyle(line.id)) {
            const int bits = surfaceStyles[line.id - idSurfaceStyle];
            line.checked = (display.style & bits) == bits;
        } else if (isFloor(line.id)) {
            line.checked = display.floor == static_cast<int>(line.id - idSurfaceFloor);
        } else if (line.id == idSurfaceNoSecond || line.id == idSurfaceSameRange) {
            line.enabled = surface_.hasSecond();
            line.checked = line.id == idSurfaceSameRange && display.sameRange;
        } else if (line.id == idSurfaceOwnColors) {
            line.enabled = surface_.hasColorMap();
        }
    }
}

}  // namespace pavane

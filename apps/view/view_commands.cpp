// The Edit, View and Help menus, and how the lines of all menus look.
#include "apps/view/key_help.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/view_dialogs.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/images/palette_choice.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"

#include <optional>

namespace pavane
{

namespace
{

constexpr double zoomFactor = 2;
/// What the library chooses, as a list.
constexpr const char* usualLevels = "sigma:-3,3,6,...";

int isMapCommand(unsigned id)
{
    return (id >= ID_TRACK_ARROW && id <= ID_VERTEX_TABLE) || id == ID_COPY_TO_CLIPBOARD ||
           id == ID_VIEW_BACK || id == ID_VIEW_FORWARD ||
           (id >= ID_NEVER_CLEAN && id <= ID_SHRINK_AREAS);
}

/// Whether a command makes sense; without a map, only opening one and help.
int isOffered(unsigned id, int hasMap)
{
    if (id == idNoRecent)
        return 0;
    return hasMap || id == 0 || id == idOpenMap || id == idExit || id == idSampOn || id >= idKeys;
}

}  // namespace

int MainWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code != 0)
        return AreaWindow::OnCommand(id, code, control);
    // a key of the menu, while the pointer drags an area
    if (CWnd::GetCapture())
        return 1;
    // a button of the toolbar is about areas, whatever has the keyboard
    if (!control && runPartCommand(id))
        return 1;
    if (!control && map_ && runLineCommand(id))
        return 1;
    if (id == ID_COPY_TO_CLIPBOARD || id == ID_VIEW_BACK || id == ID_VIEW_FORWARD)
        return shownPicture().RunCommand(id);
    return runFileCommand(id) || runModelCommand(id) || runViewCommand(id) || runPlaneCommand(id) ||
           runSeveralCommand(id) || runMakeCommand(id) || runSurfaceCommand(id) ||
           runSkyCommand(id) || runMeasureCommand(id) || runSampCommand(id) || runMarkCommand(id) ||
           runWorkCommand(id) || runAreaCommand(id) || AreaWindow::OnCommand(id, code, control) ||
           view().RunCommand(id);
}

int MainWindow::runViewCommand(unsigned id)
{
    if (id >= idPalette && id < idPalette + palettes_.size()) {
        setPalette(id - idPalette);
        return 1;
    }
    if (id >= idScale && id <= idScale + static_cast<unsigned>(MapScaleKind::equalized)) {
        setScale(static_cast<MapScaleKind>(id - idScale));
        return 1;
    }
    switch (id) {
    case idKeys:
        showMapKeys(this);
        return 1;
    case idAbout:
        showAbout();
        return 1;
    case idColours:
        showColours();
        return 1;
    case idDisplay:
        showDisplaySheet();
        return 1;
    case idBeam:
        showBeam();
        return 1;
    case idDirtyBeam:
        showDirtyBeam();
        return 1;
    case idContours:
        toggleContours();
        return 1;
    case idContourLevels:
        changeLevels();
        return 1;
    case idAreasInPictures:
        view().SetAreasInPicture(!view().GetAreasInPicture());
        return 1;
    case idDelete:
        return view().DeleteFocused();
    case idValues:
        toggleTable();
        return 1;
    case idSurface:
        toggleSurface();
        return 1;
    case idZoomIn:
        if (map_)
            view().ZoomAbout(map_->axis().getGraphRect().CenterPoint(), zoomFactor);
        return 1;
    }
    return 0;
}

void MainWindow::toggleTable()
{
    showTable_ = !showTable_;
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    table_.ShowWindow(showTable_ ? SW_SHOW : SW_HIDE);
    if (showTable_)
        table_.Refresh();
    const int hasNumbers = showTable_ && table_.rows() > 0;
    (hasNumbers ? static_cast<CWnd&>(table_) : view()).SetFocus();
}

void MainWindow::toggleSurface()
{
    if (!map_)
        return;
    const int shown = !surface_.isShown();
    if (!shown && part() == Part::surface)
        view().SetFocus();
    surface_.Show(shown ? map_.get() : nullptr);
    surfaceSplit_.ShowOnly(shown ? -1 : 0);
    if (shown)
        surface_.window().SetFocus();
}

void MainWindow::toggleContours()
{
    LevelChoice none;
    none.none = 1;
    none.text = shownLevels_.text;
    options_.levels = options_.levels.none ? shownLevels_ : none;
    levelsChanged();
}

void MainWindow::changeLevels()
{
    CString text = options_.levels.text.empty() ? usualLevels : options_.levels.text;
    if (!askLevels(this, text))
        return;
    std::string ignored;
    (void)parseLevels(text, options_.levels, ignored);
    if (!options_.levels.none)
        shownLevels_ = options_.levels;
    levelsChanged();
}

void MainWindow::OnInitMenuPopup(CMenu& popup)
{
    for (CMenu::Line& line : popup.lines())
        if (const PartCommand* const command = partCommandOf(line.id))
            line.text = command->onMap;
    view().amMenuParse(&popup);  // knows its own commands only
    std::optional<std::string> palette;
    const int onSky = map_ && map_->sky().isSet();
    for (CMenu::Line& line : popup.lines()) {
        if (isMapCommand(line.id)) {
            line.enabled = line.enabled && map_;
            continue;
        }
        line.enabled = isOffered(line.id, map_ != nullptr);
        if (line.id >= idPalette && line.id < idPalette + palettes_.size()) {
            if (!palette)
                palette = paletteNameOf(colours_);
            line.checked = *palette == palettes_[line.id - idPalette];
        } else if (line.id >= idScale && line.id < idContours)
            line.checked = options_.scale == static_cast<MapScaleKind>(line.id - idScale);
        else if (line.id == idContours)
            line.checked = !options_.levels.none;
        else if (line.id == idAreasInPictures)
            line.checked = view().GetAreasInPicture();
        else if (line.id == idSkyRegions) {
            line.enabled = onSky;
            line.checked = onSky && skyRegions_;
        } else if (line.id == idDelete) {
            line.enabled = view().IsCommandEnabled(ID_TRACK_DELETE);
            line.text = view().IsVertexFocused() ? "&Delete vertex\tDel" : "&Delete areas\tDel";
        } else if (line.id == idValues)
            line.checked = showTable_;
        else if (line.id == idNextPlane || line.id == idPreviousPlane || line.id == idPlayPlanes) {
            line.enabled = isCube();
            line.checked = line.id == idPlayPlanes && planes_.IsPlaying();
        } else if (line.id == idSurface)
            line.checked = surface_.isShown();
        else if (line.id == idModel)
            line.checked = model_.session().isOpen();
        else if (line.id == idSaveModel || line.id == idSaveModelAs || line.id == idAreasOfModel)
            line.enabled = map_ && model_.session().isOpen();
    }
    showSeveralCommands(popup);
    showMakeCommands(popup);
    showSurfaceCommands(popup);
    showSkyCommands(popup);
    showMarkCommands(popup);
    showSampCommands(popup);
    showAreaCommands(popup);
    showMeasureCommands(popup);
    showPartCommands(popup);
}

}  // namespace pavane

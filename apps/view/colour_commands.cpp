// Colours and contours of the map in the main window, and what is kept of them.
#include "apps/view/MainWindow.h"
#include "apps/view/map_options.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/images/palettes.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

namespace pavane
{

namespace
{

constexpr const char* section = "pavane-view";
constexpr const char* paletteEntry = "Palette";
constexpr const char* scaleEntry = "Scale";
constexpr const char* levelsEntry = "Levels";
constexpr const char* noLevels = "none";
constexpr int shownDigits = 3;

}  // namespace

void MainWindow::setPalette(std::size_t i)
{
    if (!LoadPalette(palettes_[i])) {
        AfxMessageBox(palettes_[i] + ": the palette cannot be read", MB_ICONERROR);
        return;
    }
    if (!map_)
        return;
    ColorLook look(map_->picture().graph());
    look.colours.clear();  // the one of all maps is what was chosen
    view_.ShowColorLook(look);
}

void MainWindow::setScale(ViewScale scale)
{
    options_.scale = scale;
    if (!map_)
        return;
    ColorLook look(map_->picture().graph());
    look.scale = scaleKind(scale);
    view_.BeginView();
    view_.ShowColorLook(look);
    view_.EndView();
}

void MainWindow::showColours()
{
    if (!map_)
        return;
    if (colours_ && colours_->GetSafeHwnd()) {
        colours_->SetFocus();
        return;
    }
    colours_ = std::make_unique<APalettePlayDlg>(view_, this);
    cubeCells_.reset();
    if (isCube()) {
        const AMatrix<float>& cells = map_->inputs().map.cells;
        cubeCells_ = std::make_unique<CubeCells>(map_->file(), map_->planes(), cells.rows(),
                                                 cells.columns());
        colours_->SetPlanes(cubeCells_->planes());
    }
    if (colours_->CreateModeless())
        (void)colours_->ShowWindow(SW_SHOW);
}

/// By the pointer, the dialog, a step through the views or a command.
void MainWindow::mapColoursChanged()
{
    surface_.Follow();
    if (!map_ || !created_)
        return;
    const ALevelsColorGraph& graph = map_->picture().graph();
    options_.scale = static_cast<ViewScale>(graph.scaleKind());
    const AColorPlay& play = graph.GetColorPlay();
    status_.SetMessage(play.isNeutral() ? CString()
                                        : "Contrast " + valToStr(play.contrast, shownDigits) +
                                              ", bias " + valToStr(play.bias, shownDigits));
}

void MainWindow::levelsChanged()
{
    if (!map_)
        return;
    applyLevels(map_->picture(), options_);
    view_.ContentChanged();
    if (display_)
        display_->DisplayChanged();
    surface_.Follow();
}

/// What the command line does not say is as it was when the window was closed last.
void MainWindow::loadLook()
{
    const CString palette = GetProfileString(section, paletteEntry);
    if (options_.palette.empty() && !palette.empty())
        (void)LoadPalette(palette);  // one that has gone leaves the default
    int scale = 0;
    if (!options_.hasScale && stoval(GetProfileString(section, scaleEntry), scale) && scale >= 0 &&
        scale <= static_cast<int>(ViewScale::equalised))
        options_.scale = static_cast<ViewScale>(scale);
    const CString levels = GetProfileString(section, levelsEntry);
    LevelChoice kept;
    std::string ignored;
    if (options_.levels.text.empty() && !options_.levels.none && !levels.empty() &&
        parseLevels(levels, kept, ignored)) {
        options_.levels = kept;
        if (!kept.none)
            shownLevels_ = kept;
    }
}

void MainWindow::storeLook() const
{
    CString palette = baseNameOf(GetGlobalPaletteName());
    if (extensionOf(palette) == "pal")
        palette.resize(palette.size() - 4);
    const struct {
        const char* entry;
        CString text;
    } entries[] = {// a palette file that the command line named belongs to that run
                   {paletteEntry, options_.palette.find('/') == CString::npos
                                      ? palette
                                      : GetProfileString(section, paletteEntry)},
                   {scaleEntry, std::to_string(static_cast<int>(options_.scale))},
                   {levelsEntry, options_.levels.none ? noLevels : options_.levels.text}};
    for (const auto& each : entries)
        if (each.text != GetProfileString(section, each.entry))
            (void)WriteProfileString(section, each.entry, each.text);
}

}  // namespace pavane

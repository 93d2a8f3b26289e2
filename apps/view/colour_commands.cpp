// Colours and contours of the map in the main window, and what is kept of them.
#include "apps/view/MainWindow.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/images/palette_choice.h"
#include "pavane/images/palettes.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/value_text.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr const char* section = "pavane-view";
constexpr const char* paletteEntry = "Palette";
constexpr const char* scaleEntry = "Scale";
constexpr const char* levelsEntry = "Levels";
constexpr const char* surfaceEntry = "Surface";
constexpr const char* skyGridEntry = "SkyGrid";
constexpr const char* noLevels = "none";
constexpr int shownDigits = 3;

/// The dialog of colours, which tells that the palette of the program is another one.
class ColoursDialog : public APalettePlayDlg
{
public:
    ColoursDialog(AAxisWnd& plot, CWnd* parent, CubeCells* cube, std::function<void(int)> forAll)
        : APalettePlayDlg(plot, parent), cube_(cube), forAll_(std::move(forAll))
    {
        if (cube_)
            SetPlanes(cube_->planes());
    }
    void OnPaletteForAll() override { forAll_(IsForAll()); }
    void OnCounting(const std::function<int()>& goesOn) override
    {
        if (cube_)
            cube_->setGoing(goesOn);
    }

private:
    CubeCells* cube_;
    std::function<void(int)> forAll_;
};

}  // namespace

/// Of this map, and of those that are opened in its place.
void MainWindow::setPalette(std::size_t i)
{
    AArray<COLORREF> colours;
    if (!GetPaletteColors(palettes_[i], colours)) {
        AfxMessageBox(palettes_[i] + ": the palette cannot be read", MB_ICONERROR);
        return;
    }
    colours_.assign(colours.lpArray(), colours.lpArray() + colours.count());
    if (!map_)
        return;
    ColorLook look(map_->picture().graph());
    look.colours = colours_;
    view().BeginView();
    view().ShowColorLook(look);
    view().EndView();
}

void MainWindow::setScale(MapScaleKind scale)
{
    options_.scale = scale;
    if (!map_)
        return;
    ColorLook look(map_->picture().graph());
    look.scale = scale;
    view().BeginView();
    view().ShowColorLook(look);
    view().EndView();
}

void MainWindow::showColours()
{
    if (!map_)
        return;
    if (play_ && play_->GetSafeHwnd()) {
        play_->SetFocus();
        return;
    }
    if (!play_) {
        cubeCells_.reset();
        const AMatrix<float>& cells = map_->inputs().map.cells;
        if (isCube())
            cubeCells_ = std::make_unique<CubeCells>(map_->file(), map_->planes(), cells.rows(),
                                                     cells.columns());
        play_ = std::make_unique<ColoursDialog>(view(), this, cubeCells_.get(), [this](int on) {
            if (host_)
                host_->paletteForAll(on);
            else
                PaletteChanged(on);
        });
    }
    // one that was closed knows how the range goes on with the planes
    if (play_->CreateModeless())
        (void)play_->ShowWindow(SW_SHOW);
}

/// Maps with colours of their own leave these, and have them again when the palette goes back.
void MainWindow::PaletteChanged(int isForAll)
{
    std::vector<COLORREF> colours = colours_;
    if (isForAll)
        leftColours_ = std::exchange(colours, {});
    else if (colours.empty())
        colours = std::exchange(leftColours_, {});
    if (isForAll && styleOfAll_)
        styleOfAll_->colours.colours.clear();
    if (play_)
        play_->PaletteChanged();
    const int isOther = colours != colours_;
    colours_ = colours;
    if (!map_)
        return;
    if (isOther) {
        ColorLook look(map_->picture().graph());
        look.colours = colours;
        view().BeginView();
        view().ShowColorLook(look);
        view().EndView();
    } else {
        view().ContentChanged();
    }
    for (int i = 0; i < maps_.count(); ++i)
        if (i != maps_.current())
            viewOf(i).ContentChanged();
    prepareLater();
    surface_.Follow();
}

/// By the pointer, a dialog, a step through the views or a command.
void MainWindow::mapColoursChanged(MapWindow& from)
{
    if (map_ && created_ && !isCurrent(from))
        return;  // over a link
    if (!map_ || !created_) {
        surface_.Follow();
        return;
    }
    displayChanged();
    followColours(maps_.current());
    const AColorPlay& play = map_->picture().graph().GetColorPlay();
    status_.SetMessage(play.isNeutral() ? CString()
                                        : "Contrast " + valToStr(play.contrast, shownDigits) +
                                              ", bias " + valToStr(play.bias, shownDigits));
}

void MainWindow::levelsChanged()
{
    if (!map_)
        return;
    view().BeginView();
    map_->showLevels(this, options_);
    view().ContentChanged();
    view().EndView();
    displayChanged();
}

/// What the command line does not say is as it was when the window was closed last.
void MainWindow::loadLook()
{
    const CString palette = GetProfileString(section, paletteEntry);
    if (options_.palette.empty() && !palette.empty())
        (void)LoadPalette(palette);  // one that has gone leaves the default
    int scale = 0;
    if (!options_.hasScale && stoval(GetProfileString(section, scaleEntry), scale) && scale >= 0 &&
        scale <= static_cast<int>(MapScaleKind::equalized))
        options_.scale = static_cast<MapScaleKind>(scale);
    surface_.TakeLook(GetProfileString(section, surfaceEntry));
    CString none;
    if (!options_.hasSkyGrid)
        (void)readSkyGridWish(GetProfileString(section, skyGridEntry), options_.skyGrid, none);
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

/// What the command line asked for belongs to that run, unless the user chose something else.
void MainWindow::storeLook() const
{
    const LevelChoice& levels = options_.levels;
    const LevelChoice& asked = asked_.levels;
    const CString palette = paletteNameOf(colours_);
    const CString surface = surface_.LookText();
    const CString skyGrid = skyGridWishText(options_.skyGrid);
    const struct {
        const char* entry;
        CString text;
        int isAsked;
    } entries[] = {
        {paletteEntry, palette,
         palette.empty() || (!asked_.palette.empty() && palette == askedPalette_)},
        {scaleEntry, std::to_string(static_cast<int>(options_.scale)),
         asked_.hasScale && options_.scale == asked_.scale},
        {levelsEntry, levels.none ? noLevels : levels.text,
         (asked.none || !asked.text.empty()) && asked.none == levels.none &&
             asked.text == levels.text},
        {skyGridEntry, skyGrid, asked_.hasSkyGrid && skyGrid == skyGridWishText(asked_.skyGrid)},
        {surfaceEntry, surface, surface.empty()}};
    for (const auto& each : entries)
        if (!each.isAsked && each.text != GetProfileString(section, each.entry))
            (void)WriteProfileString(section, each.entry, each.text);
}

}  // namespace pavane

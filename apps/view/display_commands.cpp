// The sheet of the map's display and the dialog of its beam.
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapLook.h"
#include "platform/message.h"
#include "tessel/paths.h"

#include <utility>

namespace pavane
{

namespace
{

/// The sheet, which tells the window what the map shows now.
class DisplaySheet : public AMapDisplayDlg
{
public:
    DisplaySheet(AAxisWnd& plot, double arcseconds, CWnd* parent, std::function<void()> shown,
                 std::function<void(const MapDisplay&)> forAll)
        : AMapDisplayDlg(plot, arcseconds, parent), shown_(std::move(shown)),
          forAll_(std::move(forAll))
    {
    }
    void OnDisplayShown(const MapDisplay& /*display*/) override { shown_(); }
    void OnForAllMaps(const MapDisplay& display) override { forAll_(display); }

private:
    std::function<void()> shown_;
    std::function<void(const MapDisplay&)> forAll_;
};

/// Shows the map of a window in this style, as one step of its views.
void giveStyleTo(MapWindow& window, const MapDisplay& display)
{
    const MapDisplay styled = display.styleFor(shownDisplay(window));
    window.BeginView();
    (void)showDisplay(window, styled);
    window.EndView();
}

/// The dialog of the beam, likewise.
class BeamDialog : public ABeamDlg
{
public:
    BeamDialog(AAxisWnd& plot, double arcseconds, CWnd* parent, std::function<void()> shown)
        : ABeamDlg(plot, arcseconds, parent), shown_(std::move(shown))
    {
    }
    void OnDisplayShown(const MapDisplay& /*display*/) override { shown_(); }

private:
    std::function<void()> shown_;
};

}  // namespace

double MainWindow::arcseconds() const
{
    const MapFrame& frame = map_->inputs().frame;
    return frame.onSky ? frame.arcseconds : 0;
}

DirtyBeamFinder MainWindow::beamFinder()
{
    return [this](DirtyBeam& beam, CString& error) {
        return map_ && dirtyBeam_.find(this, map_->file(), beam, error);
    };
}

void MainWindow::showDisplaySheet()
{
    if (!map_)
        return;
    if (display_ && display_->GetSafeHwnd()) {
        display_->SetFocus();
        return;
    }
    display_ = std::make_unique<DisplaySheet>(
        view(), arcseconds(), this, [this] { displayChanged(); },
        [this](const MapDisplay& display) { useForAll(display); });
    display_->SetDirtyBeam(beamFinder());
    if (display_->CreateModeless())
        (void)display_->ShowWindow(SW_SHOW);
}

void MainWindow::showBeam()
{
    if (!map_)
        return;
    if (beam_ && beam_->GetSafeHwnd()) {
        beam_->SetFocus();
        return;
    }
    beam_ = std::make_unique<BeamDialog>(view(), arcseconds(), this, [this] { displayChanged(); });
    beam_->SetDirtyBeam(beamFinder());
    if (beam_->CreateModeless())
        (void)beam_->ShowWindow(SW_SHOW);
}

/// Asks for the file each time, as a map may have several beams; the dialogs then fit that one.
void MainWindow::showDirtyBeam()
{
    if (!map_)
        return;
    DirtyBeamFile file;
    DirtyBeam beam;
    CString error;
    auto shown = std::make_unique<ABeamWnd>();
    if (!file.find(this, map_->file(), beam, error)) {
        if (!error.empty())
            AfxMessageBox(error, MB_ICONERROR);
        return;
    }
    constexpr CRect place(80, 80, 1080, 680);
    if (!shown->CreateBeam(*file.content(), baseNameOf(file.file()), WS_OVERLAPPEDWINDOW, place,
                           this, error)) {
        AfxMessageBox(baseNameOf(file.file()) + ": " + error, MB_ICONERROR);
        return;
    }
    beamNumbers_ = std::move(shown);  // the one before goes with what it showed
    dirtyBeam_ = std::move(file);
    (void)beamNumbers_->ShowWindow(SW_SHOW);
}

/// The map is displayed in another way, by whomever: the dialogs and the surface show it, and menu,
/// profile and the next plane go by it.
void MainWindow::displayChanged()
{
    followDisplay();
    if (display_)
        display_->DisplayChanged();
    if (beam_)
        beam_->DisplayChanged();
    surface_.Follow();
}

void MainWindow::followDisplay()
{
    ALevelsColorGraph& graph = map_->picture().graph();
    options_.scale = graph.scaleKind();
    colours_.assign(graph.colors().lpArray(), graph.colors().lpArray() + graph.colors().count());
    const ContourLevels& levels = graph.contours().wantedLevels();
    if (!map_->contoursOf().empty())
        return;  // its own have none below those of another map: the levels are theirs
    if (levels == levelsOf(options_.levels, graph))
        return;
    LevelChoice choice;
    choice.none = levels.unit != LevelUnit::automatic && levels.factors.empty();
    if (!choice.none) {
        choice.list = levels;
        if (levels.unit != LevelUnit::automatic)
            choice.text = levels.text();
        shownLevels_ = choice;
    }
    options_.levels = choice;
}

void MainWindow::useForAll(const MapDisplay& display)
{
    styleOfAll_ = display;
    if (host_)
        host_->styleForAll(display, *this);
    for (int i = 0; i < maps_.count(); ++i)
        if (i != maps_.current())
            giveStyleTo(viewOf(i), display);
    prepareLater();
    status_.SetMessage("The other maps, and those opened from now on, are displayed as this one");
}

void MainWindow::TakeStyle(const MapDisplay& display)
{
    styleOfAll_ = display;
    if (!map_)
        return;
    for (int i = 0; i < maps_.count(); ++i)
        giveStyleTo(viewOf(i), display);
    prepareLater();
    displayChanged();
}

void MainWindow::giveStyle(MapPicture& picture) const
{
    AArray<COLORREF> colours;
    for (const COLORREF colour : colours_)
        (void)colours.Add(colour);
    picture.graph().setColors(colours);
    if (styleOfAll_)
        (void)styleOfAll_->styleFor(MapDisplay(picture.axis(), picture.graph()))
            .give(picture.axis(), picture.graph());
}

void MainWindow::closeMapDialogs()
{
    play_.reset();
    display_.reset();
    beam_.reset();
    beamNumbers_.reset();
}

}  // namespace pavane

// The sheet of the map's display and the dialog of its beam.
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"

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
    using Heard = std::function<void(const MapDisplay&)>;
    DisplaySheet(AAxisWnd& plot, double arcseconds, CWnd* parent, Heard shown, Heard forAll)
        : AMapDisplayDlg(plot, arcseconds, parent), shown_(std::move(shown)),
          forAll_(std::move(forAll))
    {
    }
    void OnDisplayShown(const MapDisplay& display) override { shown_(display); }
    void OnForAllMaps(const MapDisplay& display) override { forAll_(display); }

private:
    Heard shown_, forAll_;
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
        view_, arcseconds(), this, [this](const MapDisplay& display) { displayShown(display); },
        [this](const MapDisplay& display) {
            styleOfAll_ = display;
            status_.SetMessage("Maps that are opened from now on are displayed as this one");
        });
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
    beam_ = std::make_unique<ABeamDlg>(view_, arcseconds(), this);
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

/// The menu and the profile go by the options, and so does the next plane.
void MainWindow::displayShown(const MapDisplay& display)
{
    const ContourLevels& levels = display.contours.levels;
    LevelChoice choice;
    choice.none = levels.unit != LevelUnit::automatic && levels.factors.empty();
    if (!choice.none) {
        choice.list = levels;
        if (levels.unit != LevelUnit::automatic)
            choice.text = levels.text();
        shownLevels_ = choice;
    }
    options_.levels = choice;
    surface_.Follow();
}

void MainWindow::giveStyle(MapPicture& picture) const
{
    if (styleOfAll_)
        (void)styleOfAll_->styleFor(MapDisplay(picture.axis(), picture.graph()))
            .give(picture.axis(), picture.graph());
}

void MainWindow::closeMapDialogs()
{
    colours_.reset();
    display_.reset();
    beam_.reset();
    beamNumbers_.reset();
}

}  // namespace pavane

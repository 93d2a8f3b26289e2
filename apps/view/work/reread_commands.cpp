// A map whose file has changed on the disk: read again, with all that is shown of it.
#include "apps/view/MainWindow.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/windows/show_map.h"
#include "platform/message.h"
#include "tessel/paths.h"

namespace pavane
{

/// Asks once a change is complete: it is not told while the file still grows. What was refused is
/// asked about when the file changes again.
void MainWindow::watchMap()
{
    if (!map_ || isAsking_ || isWorkShown_ || blinking_ || CWnd::GetCapture() ||
        !IsWindowVisible() || !IsWindowEnabled() || IsIconic())
        return;
    const std::string change = map_->changeOnDisk();
    if (change.empty())
        return;
    const int isSame = changing_.name() == map_->file() && changing_.change().empty();
    if (!isSame) {
        changing_ = FileState(map_->file());
        isChangeTold_ = 0;
        return;  // the next look tells whether it has come to rest
    }
    if (isChangeTold_)
        return;
    isChangeTold_ = 1;
    if (!IsFileExists(map_->file())) {
        status_.SetMessage(baseNameOf(map_->file()) + ' ' + change +
                           "; what is shown is what was read");
        return;
    }
    isAsking_ = 1;
    const int answer = AfxMessageBox(baseNameOf(map_->file()) + ' ' + change +
                                         ". Read it again?\n\nView, colours, areas and links stay.",
                                     MB_YESNO | MB_ICONQUESTION);
    isAsking_ = 0;
    if (answer == IDYES)
        (void)ReadAgain();
}

int MainWindow::ReadAgain()
{
    if (!map_ || !table_.storeEditor() || !areaNumbers_.storeEditor())
        return 0;
    endBlink();
    const HWND self = GetSafeHwnd();
    std::unique_ptr<MapDocument> opened =
        readMap(map_->file(), map_->picture().rgb() ? -1 : map_->plane());
    if (!opened || CWnd::FromHandle(self) != this)
        return 0;
    const AMatrix<float>& before = map_->inputs().map.cells;
    const AMatrix<float>& now = opened->inputs().map.cells;
    const int isOther = before.rows() != now.rows() || before.columns() != now.columns();
    const std::string size = std::to_string(now.columns()) + " by " + std::to_string(now.rows());
    const std::string contours = map_->contoursOf();
    if (map_->isMoved() && opened->sky().isSet())
        (void)opened->setShift(map_->shiftIn(map_->sky().skyFrame()), map_->sky().skyFrame());
    const MapDisplay display = shownDisplay(view());
    const int isZoomed = view().IsRangeZoomed();
    const TMinMax shown = map_->axis().getMinMax();
    const int hasColours = play_ && play_->GetSafeHwnd();
    const int hasSurface = surface_.isShown();
    if (hasSurface)
        surface_.Show(nullptr);
    areaNumbers_.SetMap(nullptr);
    curves_.SetMap(nullptr);
    closeMapDialogs();
    dirtyBeam_.forget();
    giveStyle(opened->picture());
    showMap(view(), opened->picture());
    placeMarks(view(), *opened);
    map_.swap(opened);  // the old one goes when nothing shows it any more
    currentMapIsOther();
    if (modelMap_ == maps_.current())
        model_.SetFrame(&map_->inputs().frame);
    (void)showDisplay(view(), display);
    if (isZoomed) {
        view().PrepareContent();  // or it would take the view for the whole of the map
        view().SetNewMinMax(shown);
    }
    std::string error;
    if (const MapDocument* const other = documentOf(maps_.find(contours)); other)
        (void)map_->setContours(other, options_, error);
    for (int i = 0; i < maps_.count(); ++i)  // its contours over other maps
        if (i != maps_.current() && documentOf(i)->contoursOf() == map_->file() &&
            documentOf(i)->setContours(map_.get(), options_, error))
            viewOf(i).ContentChanged();
    displayChanged();
    if (hasSurface)
        surface_.Show(map_.get());
    if (hasColours)
        showColours();
    view().FollowAreas();
    view().ContentChanged();
    prepareLater();
    status_.SetMessage(
        "Read " + baseNameOf(map_->file()) + " again" +
        (isOther ? ": it has " + size + " pixels now; areas keep their offsets" : std::string()));
    return 1;
}

}  // namespace pavane

// The planes of a cube in the main window.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "pavane/axes/maps/map_titles.h"

#include <algorithm>

namespace pavane
{

int MainWindow::isCube() const { return map_ && map_->planes() > 1; }

/// The map was opened: the bar comes or goes, and the plane is a part of the views.
void MainWindow::setUpPlanes()
{
    planes_.Play(0);
    if (isCube()) {
        view().SetViewPart(
            ViewPart::plane,
            [map = map_.get()] { return ViewValues{static_cast<double>(map->plane())}; },
            [this, map = map_.get()](const ViewValues& values) {
                if (!values.empty() && map == map_.get())
                    (void)showPlane(static_cast<int>(values.front()));
            });
    } else {
        view().SetViewPart(ViewPart::plane, nullptr, nullptr);
    }
    tellPlane();
    planes_.ShowWindow(isCube() ? SW_SHOW : SW_HIDE);
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
}

void MainWindow::tellPlane()
{
    if (!isCube())
        return;
    const CString text = mapPlaneText(map_->inputs().map.header);
    planes_.SetPlane(map_->plane(), map_->planes(), text);
    status_.SetMessage("Plane " + std::to_string(map_->plane()) + " of 0 to " +
                       std::to_string(map_->planes() - 1) + ": " + text);
}

/// Without a step in the history of views.
int MainWindow::showPlane(int plane)
{
    if (readingPlane_)
        return 0;
    std::string error;
    readingPlane_ = 1;  // the window hears the user while it waits for a large one
    const int shown = map_->setPlane(this, plane, options_, error);
    readingPlane_ = 0;
    if (shown)
        view().ContentChanged();
    if (shown) {
        areaNumbers_.SetMap(map_.get());
        curves_.SetMap(map_.get());
    }
    if (shown && play_)
        play_->MapChanged();
    if (shown)
        displayChanged();
    if (shown && surface_.isShown())
        surface_.Show(map_.get());
    tellPlane();
    if (shown && planes_.IsPlaying())
        SetTimer(fetchTimer, fetchPause);
    if (shown && !map_->vectorFault().empty())
        error = "No vectors: " + map_->vectorFault();
    if (!error.empty())
        status_.SetMessage(error);
    return shown;
}

/// The plane that an animation shows next is read while this one is looked at.
void MainWindow::fetchPlane()
{
    KillTimer(fetchTimer);
    if (isCube() && planes_.IsPlaying() && !readingPlane_)
        map_->fetchPlane((map_->plane() + 1) % map_->planes());
}

int MainWindow::planeWanted(int plane)
{
    if (!isCube())
        return 0;
    if (plane == map_->plane())
        return 1;
    view().BeginViewGesture();
    return showPlane(plane);
}

void MainWindow::planeBarLeft() { view().SetFocus(); }

int MainWindow::mapStepPlane(int step)
{
    if (!isCube())
        return 0;
    planes_.Play(0);
    (void)planeWanted(std::clamp(map_->plane() + step, 0, map_->planes() - 1));
    return 1;
}

int MainWindow::runPlaneCommand(unsigned id)
{
    switch (id) {
    case idNextPlane:
        return mapStepPlane(1), 1;
    case idPreviousPlane:
        return mapStepPlane(-1), 1;
    case idPlayPlanes:
        return planes_.Play(!planes_.IsPlaying()), 1;
    default:
        return 0;
    }
}

}  // namespace pavane

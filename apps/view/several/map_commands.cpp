// Several maps in the main window: opened, chosen, closed, and how they show.
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/several/maps_menu.h"
#include "pavane/axes/windows/show_map.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/value_text.h"

#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr double milliseconds = 1000;
constexpr int shownDigits = 2;

}  // namespace

int MainWindow::seatOf(const MapWindow& window) const
{
    for (std::size_t i = 0; i < seats_.size(); ++i)
        if (&seats_[i]->window == &window)
            return static_cast<int>(i);
    return -1;
}

/// Null for none of that number.
MapDocument* MainWindow::documentOf(int map)
{
    return map == maps_.current()            ? map_.get()
           : map >= 0 && map < maps_.count() ? seats_[static_cast<std::size_t>(map)]->map.get()
                                             : nullptr;
}

AreaSession& MainWindow::sessionOf(int map)
{
    return map == maps_.current() || map < 0 ? session_
                                             : seats_[static_cast<std::size_t>(map)]->session;
}

int MainWindow::AddMap(const std::string& file, int plane)
{
    if (!map_ || holdsVisibilities(file) || isWorkFile(file))
        return OpenMap(file, plane);
    // what is not saved is kept under the name of the map: each is there once
    if (const int known = maps_.find(file); known >= 0) {
        (void)ChooseMap(known);
        status_.SetMessage(baseNameOf(file) + " is in this window already");
        return 1;
    }
    std::unique_ptr<MapDocument> opened = readMap(file, plane);
    if (!opened)
        return 0;
    auto seat = std::make_unique<MapSeat>(static_cast<MapWindowOwner&>(*this), session_.folder());
    if (!stage_.Add(seat->window)) {
        AfxMessageBox("There is no memory for another map", MB_ICONERROR);
        return 0;
    }
    seatMap(seat->window, *opened);
    seat->session.begin(file);
    seat->map = std::move(opened);
    const int from = maps_.current();
    seats_.push_back(std::move(seat));
    (void)maps_.add(file);
    const int added = maps_.current();
    (void)maps_.choose(from);
    showMaps();
    if (!ChooseMap(added)) {  // what is typed in a table is to be mended first
        showMaps();
        return 1;
    }
    view().SetFocus();  // a box that was answered gives the keyboard back to whoever had it
    followRange(from);
    recent_.load();
    recent_.add(file);
    setMenu();
    tellLinks();
    if (IsWindowVisible())
        offerLeftovers();
    KeepWork();
    return 1;
}

void MainWindow::addMapCommand()
{
    CString name = folderOf(map_->file());
    if (askName(name, mapFilter, "Add map", 1, "fits"))
        (void)AddMap(name, -1);
}

/// Gives what the window has of the current map back to its seat.
void MainWindow::leaveCurrentMap()
{
    KillTimer(copyTimer);
    writeCopy();
    if (surface_.isShown())
        surface_.Show(nullptr);
    areaNumbers_.SetMap(nullptr);
    curves_.SetMap(nullptr);
    closeMapDialogs();
    dirtyBeam_.forget();
    view().SetToolBar(nullptr);
    view().SetComboBox(nullptr);
    MapSeat& seat = *seats_[static_cast<std::size_t>(maps_.current())];
    seat.map = std::move(map_);
    seat.session.swap(session_);
    seat.agreedLosses.swap(agreedLosses_);
    pointed_ = AxisStatus();
}

int MainWindow::ChooseMap(int map)
{
    if (map == maps_.current() && map == stage_.front())
        return 1;
    if (choosing_ || map < 0 || map >= maps_.count())
        return 0;
    if (CWnd::GetCapture())
        ReleaseCapture();  // a drag belongs to the map that is left
    if (!table_.storeEditor() || !areaNumbers_.storeEditor()) {
        stage_.ShowFront(maps_.current());
        return 0;
    }
    choosing_ = 1;
    const int isOther = map != maps_.current();
    const int hadFocus = isWithin(CWnd::GetFocus(), &view());
    stage_.ShowFront(map);
    if (isOther) {
        const int hasColours = play_ && play_->GetSafeHwnd();
        const int hasSurface = surface_.isShown();
        const int tool = view().GetTrackers()->mode();
        const int cells = view().GetCellOverlay();
        leaveCurrentMap();
        (void)maps_.choose(map);
        MapSeat& seat = *seats_[static_cast<std::size_t>(map)];
        map_ = std::move(seat.map);
        session_.swap(seat.session);
        agreedLosses_.swap(seat.agreedLosses);
        currentMapIsOther();
        view().ChooseTool(tool);
        view().SetCellOverlay(cells);
        if (hasSurface)
            surface_.Show(map_.get());
        if (hasColours)
            showColours();
        showMaps();
    }
    if (hadFocus)
        view().SetFocus();
    choosing_ = 0;
    if (pointedMap_ >= 0 && maps_.shown() == MapsShown::tabs)
        view().TellPointer();
    const std::string change = map_->changeOnDisk();
    if (!change.empty())  // it is asked about when the user has had a moment to see it
        status_.SetMessage(baseNameOf(map_->file()) + ' ' + change +
                           "; what is shown is what was read");
    return 1;
}

/// The parts of the window are about the map that is the current one now.
void MainWindow::currentMapIsOther()
{
    MapWindow& window = view();
    table_.SetAxisWnd(&window);
    areaNumbers_.SetAxisWnd(&window);
    curves_.SetMapWindow(&window);
    fitted_ = {};
    surface_.SetAxisWnd(&window);
    window.SetToolBar(&bar_);
    window.SetComboBox(&list_);
    SetAxisWnd(&window);
    bar_.SetOwnerWnd(this, map_ != nullptr);
    if (!map_)
        return;
    areaNumbers_.SetMap(map_.get());
    curves_.SetMap(map_.get());
    followDisplay();
    (void)map_->showGrid(options_.skyGrid);
    if (!model_.session().isOpen())
        modelOpened();
    status_.Reset();
    setUpPlanes();
    table_.SetUnits(map_->format().offsetUnit(), map_->format().offsetUnit());
    table_.Refresh();
    updateTitle();
}

int MainWindow::CloseMap()
{
    const int map = maps_.current();
    if (maps_.count() < 2 || !MayLeaveAreas() || (modelMap_ == map && !model_.MayLeave()))
        return 0;
    endBlink();
    if (modelMap_ == map)
        model_.Close();
    session_.end();
    if (!ChooseMap(maps_.next(1)) || maps_.current() == map)
        return 0;
    view().SetFocus();
    seats_[static_cast<std::size_t>(map)]->window.SetMarks(nullptr);
    stage_.Remove(map);
    seats_.erase(seats_.begin() + map);
    (void)maps_.remove(map);
    if (modelMap_ > map)
        --modelMap_;
    pointedMap_ = -1;
    showMaps();
    KeepWork();
    return 1;
}

void MainWindow::showMaps() { stage_.ShowMaps(maps_); }

void MainWindow::showWay(MapsShown shown)
{
    endBlink();
    maps_.setShown(shown);
    showMaps();
    SliderBar* const bar = stage_.slider();
    if (!bar)
        return;
    bar->left = [this] { view().SetFocus(); };
    bar->SetFocus();
    status_.SetMessage("Slider between two maps: arrow keys or the pointer move it, Esc leaves it");
}

// --- blinking

void MainWindow::toggleBlink()
{
    if (blinking_)
        return endBlink();
    if (maps_.count() < 2) {
        status_.SetMessage("There is one map: File > Add map opens another");
        return;
    }
    if (maps_.shown() != MapsShown::tabs)
        showWay(MapsShown::tabs);
    prepareMaps();
    blinking_ = 1;
    setBlinkPace(0);
}

void MainWindow::setBlinkPace(int step)
{
    blinkSeconds_ = blinkSeconds(blinkSeconds_, step);
    status_.SetMessage("Blink: every " + valToStr(blinkSeconds_, shownDigits) + " s");
    if (blinking_)
        SetTimer(blinkTimer, static_cast<unsigned>(std::lround(blinkSeconds_ * milliseconds)));
}

/// The next picture comes to the front; the window stays about the map that it was about.
void MainWindow::blink()
{
    if (CWnd::GetCapture() || maps_.count() < 2)
        return;  // a drag sees its map
    stage_.ShowFront((stage_.front() + 1) % maps_.count());
}

/// The map that shows is the current one then.
void MainWindow::endBlink()
{
    if (!blinking_)
        return;
    blinking_ = 0;
    KillTimer(blinkTimer);
    if (!ChooseMap(stage_.front()))
        stage_.ShowFront(maps_.current());
}

/// The pictures of the maps behind the one in front are drawn when the user has a rest.
void MainWindow::prepareLater()
{
    if (maps_.count() > 1 && GetSafeHwnd())
        SetTimer(prepareTimer, preparePause);
}

void MainWindow::prepareMaps()
{
    KillTimer(prepareTimer);
    if (maps_.count() < 2)
        return;
    int areAlike = 1;
    CRect first;
    view().GetClientRect(first);
    PlotRoom most;
    const auto widen = [&most](const PlotRoom& room) {
        CRect& to = most.margins;
        to =
            CRect(std::max(to.left, room.margins.left), std::max(to.top, room.margins.top),
                  std::max(to.right, room.margins.right), std::max(to.bottom, room.margins.bottom));
        most.bar = std::max(most.bar, room.bar);
    };
    for (const auto& seat : seats_) {
        CRect client;
        seat->window.GetClientRect(client);
        areAlike = areAlike && client.Size() == first.Size();
        seat->window.PrepareContent();
        widen(seat->window.GetRoom());
    }
    if (!areAlike || !links_.has(linkZoom))
        return;
    // one place of the sky at one pixel: the plots begin and end where the narrowest of them does
    for (const auto& seat : seats_) {
        seat->window.SetLeastRoom(most);
        seat->window.PrepareContent();
    }
}

/// The contours of the map that was current before, or of the next one, over the current one; where
/// there is one map, of a file that the user chooses.
void MainWindow::toggleOtherContours()
{
    const MapDocument* other = map_->contoursOf().empty() ? documentOf(maps_.other()) : nullptr;
    std::unique_ptr<MapDocument> read;
    if (map_->contoursOf().empty() && !other) {
        CString name = folderOf(map_->file());
        if (!askName(name, mapFilter, "Contours of another map", 1, "fits") ||
            !(read = readMap(name, -1)))
            return;
        other = read.get();
    }
    std::string error;
    view().BeginView();
    if (map_->setContours(other, options_, error))
        error = other ? "Contours of " + baseNameOf(other->file())
                      : CString("Contours of the map itself");
    view().ContentChanged();
    view().EndView();
    displayChanged();
    status_.SetMessage(error);
}

// --- commands

int MainWindow::runSeveralCommand(unsigned id)
{
    if (id < idAddMap || id > idResetShifts || !map_)
        return 0;
    switch (id) {
    case idAddMap:
        return addMapCommand(), 1;
    case idCloseMap:
        return (void)CloseMap(), 1;
    case idNextOfMaps:
    case idPreviousOfMaps:
        if (blinking_)
            return endBlink(), 1;
        if (maps_.count() < 2)
            status_.SetMessage("There is one map: File > Add map opens another");
        else
            (void)ChooseMap(maps_.next(id == idNextOfMaps ? 1 : -1));
        return 1;
    case idMapsTabs:
    case idMapsSideBySide:
    case idMapsSlider:
        return showWay(static_cast<MapsShown>(id - idMapsTabs)), 1;
    case idBlinkMaps:
        return toggleBlink(), 1;
    case idBlinkFaster:
    case idBlinkSlower:
        return setBlinkPace(id == idBlinkFaster ? -1 : 1), 1;
    case idOtherContours:
        return toggleOtherContours(), 1;
    case idMakeRgb:
        return makeRgb(), 1;
    case idFindShift:
        return findShift(), 1;
    case idResetShifts:
        return resetShifts(), 1;
    case idLinkNext:
        links_.next();
        return linksChanged(), 1;
    case idLinkNothing:
    case idLinkSky:
    case idLinkCell:
        return setLinkBy(static_cast<LinkBy>(id - idLinkNothing)), 1;
    case idPairDifference:
    case idPairRatio:
    case idPairIndex:
        return makePair(static_cast<MapPair>(id - idPairDifference)), 1;
    default:
        const auto part = static_cast<LinkPart>(1U << (id - idLinkZoom));
        if (part == linkAreas && !links_.wants(part) && !mayReplaceAreas(maps_.current()))
            return 1;
        links_.toggle(part);
        return linksChanged(), 1;
    }
}

void MainWindow::showSeveralCommands(CMenu& popup)
{
    const int hasSeveral = maps_.count() > 1;
    for (CMenu::Line& line : popup.lines()) {
        if (line.id <= idAddMap || line.id > idResetShifts)
            continue;
        line.enabled = map_ && hasSeveral;
        if (line.id >= idMapsTabs && line.id <= idMapsSlider)
            line.checked = maps_.shown() == static_cast<MapsShown>(line.id - idMapsTabs);
        else if (line.id == idOtherContours) {
            line.checked = map_ && !map_->contoursOf().empty();
            line.enabled = map_ != nullptr;  // one map alone asks for the file of another
        } else if (line.id == idMakeRgb) {
            line.enabled = line.enabled || (map_ && map_->picture().rgb());
        } else if (line.id == idResetShifts) {
            line.enabled = isAnyMoved();
        } else if (line.id == idBlinkMaps)
            line.checked = blinking_;
        else if (line.id >= idLinkNothing && line.id <= idLinkCell)
            line.checked = links_.by() == static_cast<LinkBy>(line.id - idLinkNothing);
        else if (line.id >= idLinkZoom && line.id <= idLinkAreas)
            line.checked = links_.wants(static_cast<LinkPart>(1U << (line.id - idLinkZoom)));
    }
}

}  // namespace pavane

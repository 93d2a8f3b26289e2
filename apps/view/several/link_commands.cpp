// Maps of one window that are linked: what happens in one happens in the others.
#include "apps/view/MainWindow.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/collections/shape_trackers.h"
#include "platform/message.h"

#include <cmath>

namespace pavane
{

LinkBy MainWindow::linkOf(int a, int b)
{
    const MapDocument* const first = documentOf(a);
    const MapDocument* const second = documentOf(b);
    return first && second ? linkBetween(links_.by(), first->linked(), second->linked())
                           : LinkBy::nothing;
}

void MainWindow::setLinkBy(LinkBy by)
{
    links_.setBy(by);
    linksChanged();
}

/// What is linked now takes effect at once: the current map leads.
void MainWindow::linksChanged()
{
    const int leader = maps_.current();
    if (!links_.has(linkPointer))
        for (const auto& seat : seats_)
            seat->window.SetLinkedCell(-1, -1);
    if (!links_.has(linkZoom))
        for (const auto& seat : seats_)
            seat->window.SetLeastRoom({});
    for (const auto& seat : seats_)
        seat->linkedAreas.reset();
    followRange(leader);
    followColours(leader);
    followAreas(leader);
    prepareLater();
    tellLinks();
}

void MainWindow::tellLinks()
{
    int byCell = 0;
    for (int i = 0; i < maps_.count(); ++i)
        byCell += i != maps_.current() && linkOf(maps_.current(), i) == LinkBy::cell;
    const std::string moved = movedText();
    if (maps_.count() > 1)
        status_.SetMessage(links_.text(links_.by() == LinkBy::sky && byCell) +
                           (moved.empty() ? "" : "; " + moved));
}

void MainWindow::mapPointed(MapWindow& from, int isThere)
{
    const int map = seatOf(from);
    if (isThere)
        pointedMap_ = map;
    else if (pointedMap_ == map)
        pointedMap_ = -1;
    if (!isThere)
        followPointer(map, AxisStatus());
}

void MainWindow::mapRangeChanged(MapWindow& from)
{
    const int leader = seatOf(from);
    if (maps_.count() > 1 && leader >= 0 && created_)
        followRange(leader);
}

void MainWindow::followRange(int leader)
{
    const LinkLead lead(isLed_);
    MapDocument* const map = documentOf(leader);
    if (!lead.leads() || !links_.has(linkZoom) || !map)
        return;
    const TMinMax shown = map->axis().getMinMax();
    for (int i = 0; i < maps_.count(); ++i) {
        MapDocument* const other = documentOf(i);
        MapWindow& window = viewOf(i);
        if (i == leader || !other)
            continue;
        if (window.GetWholeRange() == TMinMax())
            window.PrepareContent();
        TMinMax range;
        // a map that was never seen takes its whole range from what it shows first
        if (!(window.GetWholeRange() == TMinMax()) &&
            linkedRange(linkOf(leader, i), map->linked(), other->linked(), shown, range) &&
            !samePairs(range, other->axis().getMinMax()))
            window.SetNewMinMax(range);
    }
    prepareLater();
}

void MainWindow::followPointer(int leader, const AxisStatus& status)
{
    MapDocument* const map = documentOf(leader);
    if (!links_.has(linkPointer) || !map)
        return;
    const MapFrame& frame = map->inputs().frame;
    for (int i = 0; i < maps_.count(); ++i) {
        const MapDocument* const other = documentOf(i);
        if (i == leader || !other)
            continue;
        double column = (status.x - frame.xFirst) / frame.xStep;
        double row = (status.y - frame.yFirst) / frame.yStep;
        const AMatrix<float>& cells = other->inputs().map.cells;
        const int isOn =
            status.inPlot &&
            linkedCell(linkOf(leader, i), map->linked(), other->linked(), column, row) &&
            column >= -0.5 && row >= -0.5 && column < cells.columns() - 0.5 &&
            row < cells.rows() - 0.5;
        viewOf(i).SetLinkedCell(isOn ? static_cast<int>(std::lround(row)) : -1,
                                isOn ? static_cast<int>(std::lround(column)) : -1);
    }
}

/// Palette, scale and play; each map keeps its own range of values.
void MainWindow::followColours(int leader)
{
    const LinkLead lead(isLed_);
    if (!lead.leads() || !links_.has(linkColours) || !documentOf(leader))
        return;
    const MapDisplay style = shownDisplay(viewOf(leader));
    for (int i = 0; i < maps_.count(); ++i) {
        if (i == leader || !documentOf(i))
            continue;
        MapWindow& window = viewOf(i);
        MapDisplay display = shownDisplay(window);
        display.colours = style.styleFor(display).colours;
        window.BeginView();
        (void)showDisplay(window, display);
        window.EndView();
    }
    prepareLater();
}

/// 0 when the user keeps areas that those of the leader would replace.
int MainWindow::mayReplaceAreas(int leader)
{
    int lost = 0;
    for (int i = 0; i < maps_.count(); ++i)
        if (i != leader)
            lost += viewOf(i).GetTrackers()->count();
    return !lost ||
           AfxMessageBox("The other maps get the areas of this one in place of their own " +
                             countText(lost, "area") + "; Undo there brings these back.",
                         MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
}

void MainWindow::followAreas(int leader)
{
    const LinkLead lead(isLed_);
    MapDocument* const map = documentOf(leader);
    if (!lead.leads() || !links_.has(linkAreas) || !map || maps_.count() < 2)
        return;
    endFollowing();
    RegionNotes notes;
    const std::vector<AreaShape> shapes =
        shapesOf(*viewOf(leader).GetTrackers(), map->place().transform(), notes);
    auto& known = seats_[static_cast<std::size_t>(leader)]->linkedAreas;
    if (known && sameShapes(shapes, *known))
        return;
    known = shapes;
    int lost = 0;
    for (int i = 0; i < maps_.count(); ++i) {
        const MapDocument* const other = documentOf(i);
        if (i == leader || !other)
            continue;
        std::vector<AreaShape> there;
        lost += linkedShapes(linkOf(leader, i), map->linked(), other->linked(), shapes, there);
        giveLinkedAreas(i, there);
    }
    if (lost)
        status_.SetMessage(countText(lost, "area") + " lie where a linked map has no sky");
}

/// While an area is dragged its outlines, and those of the others, show where they will lie on the
/// linked maps; the areas there change when the drag ends, as one step of undo.
void MainWindow::followDrag()
{
    const int leader = maps_.current();
    if (isLed_ || !links_.has(linkAreas) || maps_.count() < 2)
        return;
    RegionNotes notes;
    const std::vector<AreaShape> shapes =
        shapesOf(*viewOf(leader).GetTrackers(), map_->place().transform(), notes);
    for (int i = 0; i < maps_.count(); ++i) {
        const MapDocument* const other = documentOf(i);
        if (i == leader || !other)
            continue;
        std::vector<AreaShape> there;
        (void)linkedShapes(linkOf(leader, i), map_->linked(), other->linked(), shapes, there);
        ATrackerArrayInAxis areas;
        (void)addShapes(areas, nullptr, there, other->place().transform(), notes);
        viewOf(i).SetComingAreas(outlinesOf(areas));
    }
    SetTimer(dragTimer, dragPause);
}

/// Also of a drag that was given up, of which nobody tells.
void MainWindow::endFollowing()
{
    KillTimer(dragTimer);
    for (const auto& seat : seats_)
        seat->window.SetComingAreas({});
}

/// Whoever led saves them: a map whose own areas were saved has nothing to save after it.
void MainWindow::giveLinkedAreas(int map, const std::vector<AreaShape>& shapes)
{
    MapWindow& window = viewOf(map);
    ATrackerArrayInAxis& areas = *window.GetTrackers();
    const int wasModified = areas.IsModified() || !areas.KeptState(-1).empty();
    const AreaPlace place = documentOf(map)->place();
    RegionNotes notes;
    areas.BeginEdits("Linked areas");
    areas.Clear(&window);
    (void)addShapes(areas, &window, shapes, place.transform(), notes);
    areas.EndEdits(&window);
    if (!wasModified) {
        areas.SetSaved();
        sessionOf(map).saved({});
    }
    seats_[static_cast<std::size_t>(map)]->linkedAreas = shapesOf(areas, place.transform(), notes);
    window.FollowAreas();
}

}  // namespace pavane

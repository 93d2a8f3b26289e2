#include "pavane/trackers/collections/AreaHand.h"

#include "pavane/resources/tool_cursors.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"
#include "platform/CWnd.h"
#include "platform/messages.h"
#include "platform/resources.h"

#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>

namespace pavane
{

namespace
{

using Step = TrackerEdits::Step;

/// A polygon needs so many to be an area.
constexpr std::size_t fewestVertices = 3;
/// Tools whose shape one drag draws; they go before that of polygons when a mode has both.
constexpr int dragTools = toolRect | toolRotateRect | toolEllipse;

/// Whether two records differ at most in the rectangles that every press refreshes.
bool sameShape(const std::string& a, const std::string& b)
{
    constexpr std::size_t rects = 8;
    constexpr std::size_t shape = 56;
    return a.size() == b.size() && a.size() >= shape && a.compare(0, rects, b, 0, rects) == 0 &&
           a.compare(shape, std::string::npos, b, shape) == 0;
}

}  // namespace

AreaPress AreaHand::choose(CWnd* window, unsigned flags, CPoint p)
{
    using Kind = AreaPress::Kind;
    eye_.endHover();
    edits_.areas().history().endSeries();
    const int tool = edits_.tool();
    if (tool & toolZoomIn)
        return {Kind::zoom};
    const int arrow = tool < toolRect;
    if (arrow && (flags & MK_CONTROL) && !trackers_.open())
        return {Kind::select};
    if (arrow && edits_.areas().selectionCount() > 1) {
        const int hit = eye_.topmostAt(p, window);
        if (edits_.areas().isSelected(hit))
            return {Kind::moveSeveral, hit};
    }
    int chosen = leaveCurrent(window, p);
    if (arrow && options_.clickSelects())
        chosen = takeClicked(window, p) || chosen;
    return {arrow ? Kind::move : Kind::draw, -1, chosen};
}

/// A press beside the current area leaves it, and with it the selection.
int AreaHand::leaveCurrent(CWnd* window, CPoint p)
{
    if (trackers_.open())
        return 0;
    ATracker* const current = edits_.activeTracker();
    const int missed = current && current->HitTest(p, window) < 0;
    AreaEdits& areas = edits_.areas();
    if (!missed && areas.selectionCount() == 0)
        return 0;
    if (missed)
        areas.setActive(areas.current(), 0);
    areas.clearSelection();
    focus_.clear();
    return 1;
}

/// The area under a press becomes the current one, unless the current one is hit as well.
int AreaHand::takeClicked(CWnd* window, CPoint p)
{
    ATracker* const current = edits_.activeTracker();
    if (trackers_.open() || (current && current->HitTest(p, window) >= 0))
        return 0;
    const int hit = eye_.topmostAt(p, window);
    if (hit < 0)
        return 0;
    edits_.makeCurrent(hit);
    return 1;
}

void AreaHand::open(AreaPress& press, CPoint p)
{
    const int tool = edits_.tool();
    // the bits are asked in this order by who makes trackers too
    if (press.kind != AreaPress::Kind::draw || !(tool & toolArea) || (tool & dragTools) ||
        trackers_.open() || eye_.closesAt(p))
        return;
    ATracker* const tracker = trackers_.make(tool);
    if (!tracker)
        return;
    trackers_.adopt(*tracker);
    trackers_.setOpen(tracker);
    press.opened = 1;
}

HandResult AreaHand::press(CWnd* window, CPoint p, const AreaPress& press)
{
    switch (press.kind) {
    case AreaPress::Kind::zoom:
        return zoom(p);
    case AreaPress::Kind::select:
        return select(window, p);
    case AreaPress::Kind::moveSeveral:
        return moveSeveral(window, press.item, p);
    case AreaPress::Kind::move:
        return move(window, p);
    case AreaPress::Kind::draw:
        return draw(window, p, press.opened);
    case AreaPress::Kind::nothing:
        break;
    }
    return {};
}

HandResult AreaHand::zoom(CPoint p) const
{
    TMinMax range;
    return trackers_.zoomedRange(p, range) ? HandResult::zoomTo(range) : HandResult::quiet();
}

HandResult AreaHand::select(CWnd* window, CPoint p)
{
    const int hit = eye_.topmostAt(p, window);
    if (hit < 0)
        return {};
    AreaEdits& areas = edits_.areas();
    if (areas.selectionCount() == 0 && edits_.activeTracker() && areas.current() != hit)
        areas.select(areas.current(), 1);
    edits_.select(hit, !areas.isSelected(hit));
    return HandResult::edited();
}

/// Runs one drag and tells whether the tracker and the collection are still there. `window` is null
/// afterwards when it has gone.
AreaHand::DragResult AreaHand::drag(CWnd*& window, ATracker& tracker,
                                    const std::function<int()>& run)
{
    const LifeWatch self(life_);
    const HWND handle = window ? window->GetSafeHwnd() : 0;
    const LifeWatch item(tracker.life());
    drag_.begin(tracker);
    const int result = run();
    if (handle && CWnd::FromHandle(handle) != window)
        window = nullptr;
    if (!self.alive())
        return DragResult::gone;
    drag_.end(&tracker);
    if (!item.alive())
        return DragResult::gone;
    return result && tracker.dragEnd() != DragEnd::lost ? DragResult::kept : DragResult::refused;
}

HandResult AreaHand::move(CWnd* window, CPoint p)
{
    ATracker* const current = edits_.activeTracker();
    if (!current || current->HitTest(p, window) < 0)
        return {};
    const std::string before = edits_.recordOf(*current, edits_.areas().current());
    const char* const what = focusPressed(window, *current, p);
    const DragResult end =
        drag(window, *current, [&] { return current->Track(window, p, 0, nullptr); });
    if (end == DragResult::gone)
        return HandResult::left();
    eye_.invalidateFocus(window, focus_);
    const int i = end == DragResult::kept ? drag_.indexOf(current) : -1;
    if (i < 0 || sameShape(edits_.recordOf(*current, i), before))
        return HandResult::quiet();
    const Step step(edits_.areas(), StepLabel(what, i).text());
    edits_.noteChange(i, before);
    return HandResult::edited();
}

/// A vertex of the current area that is pressed has the focus, and nothing else has: keys go to
/// what the pointer has taken last. Returns what a drag from there does.
const char* AreaHand::focusPressed(CWnd* window, ATracker& current, CPoint p)
{
    ShapeValues shape;
    const int hit = current.HitTest(p, window);
    const int vertex = shapeOf(current, shape) && shape.kind == ShapeValues::Kind::polygon &&
                       hit >= hitFirstHandle;
    eye_.invalidateFocus(window, focus_);
    focus_.item = vertex ? edits_.areas().current() : -1;
    focus_.handle = vertex ? hit - hitFirstHandle : -1;
    eye_.invalidateFocus(window, focus_);
    if (hit == current.moveCode())
        return "Move";
    const int turned = shape.kind == ShapeValues::Kind::rotatedRectangle ||
                       shape.kind == ShapeValues::Kind::ellipse;
    return vertex ? "Move of a vertex" : turned && hit == hitTurning ? "Turn" : "Resizing";
}

HandResult AreaHand::moveSeveral(CWnd* window, int item, CPoint p)
{
    ATracker& grabbed = *trackers_.at(item);
    if (edits_.areas().current() != item)
        edits_.makeCurrent(item);
    const std::string before = edits_.recordOf(grabbed, item);
    std::vector<std::string> records;
    std::vector<int> items = {item};
    ShapeValues shape;
    for (const int i : edits_.areas().selected())
        if (i != item && trackers_.shapeAt(i, shape)) {
            drag_.follow(i, shape);
            records.push_back(edits_.recordOf(*trackers_.at(i), i));
            items.push_back(i);
        }
    drag_.bindFollowers(window, grabbed, p);
    const DragResult end = drag(window, grabbed, [&] {
        return grabbed.TrackHandle(grabbed.moveCode(), window, p, nullptr);
    });
    if (end == DragResult::gone)
        return HandResult::left();
    const int i = end == DragResult::kept ? drag_.indexOf(&grabbed) : -1;
    if (i >= 0 && !sameShape(edits_.recordOf(grabbed, i), before)) {
        const Step step(edits_.areas(), StepLabel("Move", items).text());
        edits_.noteChange(i, before);
        if (drag_.hasFollowers())  // else something ended the moving together
            for (std::size_t k = 0; k < records.size(); ++k)
                edits_.noteChange(items[k + 1], records[k]);
        drag_.keepFollowers();
    }
    drag_.releaseFollowers();
    return HandResult::edited();
}

HandResult AreaHand::draw(CWnd* window, CPoint p, int opened)
{
    const int tool = edits_.tool();
    if ((tool & drawingTools) == 0)
        return {};
    if (!(tool & dragTools))
        return addVertex(window, p, opened);
    std::unique_ptr<ATracker> made(trackers_.make(tool));
    if (!made)
        return HandResult::quiet();
    ATracker& tracker = *made;
    trackers_.adopt(tracker);
    drag_.setDrawn(std::move(made));
    const DragResult end =
        drag(window, tracker, [&] { return tracker.TrackRubberBand(window, p, 0); });
    if (end == DragResult::gone)
        return HandResult::left();
    made = drag_.takeDrawn();
    return end == DragResult::kept && made->IsReady() ? edits_.takeDrawn(made.release())
                                                      : HandResult::of(HandResult::Shows::picture);
}

HandResult AreaHand::addVertex(CWnd* window, CPoint p, int opened)
{
    if (eye_.closesAt(p)) {
        HandResult result = closeOpen(window);
        result.used = 1;
        return result;
    }
    ATracker* const open = trackers_.open();
    if (!open)
        return HandResult::quiet();
    const std::string before = opened ? std::string() : edits_.recordOf(*open, -1);
    const DragResult end = drag(window, *open, [&] { return open->TrackRubberBand(window, p, 0); });
    if (end == DragResult::gone)
        return HandResult::left();
    if (trackers_.open() != open)  // a handler may have closed or dropped it
        return HandResult::quiet();
    const std::string after = edits_.recordOf(*open, -1);
    ShapeValues shape;
    const int empty = shapeOf(*open, shape) && shape.points.empty();
    if (opened && (end == DragResult::refused || empty)) {
        trackers_.setOpen(nullptr);
        delete open;
        return HandResult::of(HandResult::Shows::commands);
    }
    if (end == DragResult::refused)
        return HandResult::quiet();
    if (opened || !sameShape(after, before)) {
        const Step step(edits_.areas(), StepLabel("New vertex", -1).text());
        edits_.noteOpen(*open, before, after);
    }
    return open->IsReady() ? edits_.takeOpen(after) : HandResult::edited();
}

HandResult AreaHand::doubleClick(CWnd* window, CPoint p)
{
    if (ATracker* const open = trackers_.open()) {
        const std::string before = edits_.recordOf(*open, -1);
        ShapeValues shape;
        const int few = shapeOf(*open, shape) &&
                        static_cast<std::int64_t>(shape.points.size()) < options_.fewestCorners();
        return !few && open->TrackReady(window, p) ? edits_.takeOpen(before) : HandResult::quiet();
    }
    const int hit = eye_.topmostAt(p, window);
    if (hit < 0)
        return {};
    edits_.areas().clearSelection();
    edits_.makeCurrent(hit);
    return HandResult::edited();
}

HandResult AreaHand::closeOpen(CWnd* window)
{
    ShapeValues shape;
    ATracker* const open = trackers_.open();
    if (!open || drag_.isOn() || !shapeOf(*open, shape) || shape.points.size() < fewestVertices)
        return {};
    // any place will do that may be pressed; the last vertex can be out of sight by now
    open->refreshRects(window);
    CRect inside = open->clipRect();
    --inside.right;
    --inside.bottom;
    const std::string before = edits_.recordOf(*open, -1);
    const CPoint last = clampedTo(inside, trackers_.pixelPoint(shape.points.back()));
    return open->TrackReady(window, last) ? edits_.takeOpen(before) : HandResult();
}

int AreaHand::hover(CWnd& window, CPoint p)
{
    CPoint from;
    if (drag_.isOn() || !(edits_.tool() & toolArea) || !eye_.hoverFrom(from))
        return 0;
    eye_.hoverAt(window, p, trackers_.takesPress(p));
    return 1;
}

int AreaHand::chooseCursor(CWnd* window, unsigned hitArea)
{
    const int tool = edits_.tool();
    if (tool & (toolZoomIn | drawingTools | toolContour)) {
        if (!zoomCursor_) {
            AddResourceModule({.cursors = toolCursors, .cursorCount = std::size(toolCursors)});
            zoomCursor_ = LoadCursor(IDC_TOOL_ZOOM);
            drawCursor_ = LoadCursor(IDC_TOOL_DRAW);
        }
        (void)SetCursor(tool & toolZoomIn ? zoomCursor_ : drawCursor_);
        return 1;
    }
    ATracker* const open = trackers_.open();
    ATracker* const tracker = open ? open : trackers_.at(edits_.areas().current());
    return tracker && tracker->SetCursor(window, hitArea);
}

}  // namespace pavane

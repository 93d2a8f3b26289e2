#include "pavane/trackers/collections/AreaEye.h"

#include "pavane/trackers/areas/AreaEdits.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "pavane/trackers/tracker_drawing.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

/// Pixels about a shape that lines and handles of an active one may take beyond its true rectangle.
constexpr int drawMargin = 2;

/// Up to so many areas are looked at one by one: that is as fast as the index, and also finds areas
/// that a host changed by itself.
constexpr int fewAreas = 256;

/// With more areas in view only the current one shows its handles; those of thousands would hide
/// the map, and drawing them takes longer than anything else.
constexpr std::size_t mostWithHandles = 2000;

/// Up to so many areas have soft and fine outlines; how many are in sight does not count, so that a
/// repair of a part looks as the rest does.
constexpr int mostSmooth = 500;

/// Half the edge of the frame about the focus.
constexpr int focusReach = 7;

ARect<double> asBox(const CRect& rect)
{
    return {static_cast<double>(rect.left) - drawMargin, static_cast<double>(rect.top) - drawMargin,
            static_cast<double>(rect.right) + drawMargin,
            static_cast<double>(rect.bottom) + drawMargin};
}

/// Where a tracker draws and where it can be hit; a polygon that is still open is hit everywhere.
ARect<double> boxOf(const ATracker& tracker)
{
    constexpr double everywhere = std::numeric_limits<double>::max();
    if (!tracker.IsReady())
        return {-everywhere, -everywhere, everywhere, everywhere};
    CRect rect;
    tracker.GetTrueRect(&rect);
    return asBox(grown(rect, std::max(tracker.vertexCatch(), tracker.edgeCatch())));
}

}  // namespace

int AreaEye::knowBoxes()
{
    const int count = trackers_.count();
    if (count <= fewAreas)
        return known_ = 0;
    if (trackers_.pixelsMoved())
        known_ = 0;
    if (known_ && boxes_.count() == count)
        return 1;
    std::vector<ARect<double>> boxes;
    boxes.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        boxes.push_back(boxOf(*trackers_.at(i)));
    return known_ = boxes_.build(boxes.data(), count);
}

void AreaEye::boxChanged(int i)
{
    if (known_)
        known_ = i < boxes_.count() && boxes_.update(i, boxOf(*trackers_.at(i)));
}

void AreaEye::inserted(int i)
{
    known_ = known_ && i == trackers_.count() - 1 && boxes_.append(boxOf(*trackers_.at(i)));
}

int AreaEye::topmostAt(CPoint p, CWnd* window)
{
    const auto hit = [&](int i) { return trackers_.at(i)->HitTest(p, window) >= 0; };
    if (knowBoxes())
        return boxes_.fromLast(p.x, p.y, hit);
    for (int i = trackers_.count(); i-- > 0;)
        if (hit(i))
            return i;
    return -1;
}

/// Items whose boxes meet a rectangle, in order; 0 without memory.
int AreaEye::itemsIn(const ARect<double>& rect, int all, Pile<int>& found)
{
    for (int i = 0; all && i < trackers_.count(); ++i)
        if (!found.add(i))
            return 0;
    if (all)
        return 1;
    if (knowBoxes())
        return boxes_.meeting(rect, found);
    for (int i = 0; i < trackers_.count(); ++i) {
        const ARect<double> box = boxOf(*trackers_.at(i));
        if (box.left <= rect.right && box.right >= rect.left && box.top <= rect.bottom &&
            box.bottom >= rect.top && !found.add(i))
            return 0;
    }
    return 1;
}

void AreaEye::draw(CDC& dc, CWnd* window, int tool, const EyeState& state)
{
    CRect box;
    Pile<int> found;
    // boxes that change with every move of a drag take longer to make than what is out of sight
    // takes to draw
    if (!dc.GetClipBox(box) || box.IsRectEmpty() ||
        !itemsIn(asBox(box), state.crowd && !known_, found))
        return;
    ATracker* const open = trackers_.open();
    ATracker* const first = found.count() ? trackers_.at(found.data()[0])
                            : open        ? open
                                          : state.drawn;
    if (!first)
        return;
    const int saved = dc.SaveDC();
    CRect clip;
    if (drawingClip(window, *first, clip))
        (void)dc.IntersectClipRect(clip);
    OutlineLook look;
    look.crowded = trackers_.count() > mostSmooth;
    look.clipped = &dc;
    drawItems(dc, window, found, state.chosen, look);
    for (ATracker* const each : {open, state.drawn})
        if (each)
            drawItem(dc, window, *each, look);
    if (tool & toolArea)
        drawHover(dc, look);
    if (!state.dragging)  // what a drag uncovers is the outline only
        drawFocus(dc, state.focus, look);
    (void)dc.RestoreDC(saved);
}

void AreaEye::drawItem(CDC& dc, CWnd* window, ATracker& tracker, const OutlineLook& look)
{
    tracker.SetOutlineLook(look);
    tracker.Draw(&dc, window);
    tracker.SetOutlineLook({});
}

void AreaEye::drawItems(CDC& dc, CWnd* window, const Pile<int>& found, const AreaEdits& chosen,
                        OutlineLook look) const
{
    int selecting = chosen.selectionCount() > 0;
    for (int i = 0; i < trackers_.count() && !selecting; ++i)
        selecting = trackers_.at(i)->IsActive();
    for (std::size_t k = 0; k < found.count(); ++k) {
        const int i = found.data()[k];
        ATracker& tracker = *trackers_.at(i);
        const int active = tracker.IsActive();
        const int selected = chosen.isSelected(i);
        const int marked =
            found.count() > mostWithHandles ? active && i == chosen.current() : active || selected;
        look.dashed = selecting && !active && !selected;
        tracker.SetActive(marked);
        drawItem(dc, window, tracker, look);
        tracker.SetActive(active);
    }
}

int AreaEye::drawingClip(CWnd* window, ATracker& tracker, CRect& clip) const
{
    ARect<double> bounds;
    if (!window && !trackers_.shapeBounds(nullptr, tracker, bounds))
        return 0;
    tracker.refreshRects(window);
    clip = tracker.clipRect();
    // a graph rectangle holds its right and bottom edge
    if (clip == tracker.validRect()) {
        clip.right = saturatedSum(clip.right, 1);
        clip.bottom = saturatedSum(clip.bottom, 1);
    }
    return 1;
}

int AreaEye::focusPoint(const AreaFocus& focus, CPoint& p) const
{
    ShapeValues shape;
    if (focus.item < 0 || !trackers_.shapeAt(focus.item, shape) ||
        focus.handle >= handleCount(shape))
        return 0;
    p = trackers_.pixelPoint(focus.handle < 0 ? shapeCentre(shape)
                                              : handlePoint(shape, focus.handle));
    return 1;
}

void AreaEye::invalidateFocus(CWnd* window, const AreaFocus& focus) const
{
    constexpr int reach = focusReach + 2;
    CPoint p;
    if (window && focusPoint(focus, p))
        window->InvalidateRect(CRect(p.x - reach, p.y - reach, p.x + reach, p.y + reach));
}

void AreaEye::drawFocus(CDC& dc, const AreaFocus& focus, const OutlineLook& look) const
{
    CPoint p;
    if (!focusPoint(focus, p))
        return;
    const CPoint frame[] = {{p.x - focusReach, p.y - focusReach},
                            {p.x + focusReach, p.y - focusReach},
                            {p.x + focusReach, p.y + focusReach},
                            {p.x - focusReach, p.y + focusReach}};
    drawTrackerOutline(dc, frame, 4, true, look);
}

int AreaEye::hoverFrom(CPoint& from) const
{
    ShapeValues shape;
    const ATracker* const open = trackers_.open();
    if (!open || !shapeOf(*open, shape) || shape.points.empty())
        return 0;
    from = trackers_.pixelPoint(shape.points.back());
    return 1;
}

void AreaEye::drawHover(CDC& dc, const OutlineLook& look) const
{
    CPoint line[2];
    if (!hovering_ || !hoverFrom(line[0]))
        return;
    line[1] = hover_;
    drawTrackerOutline(dc, line, 2, false, look);
}

void AreaEye::hoverAt(CWnd& window, CPoint p, int on)
{
    constexpr int lineMargin = 3;
    CPoint from;
    if (!hoverFrom(from))
        return;
    if (hovering_)
        invalidateTrace(window, {{from, hover_}, false, {}, lineMargin});
    hovering_ = on;
    hover_ = p;
    (void)closesAt(p, &hover_);
    if (hovering_)
        invalidateTrace(window, {{from, hover_}, false, {}, lineMargin});
}

int AreaEye::closesAt(CPoint p, CPoint* vertex) const
{
    ShapeValues shape;
    const ATracker* const open = trackers_.open();
    constexpr std::size_t fewest = 3;
    if (!options_.firstVertexCloses() || !open || !shapeOf(*open, shape) ||
        shape.points.size() < fewest)
        return 0;
    const CPoint first = trackers_.pixelPoint(shape.points.front());
    if (std::hypot(static_cast<double>(p.x) - first.x, static_cast<double>(p.y) - first.y) >
        std::max(options_.vertexCatch(), open->GetHandleSize() / 2))
        return 0;
    if (vertex)
        *vertex = first;
    return 1;
}

}  // namespace pavane

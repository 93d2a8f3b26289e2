// What a collection shows: its areas as far as they lie in the clip box, the one being drawn, the
// focus; and which of them lies under a point.

#include "pavane/resources/tool_cursors.h"
#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/tracker_drawing.h"
#include "pavane/trackers/tracker_shape.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/resources.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <iterator>
#include <limits>

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

}  // namespace

/// Where a tracker draws and where it can be hit; a polygon that is still open is hit everywhere.
ARect<double> TrackerCollection::boxOf(const ATracker& tracker)
{
    constexpr double everywhere = std::numeric_limits<double>::max();
    if (!tracker.IsReady())
        return {-everywhere, -everywhere, everywhere, everywhere};
    CRect rect;
    tracker.GetTrueRect(&rect);
    return asBox(grown(rect, std::max(tracker.vertexCatch(), tracker.edgeCatch())));
}

int TrackerCollection::knowBoxes()
{
    if (trackerCount() <= fewAreas) {
        boxesKnown_ = 0;
        return 0;
    }
    if (pixelsMoved())
        boxesKnown_ = 0;
    if (boxesKnown_ && boxes_.count() == trackerCount())
        return 1;
    std::vector<ARect<double>> boxes;
    boxes.reserve(static_cast<std::size_t>(trackerCount()));
    for (int i = 0; i < trackerCount(); ++i)
        boxes.push_back(boxOf(*trackerAt(i)));
    boxesKnown_ = boxes_.build(boxes.data(), trackerCount());
    return boxesKnown_;
}

void TrackerCollection::boxChanged(int i)
{
    if (boxesKnown_)
        boxesKnown_ = i < boxes_.count() && boxes_.update(i, boxOf(*trackerAt(i)));
}

int TrackerCollection::TopmostAt(CPoint p, CWnd* window)
{
    const auto hit = [&](int i) { return trackerAt(i)->HitTest(p, window) >= 0; };
    if (knowBoxes())
        return boxes_.fromLast(p.x, p.y, hit);
    for (int i = trackerCount(); i-- > 0;)
        if (hit(i))
            return i;
    return -1;
}

/// Items whose boxes meet a rectangle, in order; 0 without memory.
int TrackerCollection::itemsIn(const ARect<double>& rect, Pile<int>& found)
{
    // boxes that change with every move of a drag take longer to make than what is out of sight
    // takes to draw
    const int all = !boxesKnown_ && followers_.size() >= manyFollowers;
    for (int i = 0; all && i < trackerCount(); ++i)
        if (!found.add(i))
            return 0;
    if (all)
        return 1;
    if (knowBoxes())
        return boxes_.meeting(rect, found);
    for (int i = 0; i < trackerCount(); ++i) {
        const ARect<double> box = boxOf(*trackerAt(i));
        if (box.left <= rect.right && box.right >= rect.left && box.top <= rect.bottom &&
            box.bottom >= rect.top && !found.add(i))
            return 0;
    }
    return 1;
}

void TrackerCollection::Draw(CDC* dc, CWnd* window)
{
    CRect box;
    Pile<int> found;
    if (!dc || !dc->GetClipBox(box) || box.IsRectEmpty() || !itemsIn(asBox(box), found))
        return;
    ATracker* const working = workingTracker();
    ATracker* const first = found.count() ? trackerAt(found.data()[0]) : working ? working : drawn_;
    if (!first)
        return;
    const int saved = dc->SaveDC();
    CRect clip;
    if (drawingClip(window, *first, clip))
        (void)dc->IntersectClipRect(clip);
    const ClippedDrawing clipped(*dc);
    OutlineMood mood(trackerCount() > mostSmooth);
    int selecting = edits_.selectionCount() > 0;
    for (int i = 0; i < trackerCount() && !selecting; ++i)
        selecting = trackerAt(i)->IsActive();
    for (std::size_t k = 0; k < found.count(); ++k) {
        const int i = found.data()[k];
        ATracker& tracker = *trackerAt(i);
        const int active = tracker.IsActive();
        const int marked = found.count() > mostWithHandles ? active && i == edits_.current()
                                                           : active || IsSelected(i);
        mood.setDashed(selecting && !active && !IsSelected(i));
        tracker.SetActive(marked);
        tracker.Draw(dc, window);
        tracker.SetActive(active);
    }
    mood.setDashed(false);
    if (working)
        working->Draw(dc, window);
    if (drawn_)
        drawn_->Draw(dc, window);
    drawHover(*dc);
    drawFocus(*dc);
    (void)dc->RestoreDC(saved);
}

int TrackerCollection::drawingClip(CWnd* window, ATracker& tracker, CRect& clip) const
{
    ARect<double> bounds;
    if (!window && !shapeBounds(nullptr, tracker, bounds))
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

/// For a focus that comes or goes by itself.
void TrackerCollection::invalidateFocus(CWnd* window) const
{
    constexpr int reach = focusReach + 2;
    CPoint p;
    if (window && FocusPoint(p))
        window->InvalidateRect(CRect(p.x - reach, p.y - reach, p.x + reach, p.y + reach));
}

void TrackerCollection::drawFocus(CDC& dc) const
{
    CPoint p;
    if (dragged_ || !FocusPoint(p))  // what a drag uncovers is the outline only
        return;
    const CPoint frame[] = {{p.x - focusReach, p.y - focusReach},
                            {p.x + focusReach, p.y - focusReach},
                            {p.x + focusReach, p.y + focusReach},
                            {p.x - focusReach, p.y + focusReach}};
    drawTrackerOutline(dc, frame, 4, true);
}

/// The last vertex of the polygon under construction.
int TrackerCollection::hoverFrom(CPoint& from) const
{
    ShapeValues shape;
    const ATracker* const working = workingTracker();
    if (!working || !(mode_ & toolArea) || !shapeOf(*working, shape) || shape.points.empty())
        return 0;
    from = pixelPoint(shape.points.back());
    return 1;
}

void TrackerCollection::drawHover(CDC& dc) const
{
    CPoint line[2];
    if (!hovering_ || !hoverFrom(line[0]))
        return;
    line[1] = hover_;
    drawTrackerOutline(dc, line, 2, false);
}

int TrackerCollection::OnMouseMove(CWnd* window, unsigned flags, CPoint p)
{
    (void)flags;
    CPoint from;
    if (dragged_ || !window || !hoverFrom(from))
        return 0;
    constexpr int lineMargin = 3;
    if (hovering_)
        invalidateTrace(*window, {{from, hover_}, false, {}, lineMargin});
    hovering_ = takesPress(p);
    hover_ = p;
    (void)closesAt(p, &hover_);
    if (hovering_)
        invalidateTrace(*window, {{from, hover_}, false, {}, lineMargin});
    return 1;
}

int TrackerCollection::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    (void)message;
    if (!window || hitArea != HTCLIENT)
        return 0;
    CPoint p = GetCursorPos();
    window->ScreenToClient(p);
    if (!takesPress(p))
        return 0;
    if (mode_ & (toolZoomIn | drawingTools)) {
        if (!zoomCursor_) {
            AddResourceModule({.cursors = toolCursors, .cursorCount = std::size(toolCursors)});
            zoomCursor_ = LoadCursor(IDC_TOOL_ZOOM);
            drawCursor_ = LoadCursor(IDC_TOOL_DRAW);
        }
        (void)SetCursor(mode_ & toolZoomIn ? zoomCursor_ : drawCursor_);
        return 1;
    }
    ATracker* const working = workingTracker();
    ATracker* const tracker = working ? working : trackerAt(edits_.current());
    return tracker && tracker->SetCursor(window, hitArea);
}

}  // namespace pavane

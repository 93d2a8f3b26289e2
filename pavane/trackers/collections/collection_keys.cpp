// The keyboard's way through a collection: focus, moves, vertices, leaving.

#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "pavane/trackers/tracker_shape.h"
#include "platform/CWnd.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace pavane
{

namespace
{

constexpr int fewestVertices = 3;

/// Moves of one handle (-1: of whole areas) are one step while keys repeat; never 0.
std::uint64_t keySeries(const std::vector<int>& items, int handle)
{
    std::uint64_t series = 1469598103934665603u;  // FNV-1a
    for (const int item : items)
        series = (series ^ static_cast<std::uint32_t>(item)) * 1099511628211u;
    return (series ^ static_cast<std::uint32_t>(handle)) | 1;
}

double squaredDistance(CPoint p, CPoint a, CPoint b, double& along)
{
    const double dx = static_cast<double>(b.x) - a.x;
    const double dy = static_cast<double>(b.y) - a.y;
    const double px = static_cast<double>(p.x) - a.x;
    const double py = static_cast<double>(p.y) - a.y;
    const double length = dx * dx + dy * dy;
    along = length > 0 ? std::clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
    return (px - along * dx) * (px - along * dx) + (py - along * dy) * (py - along * dy);
}

}  // namespace

int TrackerCollection::NextFocus(CWnd* window) { return stepFocus(window, 1); }

int TrackerCollection::PrevFocus(CWnd* window) { return stepFocus(window, -1); }

int TrackerCollection::stepFocus(CWnd* window, int direction)
{
    const auto handles = [&](int i) {
        ShapeValues shape;
        return GetShape(i, shape) ? handleCount(shape) : 0;
    };
    int item = focusItem_;
    int handle = focusHandle_ + direction;
    const ATracker* const current = trackerAt(edits_.current());
    if (item < 0 && current && current->IsActive() && edits_.current() != passedItem_) {
        item = edits_.current();
        handle = -1;
    } else if (item < 0) {
        item = direction > 0 ? 0 : trackerCount() - 1;
        handle = direction > 0 || item < 0 ? -1 : handles(item) - 1;
    } else if (handle >= handles(item)) {
        ++item;
        handle = -1;
    } else if (handle < -1) {
        --item;
        handle = item < 0 ? -1 : handles(item) - 1;
    }
    const int there = trackerAt(item) != nullptr;
    const LifeWatch self(life_);
    SetFocusAt(window, there ? item : -1, there ? handle : -1);
    if (self.alive())
        passedItem_ = there ? -1 : edits_.current();
    return there;
}

void TrackerCollection::SetFocusAt(CWnd* window, int item, int handle)
{
    ShapeValues shape;
    const int there = GetShape(item, shape);
    focusItem_ = there ? item : -1;
    focusHandle_ = there ? std::clamp(handle, -1, handleCount(shape) - 1) : -1;
    edits_.history().endSeries();
    pixelSteps_.reset();
    if (there) {
        if (!IsSelected(item))
            edits_.clearSelection();
        makeCurrent(item);
    }
    changed(window);
}

int TrackerCollection::FocusPoint(CPoint& p) const
{
    ShapeValues shape;
    if (focusItem_ < 0 || !GetShape(focusItem_, shape))
        return 0;
    if (focusHandle_ >= handleCount(shape))
        return 0;
    p = pixelPoint(focusHandle_ < 0 ? shapeCentre(shape) : handlePoint(shape, focusHandle_));
    return 1;
}

int TrackerCollection::MoveBy(CWnd* window, int dx, int dy)
{
    const std::vector<int> items = SelectedItems();
    ShapeValues shape;
    CPoint from;
    if (!FocusPoint(from)) {
        if (items.empty() || !GetShape(items.front(), shape))
            return 0;
        from = pixelPoint(shapeCentre(shape));
    }
    const APoint<double> a = shapePoint(from);
    const APoint<double> b = shapePoint({from.x + dx, from.y + dy});
    return moveByOffset(window, {b.x - a.x, b.y - a.y});
}

int TrackerCollection::MoveByValue(CWnd* window, double dx, double dy)
{
    return moveByOffset(window, shapeOffset({dx, dy}));
}

int TrackerCollection::moveByOffset(CWnd* window, APoint<double> offset)
{
    if (dragged_ || !std::isfinite(offset.x) || !std::isfinite(offset.y))
        return 0;
    if (focusItem_ >= 0 && focusHandle_ >= 0)
        return moveFocusedHandle(window, offset);
    const std::vector<int> items = SelectedItems();
    if (items.empty())
        return 0;
    return moveShapes(window, items, offset, StepLabel("Move", items).text());
}

int TrackerCollection::moveShapes(CWnd* window, const std::vector<int>& items,
                                  APoint<double> offset, const char* label)
{
    ARect<double> all{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    ShapeValues shape;
    for (const int i : items)
        if (GetShape(i, shape)) {
            const ARect<double> box = shapeBox(shape);
            all = {std::min(all.left, box.left), std::min(all.top, box.top),
                   std::max(all.right, box.right), std::max(all.bottom, box.bottom)};
        }
    ARect<double> bounds;
    if (shapeBounds(window, *trackerAt(items.front()), bounds))
        offset = offsetInside(offset, all, bounds);
    if (offset == APoint<double>{})
        return 0;
    {
        const Step step(edits_, label, keySeries(items, -1));
        for (const int i : items) {
            ATracker& tracker = *trackerAt(i);
            const std::string before = recordOf(tracker, i);
            if (!shapeOf(tracker, shape))
                continue;
            moveShape(shape, offset);
            if (setShapeOf(tracker, shape))
                noteChange(i, before);
        }
    }
    changed(window);
    return 1;
}

int TrackerCollection::moveFocusedHandle(CWnd* window, APoint<double> offset)
{
    ShapeValues shape;
    if (!GetShape(focusItem_, shape) || focusHandle_ >= handleCount(shape))
        return 0;
    ATracker& tracker = *trackerAt(focusItem_);
    const APoint<double> at = handlePoint(shape, focusHandle_);
    ARect<double> bounds;
    if (shapeBounds(window, tracker, bounds))
        offset = offsetInside(offset, {at.x, at.y, at.x, at.y}, bounds);
    if (offset == APoint<double>{} || !moveHandle(shape, focusHandle_, offset))
        return 0;
    const std::string before = recordOf(tracker, focusItem_);
    if (!setShapeOf(tracker, shape))
        return 0;
    {
        const int turned = shape.kind == ShapeValues::Kind::rotatedRectangle ||
                           shape.kind == ShapeValues::Kind::ellipse;
        const int turns = turned && focusHandle_ == handleCount(shape) - 1;
        const int vertex = shape.kind == ShapeValues::Kind::polygon;
        const StepLabel label(vertex  ? "Move of a vertex"
                              : turns ? "Turn"
                                      : "Resizing",
                              focusItem_);
        const Step step(edits_, label.text(), keySeries({focusItem_}, focusHandle_));
        noteChange(focusItem_, before);
    }
    changed(window);
    return 1;
}

/// The current area's vertices, or 0.
int TrackerCollection::polygonForVertices(ShapeValues& shape) const
{
    return GetShape(edits_.current(), shape) && shape.kind == ShapeValues::Kind::polygon &&
           !dragged_;
}

int TrackerCollection::InsertVertex(CWnd* window, const CPoint* at)
{
    ShapeValues shape;
    if (!polygonForVertices(shape) || shape.points.size() < 2)
        return 0;
    const int n = static_cast<int>(shape.points.size());
    const auto vertex = [&](int i) { return shape.points[static_cast<std::size_t>(i % n)]; };
    // a host may have changed the shape by itself
    const int focused = focusItem_ == edits_.current();
    int edge = focused && focusHandle_ >= 0 ? std::min(focusHandle_, n - 1) : n - 1;
    double along = 0.5;
    if (at) {
        double nearest = HUGE_VAL;
        for (int i = 0; i < n; ++i) {
            double here = 0;
            const double far =
                squaredDistance(*at, pixelPoint(vertex(i)), pixelPoint(vertex(i + 1)), here);
            if (far < nearest) {
                nearest = far;
                edge = i;
                along = here;
            }
        }
    }
    const APoint<double> a = vertex(edge);
    const APoint<double> b = vertex(edge + 1);
    const APoint<double> added{a.x + along * (b.x - a.x), a.y + along * (b.y - a.y)};
    shape.points.insert(shape.points.begin() + edge + 1, added);
    const LifeWatch self(life_);
    if (!ChangeTracker(nullptr, edits_.current(), StepLabel("New vertex", edits_.current()).text(),
                       [&](ATracker& tracker) { return setShapeOf(tracker, shape); }) ||
        !self.alive())
        return 0;
    if (focused && focusItem_ == edits_.current()) {
        focusHandle_ = edge + 1;
        fitFocus();  // handlers may have gone on
    }
    ChangeTrackState(window);
    return 1;
}

int TrackerCollection::DeleteVertex(CWnd* window, const CPoint* at)
{
    ShapeValues shape;
    if (!polygonForVertices(shape) || static_cast<int>(shape.points.size()) <= fewestVertices)
        return 0;
    int vertex = focusItem_ == edits_.current() ? focusHandle_ : -1;
    if (at) {
        constexpr int firstVertexCode = 2;
        vertex = trackerAt(edits_.current())->HitTestHandles(*at) - firstVertexCode;
    }
    if (vertex < 0 || vertex >= static_cast<int>(shape.points.size()))
        return 0;
    shape.points.erase(shape.points.begin() + vertex);
    const LifeWatch self(life_);
    if (!ChangeTracker(nullptr, edits_.current(),
                       StepLabel("Deletion of a vertex", edits_.current()).text(),
                       [&](ATracker& tracker) { return setShapeOf(tracker, shape); }) ||
        !self.alive())
        return 0;
    focusHandle_ = std::min(focusHandle_, static_cast<int>(shape.points.size()) - 1);
    ChangeTrackState(window);
    return 1;
}

int TrackerCollection::CloseArea(CWnd* window)
{
    ShapeValues shape;
    ATracker* const working = workingTracker();
    if (!working || dragged_ || !shapeOf(*working, shape) ||
        static_cast<int>(shape.points.size()) < fewestVertices)
        return 0;
    // any place will do that may be pressed; the last vertex can be out of sight by now
    working->refreshRects(window);
    CRect inside = working->clipRect();
    --inside.right;
    --inside.bottom;
    const std::string before = recordOf(*working, -1);
    if (!working->TrackReady(window, clampedTo(inside, pixelPoint(shape.points.back()))))
        return 0;
    takeWorking(window, before);
    return 1;
}

int TrackerCollection::PlaceShape(CWnd* window)
{
    if (!(mode_ & drawingTools) || workingTracker() || dragged_)
        return 0;
    std::unique_ptr<ATracker> tracker(makeTracker(mode_));
    ShapeValues shape;
    ARect<double> bounds;
    if (!tracker || !shapeOf(*tracker, shape))
        return 0;
    adopt(*tracker);
    if (!shapeBounds(window, *tracker, bounds))
        return 0;
    // in pixels: the middle of a logarithmic axis is not that of its values
    const CPoint from = pixelPoint({bounds.left, bounds.top});
    const CPoint to = pixelPoint({bounds.right, bounds.bottom});
    const auto between = [](int a, int b, int eighths) {
        return truncated(a + (static_cast<double>(b) - a) * eighths / 8);
    };
    const APoint<double> a = shapePoint({between(from.x, to.x, 3), between(from.y, to.y, 3)});
    const APoint<double> b = shapePoint({between(from.x, to.x, 5), between(from.y, to.y, 5)});
    shape.rect = {a.x, a.y, b.x, b.y};
    if (shape.kind == ShapeValues::Kind::polygon)
        shape.points = {a, {b.x, a.y}, b, {a.x, b.y}};
    else if (shape.kind != ShapeValues::Kind::rectangle)  // in the order that drawing gives
        shape.rect = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x),
                      std::max(a.y, b.y)};
    if (a.x == b.x || a.y == b.y || !setShapeOf(*tracker, shape))
        return 0;
    if (shape.kind == ShapeValues::Kind::polygon)
        tracker->SetStyle(tracker->GetStyle() | trackerReady);
    edits_.history().endSeries();
    takeDrawn(window, tracker.release());
    return 1;
}

int TrackerCollection::Escape(CWnd* window)
{
    if (workingTracker()) {
        const int mode = mode_;
        BeginMode(window, mode);  // the tool stays at hand
        return 1;
    }
    if (mode_ != toolArrow) {
        EndMode(window, mode_);
        return 1;
    }
    const ATracker* const current = trackerAt(edits_.current());
    if (edits_.selectionCount() == 0 && focusItem_ < 0 && !(current && current->IsActive()))
        return 0;
    ClearSelection(window);
    return 1;
}

}  // namespace pavane

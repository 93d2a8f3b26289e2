#include "pavane/trackers/collections/AreaKeys.h"

#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace pavane
{

namespace
{

using Step = TrackerEdits::Step;

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

HandResult AreaKeys::stepFocus(int direction)
{
    const auto handles = [&](int i) {
        ShapeValues shape;
        return trackers_.shapeAt(i, shape) ? handleCount(shape) : 0;
    };
    int item = focus_.item;
    int handle = focus_.handle + direction;
    const int current = edits_.areas().current();
    if (item < 0 && edits_.activeTracker() && current != focus_.passed) {
        item = current;
        handle = -1;
    } else if (item < 0) {
        item = direction > 0 ? 0 : trackers_.count() - 1;
        handle = direction > 0 || item < 0 ? -1 : handles(item) - 1;
    } else if (handle >= handles(item)) {
        ++item;
        handle = -1;
    } else if (handle < -1) {
        --item;
        handle = item < 0 ? -1 : handles(item) - 1;
    }
    const int there = trackers_.at(item) != nullptr;
    HandResult result = focusAt(there ? item : -1, there ? handle : -1);
    focus_.passed = there ? -1 : edits_.areas().current();
    result.used = there;
    return result;
}

HandResult AreaKeys::focusAt(int item, int handle)
{
    ShapeValues shape;
    const int there = trackers_.shapeAt(item, shape);
    focus_.item = there ? item : -1;
    focus_.handle = there ? std::clamp(handle, -1, handleCount(shape) - 1) : -1;
    AreaEdits& areas = edits_.areas();
    areas.history().endSeries();
    trackers_.forgetParts();
    if (there) {
        if (!areas.isSelected(item))
            areas.clearSelection();
        edits_.makeCurrent(item);
    }
    return HandResult::edited();
}

HandResult AreaKeys::moveBy(CWnd* window, int dx, int dy)
{
    CPoint from;
    if (!eye_.focusPoint(focus_, from)) {
        const std::vector<int> items = edits_.areas().selected();
        ShapeValues shape;
        if (items.empty() || !trackers_.shapeAt(items.front(), shape))
            return {};
        from = trackers_.pixelPoint(shapeCentre(shape));
    }
    const APoint<double> a = trackers_.shapePoint(from);
    const APoint<double> b = trackers_.shapePoint({from.x + dx, from.y + dy});
    return moveByOffset(window, {b.x - a.x, b.y - a.y});
}

HandResult AreaKeys::moveByValue(CWnd* window, double dx, double dy)
{
    return moveByOffset(window, trackers_.shapeOffset({dx, dy}));
}

HandResult AreaKeys::moveByOffset(CWnd* window, APoint<double> offset)
{
    if (drag_.isOn() || !std::isfinite(offset.x) || !std::isfinite(offset.y))
        return {};
    if (focus_.item >= 0 && focus_.handle >= 0)
        return moveHandleBy(window, offset);
    const std::vector<int> items = edits_.areas().selected();
    return items.empty() ? HandResult() : moveShapes(window, items, offset);
}

HandResult AreaKeys::moveShapes(CWnd* window, const std::vector<int>& items, APoint<double> offset)
{
    ARect<double> all{HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    ShapeValues shape;
    for (const int i : items)
        if (trackers_.shapeAt(i, shape)) {
            const ARect<double> box = shapeBox(shape);
            all = {std::min(all.left, box.left), std::min(all.top, box.top),
                   std::max(all.right, box.right), std::max(all.bottom, box.bottom)};
        }
    ARect<double> bounds;
    if (trackers_.shapeBounds(window, *trackers_.at(items.front()), bounds))
        offset = offsetInside(offset, all, bounds);
    if (offset == APoint<double>{})
        return {};
    const Step step(edits_.areas(), StepLabel("Move", items).text(), keySeries(items, -1));
    for (const int i : items) {
        ATracker& tracker = *trackers_.at(i);
        const std::string before = edits_.recordOf(tracker, i);
        if (!shapeOf(tracker, shape))
            continue;
        moveShape(shape, offset);
        if (setShapeOf(tracker, shape))
            edits_.noteChange(i, before);
    }
    return HandResult::edited();
}

HandResult AreaKeys::moveHandleBy(CWnd* window, APoint<double> offset)
{
    ShapeValues shape;
    const int item = focus_.item;
    const int handle = focus_.handle;
    if (!trackers_.shapeAt(item, shape) || handle >= handleCount(shape))
        return {};
    ATracker& tracker = *trackers_.at(item);
    const APoint<double> at = handlePoint(shape, handle);
    ARect<double> bounds;
    if (trackers_.shapeBounds(window, tracker, bounds))
        offset = offsetInside(offset, {at.x, at.y, at.x, at.y}, bounds);
    if (offset == APoint<double>{} || !moveHandle(shape, handle, offset))
        return {};
    const std::string before = edits_.recordOf(tracker, item);
    if (!setShapeOf(tracker, shape))
        return {};
    const int turned = shape.kind == ShapeValues::Kind::rotatedRectangle ||
                       shape.kind == ShapeValues::Kind::ellipse;
    const int turns = turned && handle == handleCount(shape) - 1;
    const int vertex = shape.kind == ShapeValues::Kind::polygon;
    const StepLabel label(vertex ? "Move of a vertex" : turns ? "Turn" : "Resizing", item);
    const Step step(edits_.areas(), label.text(), keySeries({item}, handle));
    edits_.noteChange(item, before);
    return HandResult::edited();
}

/// The current area's vertices, or 0.
int AreaKeys::polygonForVertices(ShapeValues& shape) const
{
    return trackers_.shapeAt(edits_.areas().current(), shape) &&
           shape.kind == ShapeValues::Kind::polygon && !drag_.isOn();
}

HandResult AreaKeys::insertVertex(const CPoint* at)
{
    ShapeValues shape;
    if (!polygonForVertices(shape) || shape.points.size() < 2)
        return {};
    const int current = edits_.areas().current();
    const int n = static_cast<int>(shape.points.size());
    const auto vertex = [&](int i) {
        return shape.points[static_cast<std::size_t>(i < n ? i : 0)];
    };
    // a host may have changed the shape by itself
    const int focused = focus_.item == current;
    int edge = focused && focus_.handle >= 0 ? std::min(focus_.handle, n - 1) : n - 1;
    double along = 0.5;
    if (at) {
        double nearest = HUGE_VAL;
        for (int i = 0; i < n; ++i) {
            double here = 0;
            const double far = squaredDistance(*at, trackers_.pixelPoint(vertex(i)),
                                               trackers_.pixelPoint(vertex(i + 1)), here);
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
    if (!edits_.change(current, StepLabel("New vertex", current).text(),
                       [&](ATracker& tracker) { return setShapeOf(tracker, shape); }))
        return {};
    if (focused)
        focus_.handle = edge + 1;
    return HandResult::edited();
}

HandResult AreaKeys::deleteVertex(const CPoint* at)
{
    ShapeValues shape;
    if (!polygonForVertices(shape) || static_cast<int>(shape.points.size()) <= fewestVertices)
        return {};
    const int current = edits_.areas().current();
    int vertex = focus_.item == current ? focus_.handle : -1;
    if (at) {
        constexpr int firstVertexCode = 2;
        vertex = trackers_.at(current)->HitTestHandles(*at) - firstVertexCode;
    }
    if (vertex < 0 || vertex >= static_cast<int>(shape.points.size()))
        return {};
    shape.points.erase(shape.points.begin() + vertex);
    if (!edits_.change(current, StepLabel("Deletion of a vertex", current).text(),
                       [&](ATracker& tracker) { return setShapeOf(tracker, shape); }))
        return {};
    focus_.handle = std::min(focus_.handle, static_cast<int>(shape.points.size()) - 1);
    return HandResult::edited();
}

/// The middle of what is shown, a quarter of it wide and high, as a shape of the same kind.
int AreaKeys::middleOf(CWnd* window, ATracker& tracker, ShapeValues& shape) const
{
    ARect<double> bounds;
    if (!trackers_.shapeBounds(window, tracker, bounds))
        return 0;
    // in pixels: the middle of a logarithmic axis is not that of its values
    const CPoint from = trackers_.pixelPoint({bounds.left, bounds.top});
    const CPoint to = trackers_.pixelPoint({bounds.right, bounds.bottom});
    const auto between = [](int a, int b, int eighths) {
        return truncated(a + (static_cast<double>(b) - a) * eighths / 8);
    };
    const APoint<double> a =
        trackers_.shapePoint({between(from.x, to.x, 3), between(from.y, to.y, 3)});
    const APoint<double> b =
        trackers_.shapePoint({between(from.x, to.x, 5), between(from.y, to.y, 5)});
    shape.rect = {a.x, a.y, b.x, b.y};
    if (shape.kind == ShapeValues::Kind::polygon)
        shape.points = {a, {b.x, a.y}, b, {a.x, b.y}};
    else if (shape.kind != ShapeValues::Kind::rectangle)  // in the order that drawing gives
        shape.rect = {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x),
                      std::max(a.y, b.y)};
    return a.x != b.x && a.y != b.y;
}

HandResult AreaKeys::placeShape(CWnd* window)
{
    const int tool = edits_.tool();
    if (!(tool & drawingTools) || trackers_.open() || drag_.isOn())
        return {};
    std::unique_ptr<ATracker> tracker(trackers_.make(tool));
    ShapeValues shape;
    if (!tracker || !shapeOf(*tracker, shape))
        return {};
    trackers_.adopt(*tracker);
    if (!middleOf(window, *tracker, shape) || !setShapeOf(*tracker, shape))
        return {};
    if (shape.kind == ShapeValues::Kind::polygon)
        tracker->SetStyle(tracker->GetStyle() | trackerReady);
    edits_.areas().history().endSeries();
    return edits_.takeDrawn(tracker.release());
}

}  // namespace pavane

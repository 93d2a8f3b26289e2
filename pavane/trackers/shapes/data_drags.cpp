#include "pavane/trackers/shapes/data_drags.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// `wanted` shortened so that low..high gets no farther out of the values a to b.
double shortened(double wanted, double low, double high, double a, double b)
{
    const double least = std::min(0.0, std::min(a, b) - low);
    const double greatest = std::max(0.0, std::max(a, b) - high);
    return std::max(least, std::min(wanted, greatest));
}

double kept(double by, double edge, double opposite, bool mayInvert)
{
    if (mayInvert)
        return by;
    const double room = opposite - edge;
    return room < 0 ? std::max(by, room) : std::min(by, room);
}

/// Pixels that a length along the direction (x, y) in data space has.
double pixelsAlong(double x, double y, const APoint<double>& units)
{
    return std::hypot(x / units.x, y / units.y);
}

void widen(double& low, double& high, double pixelsPerUnit, int least)
{
    constexpr double slack = 1e-6;  // of a pixel: what is just at the least keeps its bits
    if (!(std::abs(high - low) * pixelsPerUnit < least - slack))
        return;
    const double middle = low + (high - low) / 2;
    const double half = std::copysign(least / pixelsPerUnit / 2, high - low);
    if (!std::isfinite(middle + half) || !std::isfinite(middle - half))
        return;
    low = middle - half;
    high = middle + half;
}

}  // namespace

ARect<double> withDraggedEdges(const ARect<double>& start, const CRect& before, const CRect& after,
                               const AxisPixels& pixels)
{
    const APoint<double> first = pixels.value({after.left, after.top});
    const APoint<double> last = pixels.value({after.right, after.bottom});
    ARect<double> r = start;
    if (after.left != before.left)
        r.left = first.x;
    if (after.top != before.top)
        r.top = first.y;
    if (after.right != before.right)
        r.right = last.x;
    if (after.bottom != before.bottom)
        r.bottom = last.y;
    return isFinite(r) ? r : start;
}

APoint<double> dataStep(const ARect<double>& box, CPoint press, CPoint pointer, const CRect& valid,
                        const AxisPixels& pixels)
{
    const APoint<double> from = pixels.value(press);
    const APoint<double> to = pixels.value(clampedTo(valid, pointer));
    const APoint<double> a = pixels.value({valid.left, valid.top});
    const APoint<double> b = pixels.value({valid.right, valid.bottom});
    const APoint<double> step{shortened(to.x - from.x, box.left, box.right, a.x, b.x),
                              shortened(to.y - from.y, box.top, box.bottom, a.y, b.y)};
    return isFinite(step) ? step : APoint<double>();
}

ARect<double> boundingBox(const APoint<double>* points, int n)
{
    if (n < 1)
        return {};
    ARect<double> box{points[0].x, points[0].y, points[0].x, points[0].y};
    for (int i = 1; i < n; ++i) {
        box.left = std::min(box.left, points[i].x);
        box.top = std::min(box.top, points[i].y);
        box.right = std::max(box.right, points[i].x);
        box.bottom = std::max(box.bottom, points[i].y);
    }
    return box;
}

APoint<double> offsetBy(const APoint<double>& p, const APoint<double>& step)
{
    const APoint<double> moved{step.x == 0 ? p.x : p.x + step.x, step.y == 0 ? p.y : p.y + step.y};
    return isFinite(moved) ? moved : p;
}

ARect<double> offsetBy(const ARect<double>& r, const APoint<double>& step)
{
    const APoint<double> a = offsetBy(APoint<double>{r.left, r.top}, step);
    const APoint<double> b = offsetBy(APoint<double>{r.right, r.bottom}, step);
    return {a.x, a.y, b.x, b.y};
}

APoint<double> centreOf(const ARect<double>& rect)
{
    return {rect.left / 2 + rect.right / 2, rect.top / 2 + rect.bottom / 2};
}

APoint<double> halfSides(const ARect<double>& rect)
{
    return {std::abs(rect.right / 2 - rect.left / 2), std::abs(rect.bottom / 2 - rect.top / 2)};
}

void turnedHandles(const TurnedDataRect& shape, APoint<double> (&points)[turnedHandleCount])
{
    const ARect<double>& r = shape.rect;
    const APoint<double> c = centreOf(r);
    const APoint<double> plain[turnedHandleCount] = {
        {r.left, r.top},    {r.right, r.top}, {r.right, r.bottom},
        {r.left, r.bottom}, {c.x, r.top},     {r.right, c.y},
        {c.x, r.bottom},    {r.left, c.y},    {r.right / 2 + c.x / 2, c.y}};
    const double cosine = std::cos(shape.angle);
    const double sine = std::sin(shape.angle);
    for (int i = 0; i < turnedHandleCount; ++i) {
        const double dx = plain[i].x - c.x;
        const double dy = plain[i].y - c.y;
        points[i] = shape.angle == 0 ? plain[i]
                                     : APoint<double>{c.x + (dx * cosine - dy * sine),
                                                      c.y + (dx * sine + dy * cosine)};
    }
}

void widenToLeast(ARect<double>& rect, double angle, CSize least, const AxisPixels& pixels)
{
    const APoint<double> units = pixels.unitsPerPixel(pixels.pixel(centreOf(rect)));
    if (!(units.x > 0) || !(units.y > 0))
        return;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    widen(rect.left, rect.right, pixelsAlong(cosine, sine, units), least.cx);
    widen(rect.top, rect.bottom, pixelsAlong(sine, cosine, units), least.cy);
}

TurnedDataDrag::TurnedDataDrag(const TurnedDataRect& start, int hit, CPoint press,
                               const CRect& valid, const APoint<double>& halfExtent, bool mayInvert,
                               const AxisPixels& pixels)
    : start_(start), hit_(hit), press_(press), valid_(valid), halfExtent_(halfExtent),
      mayInvert_(mayInvert), pixels_(pixels)
{
}

TurnedDataRect TurnedDataDrag::at(CPoint pointer) const
{
    if (pointer == press_)
        return start_;
    TurnedDataRect next = start_;
    if (isSizing(hit_)) {
        next = sized(clampedTo(valid_, pointer));
    } else if (hit_ == hitTurning) {
        next = turned(pointer);
    } else {
        const APoint<double> c = centreOf(start_.rect);
        const ARect<double> box{c.x - halfExtent_.x, c.y - halfExtent_.y, c.x + halfExtent_.x,
                                c.y + halfExtent_.y};
        next.rect = offsetBy(start_.rect, dataStep(box, press_, pointer, valid_, pixels_));
    }
    return isFinite(next.rect) && std::isfinite(next.angle) ? next : start_;
}

TurnedDataRect TurnedDataDrag::sized(CPoint pointer) const
{
    const HandleEdges edges = handleEdges(hit_ - hitFirstHandle);
    // the handle goes to the pixel as far from the pointer as it was at the press
    APoint<double> handles[turnedHandleCount];
    turnedHandles(start_, handles);
    const CPoint from = pixels_.pixel(handles[hit_ - hitFirstHandle]);
    const CPoint to(saturatedSum(from.x, static_cast<long long>(pointer.x) - press_.x),
                    saturatedSum(from.y, static_cast<long long>(pointer.y) - press_.y));
    const APoint<double> a = pixels_.value(from);
    const APoint<double> b = pixels_.value(to);
    const double cosine = std::cos(start_.angle);
    const double sine = std::sin(start_.angle);
    const ARect<double>& s = start_.rect;
    ARect<double> r = s;
    const double x = (b.x - a.x) * cosine + (b.y - a.y) * sine;
    const double y = (b.y - a.y) * cosine - (b.x - a.x) * sine;
    double shiftX = 0;  // of the centre, along the sides
    double shiftY = 0;
    if (edges.x != EdgeX::none) {
        double& edge = edges.x == EdgeX::left ? r.left : r.right;
        const double opposite = edges.x == EdgeX::left ? s.right : s.left;
        shiftX = kept(x, edge, opposite, mayInvert_) / 2;
        edge += 2 * shiftX;
    }
    if (edges.y != EdgeY::none) {
        double& edge = edges.y == EdgeY::top ? r.top : r.bottom;
        const double opposite = edges.y == EdgeY::top ? s.bottom : s.top;
        shiftY = kept(y, edge, opposite, mayInvert_) / 2;
        edge += 2 * shiftY;
    }
    if (start_.angle != 0) {
        // in the turned frame the centre has moved along the sides, not along the axes
        const APoint<double> step{shiftX * cosine - shiftY * sine - shiftX,
                                  shiftX * sine + shiftY * cosine - shiftY};
        r = offsetBy(r, step);
    }
    if (s.left <= s.right && r.left > r.right)
        std::swap(r.left, r.right);  // the handle that turns lies where values grow
    return {r, start_.angle};
}

TurnedDataRect TurnedDataDrag::turned(CPoint pointer) const
{
    const APoint<double> centre = centreOf(start_.rect);
    const APoint<double> p = pixels_.value(pointer);
    const double side = start_.rect.left > start_.rect.right ? -1 : 1;
    const double x = side * (p.x - centre.x);
    const double y = side * (p.y - centre.y);
    if (x == 0 && y == 0)
        return start_;
    return {start_.rect, std::atan2(y, x)};
}

}  // namespace pavane

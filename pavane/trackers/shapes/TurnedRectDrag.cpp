#include "pavane/trackers/shapes/TurnedRectDrag.h"

#include "pavane/trackers/shapes/RectDrag.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

int nearest(double v) { return truncated(std::floor(v + 0.5)); }

double halfSum(int a, int b) { return (static_cast<double>(a) + b) / 2; }

/// Length by which a side moved, so that it does not pass the opposite one.
double kept(double by, int edge, int opposite, bool mayInvert)
{
    if (mayInvert)
        return by;
    const double room = static_cast<double>(opposite) - edge;
    return room < 0 ? std::max(by, room) : std::min(by, room);
}

}  // namespace

double TurnDirection::follow(double angle)
{
    double step = begun_ ? angle - last_ : 0;
    if (step > pi)
        step -= 2 * pi;
    if (step < -pi)
        step += 2 * pi;
    if (step != 0)
        direction_ = step;
    begun_ = true;
    last_ = angle;
    return direction_;
}

TurnedRectDrag::TurnedRectDrag(const TurnedRect& start, int hit, CPoint press, const CRect& valid,
                               const CRect& box, bool mayInvert)
    : start_(start), hit_(hit), press_(press), valid_(valid), box_(box), mayInvert_(mayInvert),
      edges_(isSizing(hit) ? handleEdges(hit - hitFirstHandle) : HandleEdges()),
      cos_(std::cos(start.angle)), sin_(std::sin(start.angle))
{
}

TurnedRect TurnedRectDrag::at(CPoint pointer) const
{
    if (pointer == press_)
        return start_;
    if (isSizing(hit_))
        return sized(clampedTo(valid_, pointer));
    if (hit_ != hitTurning)
        return moved(pointer);
    const CPoint centre = centreOf(start_.rect);
    return pointer == centre ? start_ : TurnedRect{start_.rect, pointerAngle(pointer, centre)};
}

TurnedRect TurnedRectDrag::moved(CPoint pointer) const
{
    const long long dx = pushedStep(static_cast<long long>(pointer.x) - press_.x, box_.left,
                                    box_.right, valid_.left, valid_.right);
    const long long dy = pushedStep(static_cast<long long>(pointer.y) - press_.y, box_.top,
                                    box_.bottom, valid_.top, valid_.bottom);
    const CRect& r = start_.rect;
    return {{saturatedSum(r.left, dx), saturatedSum(r.top, dy), saturatedSum(r.right, dx),
             saturatedSum(r.bottom, dy)},
            start_.angle};
}

TurnedRect TurnedRectDrag::sized(CPoint pointer) const
{
    const auto dx = static_cast<double>(static_cast<long long>(pointer.x) - press_.x);
    const auto dy = static_cast<double>(static_cast<long long>(pointer.y) - press_.y);
    if (start_.angle == 0)
        return sizedUpright(dx, dy);
    return sizedTurned(dx * cos_ + dy * sin_, dy * cos_ - dx * sin_);
}

TurnedRect TurnedRectDrag::sizedUpright(double x, double y) const
{
    CRect r = start_.rect;
    const CRect& s = start_.rect;
    if (edges_.x == EdgeX::left)
        r.left = saturatedSum(s.left, truncated(kept(x, s.left, s.right, mayInvert_)));
    if (edges_.x == EdgeX::right)
        r.right = saturatedSum(s.right, truncated(kept(x, s.right, s.left, mayInvert_)));
    if (edges_.y == EdgeY::top)
        r.top = saturatedSum(s.top, truncated(kept(y, s.top, s.bottom, mayInvert_)));
    if (edges_.y == EdgeY::bottom)
        r.bottom = saturatedSum(s.bottom, truncated(kept(y, s.bottom, s.top, mayInvert_)));
    return {normalized(r), start_.angle};
}

TurnedRect TurnedRectDrag::sizedTurned(double x, double y) const
{
    const CRect& s = start_.rect;
    double width = static_cast<double>(s.right) - s.left;
    double height = static_cast<double>(s.bottom) - s.top;
    double shiftX = 0;  // of the centre, along the sides
    double shiftY = 0;
    if (edges_.x != EdgeX::none) {
        const bool left = edges_.x == EdgeX::left;
        const double by = kept(x, left ? s.left : s.right, left ? s.right : s.left, mayInvert_);
        width += left ? -by : by;
        shiftX = by / 2;
    }
    if (edges_.y != EdgeY::none) {
        const bool top = edges_.y == EdgeY::top;
        const double by = kept(y, top ? s.top : s.bottom, top ? s.bottom : s.top, mayInvert_);
        height += top ? -by : by;
        shiftY = by / 2;
    }
    const double cx = halfSum(s.left, s.right) + shiftX * cos_ - shiftY * sin_;
    const double cy = halfSum(s.top, s.bottom) + shiftX * sin_ + shiftY * cos_;
    const int w = nearest(width);
    const int h = nearest(height);
    const int left = nearest(cx - w / 2.0);
    const int top = nearest(cy - h / 2.0);
    // whole coordinates cannot hold the centre: of its neighbours, the one that leaves the opposite
    // side best in its place
    CRect best(left, top, saturatedSum(left, w), saturatedSum(top, h));
    double least = offOpposite(best);
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int l = saturatedSum(left, dx);
            const int t = saturatedSum(top, dy);
            const CRect r(l, t, saturatedSum(l, w), saturatedSum(t, h));
            const double off = offOpposite(r);
            if (off < least) {
                least = off;
                best = r;
            }
        }
    return {normalized(best), start_.angle};
}

/// How far the corners of the opposite side lie from where they were, in pixels.
double TurnedRectDrag::offOpposite(const CRect& rect) const
{
    const CPoint before = centreOf(start_.rect);
    const CPoint after = centreOf(rect);
    const auto part = [&](int edge, int centre) { return static_cast<double>(edge) - centre; };
    double off = 0;
    for (int corner = 0; corner < 4; ++corner) {
        const HandleEdges at = handleEdges(corner);
        if (at.x == edges_.x || at.y == edges_.y)
            continue;
        const auto turned = [&](const CRect& r, CPoint c, bool x) {
            const double dx = part(at.x == EdgeX::left ? r.left : r.right, c.x);
            const double dy = part(at.y == EdgeY::top ? r.top : r.bottom, c.y);
            return x ? c.x + std::trunc(dx * cos_ - dy * sin_)
                     : c.y + std::trunc(dx * sin_ + dy * cos_);
        };
        off =
            std::max({off, std::abs(turned(rect, after, true) - turned(start_.rect, before, true)),
                      std::abs(turned(rect, after, false) - turned(start_.rect, before, false))});
    }
    return off;
}

}  // namespace pavane

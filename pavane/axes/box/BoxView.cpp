#include "pavane/axes/box/BoxView.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double mostRatio = 2;
constexpr double mostPan = 1000;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }

/// Sine and cosine that are exact at the quarters of a turn, where edges of the box coincide.
double sine(double degrees)
{
    const double quarters = degrees / 90;
    if (quarters == std::floor(quarters)) {
        constexpr double values[] = {0, 1, 0, -1};
        return values[static_cast<int>(quarters) & 3];
    }
    return std::sin(radians(degrees));
}
double cosine(double degrees) { return sine(degrees + 90); }

}  // namespace

int BoxView::setView(double azimuth, double elevation)
{
    if (!std::isfinite(azimuth) || !std::isfinite(elevation))
        return 0;
    azimuth_ = std::fmod(azimuth, 360);
    if (azimuth_ < 0)
        azimuth_ = azimuth_ + 360 < 360 ? azimuth_ + 360 : 0;
    elevation_ = std::clamp(elevation, 0.0, 90.0);
    ratio_ = 0;
    update();
    return 1;
}

int BoxView::setOblique(double angle, double ratio)
{
    if (!std::isfinite(angle) || !std::isfinite(ratio))
        return 0;
    angle_ = std::clamp(angle, 0.0, 180.0);
    ratio_ = std::clamp(ratio, 0.0, mostRatio);
    update();
    return 1;
}

int BoxView::setHeight(double share)
{
    if (!std::isfinite(share))
        return 0;
    height_ = std::clamp(share, leastHeight, mostHeight);
    update();
    return 1;
}

int BoxView::setBase(double width, double depth)
{
    const double longer = std::max(width, depth);
    if (!(width > 0) || !(depth > 0) || !std::isfinite(longer))
        return 0;
    constexpr double narrowest = 1e-3;
    width_ = std::max(width / longer, narrowest);
    depth_ = std::max(depth / longer, narrowest);
    update();
    return 1;
}

int BoxView::setZoom(double zoom)
{
    if (!std::isfinite(zoom) || !(zoom > 0))
        return 0;
    zoom_ = std::clamp(zoom, leastZoom, mostZoom);
    update();
    return 1;
}

int BoxView::setPan(double right, double down)
{
    if (!std::isfinite(right) || !std::isfinite(down))
        return 0;
    panX_ = std::clamp(right, -mostPan, mostPan);
    panY_ = std::clamp(down, -mostPan, mostPan);
    update();
    return 1;
}

void BoxView::fit(const CRect& rect)
{
    rect_ = rect;
    rect_.right = std::max(rect_.right, rect_.left + 1);
    rect_.bottom = std::max(rect_.bottom, rect_.top + 1);
    update();
}

void BoxView::zoomAt(const CPointF& at, double factor)
{
    const CPointF before{transform_.x0, transform_.y0};
    const double old = zoom_;
    if (!setZoom(zoom_ * factor))
        return;
    const double grown = zoom_ / old;
    panX_ += (at.x + (before.x - at.x) * grown - transform_.x0) / rect_.Width();
    panY_ += (at.y + (before.y - at.y) * grown - transform_.y0) / rect_.Height();
    setPan(panX_, panY_);
}

/// Width and height of the box in the picture, in its own units, at whatever azimuth.
CPointF BoxView::extent() const
{
    if (isOblique())
        return {width_ + ratio_ * depth_ * std::fabs(cosine(angle_)),
                height_ + ratio_ * depth_ * sine(angle_)};
    const double diagonal = std::hypot(width_, depth_);
    return {diagonal, height_ * cosine(elevation_) + diagonal * sine(elevation_)};
}

void BoxView::update()
{
    const CPointF size = extent();
    const double scale = zoom_ * std::min(rect_.Width() / size.x, rect_.Height() / size.y);
    BoxTransform& t = transform_;
    t.x0 = rect_.left + rect_.Width() * (0.5 + panX_);
    t.y0 = rect_.top + rect_.Height() * (0.5 + panY_);
    if (isOblique()) {
        t.xp = scale * width_;
        t.xq = scale * depth_ * ratio_ * cosine(angle_);
        t.yp = 0;
        t.yq = -scale * depth_ * ratio_ * sine(angle_);
        t.ys = -scale * height_;
        t.dp = t.ds = 0;
        t.dq = depth_;
        return;
    }
    const double sinA = sine(azimuth_), cosA = cosine(azimuth_);
    const double sinE = sine(elevation_), cosE = cosine(elevation_);
    t.xp = scale * width_ * cosA;
    t.xq = scale * depth_ * sinA;
    t.yp = scale * width_ * sinA * sinE;
    t.yq = -scale * depth_ * cosA * sinE;
    t.ys = -scale * height_ * cosE;
    t.dp = -width_ * sinA * cosE;
    t.dq = depth_ * cosA * cosE;
    t.ds = -height_ * sinE;
}

int BoxView::unproject(const CPointF& at, double s, BoxPoint& point) const
{
    const BoxTransform& t = transform_;
    const double area = t.xp * t.yq - t.xq * t.yp;
    // of what the base would cover seen from above
    const double whole = std::hypot(t.xp, t.xq) * std::hypot(t.yp, t.yq, t.ys);
    if (!(std::fabs(area) > 1e-9 * whole))
        return 0;
    const double x = at.x - t.x0, y = at.y - t.y0 - t.ys * s;
    point = {(x * t.yq - y * t.xq) / area, (y * t.xp - x * t.yp) / area, s};
    return 1;
}

BoxPoint BoxView::sight() const
{
    BoxPoint step;
    if (isOblique())
        step = {-ratio_ * depth_ * cosine(angle_) / width_, 1,
                -ratio_ * depth_ * sine(angle_) / height_};
    else
        step = {-sine(azimuth_) * cosine(elevation_) / width_,
                cosine(azimuth_) * cosine(elevation_) / depth_, -sine(elevation_) / height_};
    const double most = std::max({std::fabs(step.p), std::fabs(step.q), std::fabs(step.s)});
    return {step.p / most, step.q / most, step.s / most};
}

BoxEdges BoxView::edges() const
{
    // away from the eye along p and q, also where the view from above has no such part
    const double awayP = isOblique() ? -cosine(angle_) : -sine(azimuth_);
    const double awayQ = isOblique() ? 1 : cosine(azimuth_);
    const BoxTransform& t = transform_;
    BoxEdges edges;
    // of two that are equally near the one at the right, as z is labelled at the left
    edges.wallP = awayP > 0 || (awayP == 0 && t.xp < 0) ? 0.5 : -0.5;
    edges.wallQ = awayQ < 0 || (awayQ == 0 && t.xq > 0) ? -0.5 : 0.5;
    edges.x = {{-0.5, -edges.wallQ, -0.5}, {0.5, -edges.wallQ, -0.5}};
    edges.y = {{-edges.wallP, -0.5, -0.5}, {-edges.wallP, 0.5, -0.5}};
    // of two that are equally far out the nearer one
    const double leftP = t.xp != 0 ? (t.xp > 0 ? -0.5 : 0.5) : -edges.wallP;
    const double leftQ = t.xq != 0 ? (t.xq > 0 ? -0.5 : 0.5) : -edges.wallQ;
    const double rightP = t.xp != 0 ? -leftP : leftP;
    const double rightQ = t.xq != 0 ? -leftQ : leftQ;
    edges.z = {{leftP, leftQ, -0.5}, {leftP, leftQ, 0.5}};
    edges.z2 = {{rightP, rightQ, -0.5}, {rightP, rightQ, 0.5}};
    return edges;
}

double BoxView::stepsTo15(double degrees) { return std::round(degrees / 15) * 15; }

void BoxView::lookAlong(int axis) { setView(axis == 0 ? 90 : 0, axis == 2 ? 90 : 0); }

bool operator==(const BoxView& a, const BoxView& b)
{
    return a.azimuth_ == b.azimuth_ && a.elevation_ == b.elevation_ && a.angle_ == b.angle_ &&
           a.ratio_ == b.ratio_ && a.height_ == b.height_ && a.width_ == b.width_ &&
           a.depth_ == b.depth_ && a.zoom_ == b.zoom_ && a.panX_ == b.panX_ && a.panY_ == b.panY_ &&
           a.rect_.TopLeft() == b.rect_.TopLeft() && a.rect_.BottomRight() == b.rect_.BottomRight();
}

}  // namespace pavane

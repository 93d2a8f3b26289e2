#pragma once

#include "platform/geometry.h"
#include "tessel/api.h"

namespace pavane
{

/// A place in a box: p to the right and q into the depth of the plot seen from above, s up, each
/// -0.5 to 0.5 inside. The directions of x and y are in p and q already.
struct BoxPoint {
    double p = 0;
    double q = 0;
    double s = 0;
    friend constexpr bool operator==(const BoxPoint&, const BoxPoint&) = default;
};

/// From box to picture, all linear: x = x0 + xp p + xq q (to the right), y = y0 + yp p + yq q + ys
/// s (down), depth = dp p + dq q + ds s (larger is farther). x never depends on s, so that every
/// column of pixels sees one upright plane of the box.
struct BoxTransform {
    double x0 = 0, xp = 0, xq = 0;
    double y0 = 0, yp = 0, yq = 0, ys = 0;
    double dp = 0, dq = 0, ds = 0;

    CPointF project(const BoxPoint& at) const
    {
        return {x0 + xp * at.p + xq * at.q, y0 + yp * at.p + yq * at.q + ys * at.s};
    }
    double depth(const BoxPoint& at) const { return dp * at.p + dq * at.q + ds * at.s; }
};

/// A straight edge of a box.
struct BoxEdge {
    BoxPoint from, to;  ///< rising p, q or s
};

/// Which edges of a box carry the labels, and which walls stand behind.
struct BoxEdges {
    BoxEdge x, y;                      ///< the lower front edges
    BoxEdge z, z2;                     ///< the leftmost and the rightmost upright edge
    double wallP = -0.5, wallQ = 0.5;  ///< where the upright walls at the back stand
};

/// How a box is seen in parallel projection, and where it lies in a picture.
///
/// With azimuth A, elevation E and height h: right = p cos A + q sin A, up = s h cos E + (q cos A -
/// p sin A) sin E, depth = (q cos A - p sin A) cos E - s h sin E. Oblique: right = p + r q cos a,
/// up = s h + r q sin a, depth = q, whatever azimuth and elevation are. The box is as large in its
/// rectangle as it can be at any azimuth, so that it keeps its size while it turns.
class PAVANE_API BoxView
{
public:
    static constexpr double firstAzimuth = 30, firstElevation = 35, firstHeight = 0.5;
    static constexpr double leastHeight = 0.01, mostHeight = 10;
    static constexpr double leastZoom = 0.05, mostZoom = 1000;

    BoxView() { update(); }

    /// Degrees; azimuth modulo 360, elevation cut to 0..90. Ends an oblique view. 0, and nothing
    /// changes, when one is not finite.
    int setView(double azimuth, double elevation);
    double azimuth() const { return azimuth_; }
    double elevation() const { return elevation_; }
    /// The front face undistorted, the depth drawn at `angle` degrees (0 to 180, counted from the
    /// right upwards) and cut to `ratio` of its length (up to 2). A ratio of 0: as the azimuth and
    /// elevation say. 0 when one is not finite.
    int setOblique(double angle, double ratio);
    int isOblique() const { return ratio_ > 0; }
    double obliqueAngle() const { return angle_; }
    double obliqueRatio() const { return ratio_; }
    /// Height of the box as a share of the longer edge of its base. 0 when it is not finite.
    int setHeight(double share);
    double height() const { return height_; }
    /// The edges of the base, 1 x 1 at first; only their ratio counts. 0 when one is not above 0.
    int setBase(double width, double depth);
    /// Edges of the box in p, q and s, the longer one of the base is 1.
    BoxPoint size() const { return {width_, depth_, height_}; }
    /// 1: the whole box. 0 when it is not a number above 0.
    int setZoom(double zoom);
    double zoom() const { return zoom_; }
    /// Moves the picture by shares of the width and height of the rectangle. 0 when one is not
    /// finite.
    int setPan(double right, double down);
    CPointF pan() const { return {panX_, panY_}; }
    /// Where the box lies at zoom 1 and without a pan, device pixels. An empty rectangle counts as
    /// one of a pixel.
    void fit(const CRect& rect);
    CRect rect() const { return rect_; }
    /// Zooms by a factor; the point of the picture stays where it is.
    void zoomAt(const CPointF& at, double factor);

    const BoxTransform& transform() const { return transform_; }
    CPointF project(const BoxPoint& at) const { return transform_.project(at); }
    double depth(const BoxPoint& at) const { return transform_.depth(at); }
    /// The point of the level plane s = `s` that is seen at a place of the picture; it may lie
    /// outside the box. 0 when the plane is seen from its side.
    int unproject(const CPointF& at, double s, BoxPoint& point) const;
    /// The line of sight into the box: a step in box units that leaves the place in the picture as
    /// it is and goes away from the eye. Its largest component is 1 or -1.
    BoxPoint sight() const;
    BoxEdges edges() const;

    /// The nearest multiple of 15 degrees.
    static double stepsTo15(double degrees);
    /// Looks along an axis: 0 x, 1 y, 2 z (from above). Ends an oblique view.
    void lookAlong(int axis);
    friend bool operator==(const BoxView& a, const BoxView& b);

private:
    void update();
    CPointF extent() const;

    double azimuth_ = firstAzimuth, elevation_ = firstElevation;
    double angle_ = 45, ratio_ = 0;
    double height_ = firstHeight;
    double width_ = 1, depth_ = 1;
    double zoom_ = 1, panX_ = 0, panY_ = 0;
    CRect rect_{0, 0, 1, 1};
    BoxTransform transform_;
};

}  // namespace pavane

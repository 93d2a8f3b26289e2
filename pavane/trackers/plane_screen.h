#pragma once

#include "pavane/trackers/planes.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "pavane/trackers/tracker_drawing.h"
#include "tessel/rounding.h"

namespace pavane
{

// How the shapes of either plane meet the screen, under the same names.

/// What AxisPixels is for data values: pixels stay what they are.
struct WindowPixels {
    CPoint pixel(CPoint p) const { return p; }
    CPointF finePixel(CPoint p) const
    {
        return {static_cast<double>(p.x), static_cast<double>(p.y)};
    }
    ARect<double> finePixels(const CRect& rect) const { return fractionsOf(rect); }
    CPoint value(CPoint p) const { return p; }
    CRect pixels(const CRect& rect) const { return rect; }
    int usable() const { return 1; }
    friend bool operator==(const WindowPixels&, const WindowPixels&) = default;
};

inline WindowPixels screenOf(const ABaseTracker&) { return {}; }
inline AxisPixels screenOf(const ABTracker& tracker) { return AxisPixels(tracker.axis()); }

/// Replaces `pixels` by `points` on the screen.
inline void putPixels(const AxisPixels& screen, const AArray<APoint<double>>& points,
                      AArray<CPoint>& pixels)
{
    const int n = points.count();
    if (pixels.allocated() < n || pixels.count() != n)
        pixels.GrowBy(n);
    for (int i = 0; i < pixels.count(); ++i)
        pixels(i) = screen.pixel(points(i));
}
/// The points on the screen; those that are there already are not copied.
inline const AArray<CPoint>& pixelsOf(const WindowPixels&, const AArray<CPoint>& points)
{
    return points;
}
inline AArray<CPoint> pixelsOf(const AxisPixels& screen, const AArray<APoint<double>>& points)
{
    AArray<CPoint> pixels;
    putPixels(screen, points, pixels);
    return pixels;
}

/// Coordinates of either plane as numbers of ShapeValues, and back: to pixels they are cut.
inline ARect<double> asValues(const CRect& r) { return fractionsOf(r); }
inline const ARect<double>& asValues(const ARect<double>& r) { return r; }
inline APoint<double> asValues(CPoint p)
{
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}
inline const APoint<double>& asValues(const APoint<double>& p) { return p; }
inline void assign(CRect& to, const ARect<double>& r)
{
    to = {truncated(r.left), truncated(r.top), truncated(r.right), truncated(r.bottom)};
}
inline void assign(ARect<double>& to, const ARect<double>& r) { to = r; }
inline void assign(CPoint& to, const APoint<double>& p) { to = {truncated(p.x), truncated(p.y)}; }
inline void assign(APoint<double>& to, const APoint<double>& p) { to = p; }

}  // namespace pavane

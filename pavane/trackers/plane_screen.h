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

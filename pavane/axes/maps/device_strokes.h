#pragma once

#include "platform/CDC.h"

namespace pavane
{

class ABAxis;

/// Solid strokes over a map, in device units: into the context, or, in bitmap mode, into the raster
/// of the axis. Puts pen, colour and width back when it dies.
class DeviceStrokes
{
public:
    DeviceStrokes(CDC& dc, ABAxis& axis, COLORREF color, int width);
    DeviceStrokes(const DeviceStrokes&) = delete;
    DeviceStrokes& operator=(const DeviceStrokes&) = delete;
    ~DeviceStrokes();

    void polyline(const CPointF* points, int count);
    /// The same as dashes: `dash` on, `gap` off, measured along the line, an on part first.
    void dashes(const CPointF* points, int count, double dash, double gap);
    /// The inside of a closed convex figure.
    void fill(const CPointF* points, int count, COLORREF fill);
    /// A filled rectangle with an outline.
    void box(const CRect& rect, COLORREF fill);

private:
    CDC& dc_;
    ABAxis& axis_;
    int intoRaster_;
    CPen pen_;
    CPen* oldPen_ = nullptr;
    COLORREF oldColor_;
    int oldWidth_;
};

}  // namespace pavane

#include "pavane/axes/maps/device_strokes.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/images/ADIBase.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

int nearest(double v) { return truncated(std::floor(v + 0.5)); }

}  // namespace

DeviceStrokes::DeviceStrokes(CDC& dc, ABAxis& axis, COLORREF color, int width)
    : dc_(dc), axis_(axis), intoRaster_(axis.isFlagSet(axisBitmapMode)),
      pen_(PS_SOLID, width, color), oldColor_(axis.getColor()), oldWidth_(axis.getLineWidth())
{
    if (intoRaster_) {
        axis_.setColor(color);
        axis_.setLineWidth(width);
    } else {
        oldPen_ = dc_.SelectObject(&pen_);
    }
}

DeviceStrokes::~DeviceStrokes()
{
    if (intoRaster_) {
        axis_.setColor(oldColor_);
        axis_.setLineWidth(oldWidth_);
    } else if (oldPen_) {
        dc_.SelectObject(oldPen_);
    }
}

void DeviceStrokes::polyline(const CPointF* points, int count)
{
    if (!intoRaster_) {
        dc_.PolylineF(points, count);
        return;
    }
    for (int i = 0; i + 1 < count; ++i)
        axis_.lineV(nearest(points[i].x), nearest(points[i].y), nearest(points[i + 1].x),
                    nearest(points[i + 1].y));
}

void DeviceStrokes::dashes(const CPointF* points, int count, double dash, double gap)
{
    std::vector<CPointF> piece;
    int on = 1;
    double left = dash;
    if (count > 0)
        piece.push_back(points[0]);
    for (int i = 0; i + 1 < count; ++i) {
        CPointF from = points[i];
        const CPointF to = points[i + 1];
        double length = std::hypot(to.x - from.x, to.y - from.y);
        while (length > left) {
            from.x += (to.x - from.x) * left / length;
            from.y += (to.y - from.y) * left / length;
            length -= left;
            piece.push_back(from);
            if (on)
                polyline(piece.data(), static_cast<int>(piece.size()));
            piece.assign(1, from);
            on = !on;
            left = on ? dash : gap;
        }
        left -= length;
        piece.push_back(to);
    }
    if (on && piece.size() > 1)
        polyline(piece.data(), static_cast<int>(piece.size()));
}

void DeviceStrokes::fill(const CPointF* points, int count, COLORREF fill)
{
    if (!intoRaster_) {
        CBrush brush(fill);
        CBrush* const old = dc_.SelectObject(&brush);
        dc_.PolygonF(points, count);
        dc_.SelectObject(old);
        return;
    }
    ADIBase* const dib = axis_.dib();
    if (!dib || count < 3)
        return;
    const auto [top, bottom] = std::minmax_element(
        points, points + count, [](const CPointF& a, const CPointF& b) { return a.y < b.y; });
    const auto index = static_cast<short>(axis_.paletteIndex(fill));
    for (int y = nearest(top->y); y <= nearest(bottom->y); ++y) {
        double left = top->x, right = top->x;
        int crossings = 0;
        for (int i = 0; i < count; ++i) {
            const CPointF& a = points[i];
            const CPointF& b = points[(i + 1) % count];
            if ((a.y < y) == (b.y < y))
                continue;
            const double x = a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
            left = crossings ? std::min(left, x) : x;
            right = crossings ? std::max(right, x) : x;
            ++crossings;
        }
        if (crossings > 1)
            dib->FillRect(CRect(nearest(left), y, nearest(right), y), index);
    }
}

void DeviceStrokes::box(const CRect& rect, COLORREF fill)
{
    if (!intoRaster_) {
        CBrush brush(fill);
        CBrush* const old = dc_.SelectObject(&brush);
        dc_.Rectangle(rect);
        dc_.SelectObject(old);
        return;
    }
    if (ADIBase* dib = axis_.dib()) {
        const CRect inclusive(rect.left, rect.top, rect.right - 1, rect.bottom - 1);
        dib->FillRect(inclusive, static_cast<short>(axis_.paletteIndex(fill)));
        dib->Rectangle(inclusive);
    }
}

}  // namespace pavane

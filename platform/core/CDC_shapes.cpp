#include "platform/core/CDC_state.h"
#include "platform/core/ellipse.h"
#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pavane
{

namespace
{

/// The pen's path along a rectangle: from the top right corner counter-clockwise.
std::vector<CPoint> rectanglePath(const CRect& r)
{
    return {
        {r.right - 1, r.top}, {r.left, r.top}, {r.left, r.bottom - 1}, {r.right - 1, r.bottom - 1}};
}

std::vector<CPointF> rectangleCorners(const CRect& r)
{
    const double left = r.left;
    const double top = r.top;
    const double right = double(r.right) - 1;
    const double bottom = double(r.bottom) - 1;
    return {{right, top}, {left, top}, {left, bottom}, {right, bottom}};
}

}  // namespace

/// Fills the spans that the caller left in `spans` and draws the closed outline. The brush paints
/// what the pen leaves free, so that no raster operation touches a pixel twice.
void CDC::State::shape(const std::vector<CPoint>& points)
{
    const PixelPainter painter = this->painter();
    const bool covers = now.rop2 == R2_COPYPEN && dashPattern(now.pen.style()).count == 0;
    if (hasBrush() && (!hasPen() || covers)) {
        painter.spans(spans, inkOf(now.brush, now.rop2));
    } else if (hasBrush()) {
        outline.clear();
        const int width = penWidth();
        for (std::size_t i = 0; i < points.size(); ++i) {
            const CPoint a = points[i];
            const CPoint b = points[i + 1 < points.size() ? i + 1 : 0];
            if (width > 1) {
                wideLineOf(width).disc(a, painter.bounds(), outline);
                wideLineOf(width).body(a, b, painter.bounds(), outline);
                continue;
            }
            thinLine(a, b, painter.bounds(), [&](const LineRun& run) {
                const int last = run.step * (run.count - 1);
                if (run.horizontal) {
                    const int left = std::min(run.x, run.x + last);
                    outline.push_back({run.y, left, left + run.count});
                }
                for (int k = 0; !run.horizontal && k < run.count; ++k)
                    outline.push_back({run.y + k * run.step, run.x, run.x + 1});
            });
        }
        unite(spans);
        unite(outline);
        painter.spans(without(spans, outline), inkOf(now.brush, now.rop2));
    }
    stroke(points, true);
}

int CDC::Polygon(const CPoint* points, int count)
{
    State& s = *state_;
    if (!points || count < 2)
        return 0;
    if (!s.canDraw())
        return 0;
    std::vector<CPoint> device(points, points + count);
    LPtoDP(device.data(), count);
    const bool winding = s.now.polyFillMode == WINDING;
    bool level = true;
    for (std::size_t i = 0; i < device.size(); ++i) {
        const CPoint& next = device[i + 1 < device.size() ? i + 1 : 0];
        level = level && (device[i].x == next.x || device[i].y == next.y);
    }
    if (IsVector() || (s.now.smooth && !level && s.drawsVectors())) {
        std::vector<CPointF> exact;
        exact.reserve(device.size());
        for (const CPoint& p : device)
            exact.push_back({double(p.x), double(p.y)});
        s.vector()->polygon(exact.data(), exact.size(), winding, s.strokeStyle(),
                            s.fillStyle(s.now.brush));
        return 1;
    }
    if (!s.surface().bits)
        return 0;
    std::vector<Vertex> vertices;
    vertices.reserve(device.size());
    for (const CPoint& p : device)
        vertices.push_back({p.x, p.y});
    s.spans.clear();
    if (s.hasBrush())
        s.scanner.scan(vertices.data(), vertices.size(), winding, s.painter().bounds(), s.spans);
    s.shape(device);
    return 1;
}

int CDC::PolygonF(const CPointF* points, int count)
{
    State& s = *state_;
    if (!points || count < 2 || !s.canDraw())
        return 0;
    std::vector<CPointF> device;
    for (int i = 0; i < count; ++i) {
        const CPointF p = s.now.mapping.toDevice(points[i]);
        if (std::isfinite(p.x) && std::isfinite(p.y))
            device.push_back(p);
    }
    if (device.size() < 2)
        return 0;
    if (s.drawsVectors()) {
        s.vector()->polygon(device.data(), device.size(), s.now.polyFillMode == WINDING,
                            s.strokeStyle(), s.fillStyle(s.now.brush));
        return 1;
    }
    std::vector<CPoint> whole;
    whole.reserve(device.size());
    for (const CPointF& p : device)
        whole.push_back(s.now.mapping.toLogical({nearestInt(p.x), nearestInt(p.y)}));
    return Polygon(whole.data(), static_cast<int>(whole.size()));
}

int CDC::Rectangle(int left, int top, int right, int bottom)
{
    State& s = *state_;
    if (!s.canDraw())
        return 0;
    CRect box = s.deviceBox({left, top, right, bottom});
    const int width = s.penWidth();
    if (!s.hasPen()) {
        box.right = saturated(Wide{box.right} - 1);
        box.bottom = saturated(Wide{box.bottom} - 1);
    } else if (s.now.pen.style() == PS_INSIDEFRAME && width > 1) {
        box = {saturated(Wide{box.left} + width / 2), saturated(Wide{box.top} + width / 2),
               saturated(Wide{box.right} - (width - 1) / 2),
               saturated(Wide{box.bottom} - (width - 1) / 2)};
    }
    if (box.IsRectEmpty())
        return 1;
    if (IsVector()) {
        const std::vector<CPointF> corners = rectangleCorners(box);
        if (s.hasPen())
            s.vector()->polygon(corners.data(), corners.size(), false, s.strokeStyle(),
                                s.fillStyle(s.now.brush));
        else if (s.hasBrush())
            s.vector()->fillRect(box, s.fillStyle(s.now.brush));
        return 1;
    }
    const bool thin = box.left + 1 == box.right || box.top + 1 == box.bottom;
    if (s.hasPen() && width <= 1 && thin) {
        // Deliberate: a box of one pixel has no outline and is left out; a row or column is painted
        // once, so that inverting it twice brings it back.
        if (box.left + 1 != box.right || box.top + 1 != box.bottom)
            s.fillArea(box, CBrush(s.now.pen.color()), s.now.rop2);
        return 1;
    }
    if (!s.surface().bits)
        return 0;
    const CRect visible = s.painter().bounds();
    s.spans.clear();
    const int a = std::max(box.left, visible.left);
    const int b = std::min(box.right, visible.right);
    for (int y = std::max(box.top, visible.top); y < std::min(box.bottom, visible.bottom); ++y) {
        if (a < b && s.hasBrush())
            s.spans.push_back({y, a, b});
    }
    s.shape(rectanglePath(box));
    return 1;
}

int CDC::Ellipse(int left, int top, int right, int bottom)
{
    State& s = *state_;
    if (!s.canDraw())
        return 0;
    CRect box = s.deviceBox({left, top, right, bottom});
    const int width = s.penWidth();
    if (s.now.pen.style() == PS_INSIDEFRAME && width > 1) {
        box = {saturated(Wide{box.left} + width / 2), saturated(Wide{box.top} + width / 2),
               saturated(Wide{box.right} - (width - 1) / 2),
               saturated(Wide{box.bottom} - (width - 1) / 2)};
    }
    if (box.IsRectEmpty())
        return 1;
    if (s.drawsVectors()) {
        const double radiusX = (double(box.right) - box.left - 1) / 2;
        const double radiusY = (double(box.bottom) - box.top - 1) / 2;
        s.vector()->ellipse({box.left + radiusX, box.top + radiusY}, radiusX, radiusY,
                            s.strokeStyle(), s.fillStyle(s.now.brush));
        return 1;
    }
    if (!s.surface().bits)
        return 0;
    const PixelPainter painter = s.painter();
    s.spans.clear();
    s.outline.clear();
    ellipseFill(box, painter.bounds(), s.spans);
    if (s.hasPen() && width > 1) {
        // the ring between the ellipses half a width outside and inside the path
        const int outer = width / 2;
        const int inner = width - outer;
        const auto grown = [&](int near, int far) {
            return CRect(saturated(Wide{box.left} - near), saturated(Wide{box.top} - near),
                         saturated(Wide{box.right} + far), saturated(Wide{box.bottom} + far));
        };
        std::vector<Span> hole;
        ellipseFill(grown(-inner, -outer - 1), painter.bounds(), hole);
        ellipseFill(grown(outer, inner - 1), painter.bounds(), s.outline);
        s.outline = without(s.outline, hole);
    } else if (s.hasPen()) {
        ellipseOutline(box, painter.bounds(), s.outline);
        unite(s.outline);
    }
    if (s.hasBrush())
        painter.spans(without(s.spans, s.outline), s.inkOf(s.now.brush, s.now.rop2));
    Ink ink;
    ink.operation = PixelOperation::of(s.now.rop2, s.pixel(s.now.pen.color()));
    painter.spans(s.outline, ink);
    return 1;
}

}  // namespace pavane

#include "platform/core/CDC_state.h"
#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace pavane
{

namespace
{

/// Lines of a curve from one look at the flag of the context to the next.
constexpr std::size_t lookEvery = 1024;

template <class Point>
bool isLevelOrUpright(const std::vector<Point>& points)
{
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (points[i].x != points[i - 1].x && points[i].y != points[i - 1].y)
            return false;
    }
    return true;
}

/// Moves the edges of strokes along the axes onto those of pixels, `ratio` to a unit.
void snap(std::vector<CPointF>& points, double width, int ratio)
{
    const double edge = 0.5 - width / 2;  // from a point to the edge of its stroke
    const auto snapped = [&](double v) {
        return std::floor((v + edge) * ratio + 0.5) / ratio - edge;
    };
    for (CPointF& p : points)
        p = {snapped(p.x), snapped(p.y)};
}

std::vector<CPointF> asFractions(const std::vector<CPoint>& points)
{
    std::vector<CPointF> exact(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        exact[i] = {double(points[i].x), double(points[i].y)};
    return exact;
}

double lengthOf(const std::vector<CPointF>& points)
{
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
    return length;
}

}  // namespace

/// Draws a piece of a curve on the vector device; the next piece begins with its last point, and
/// goes on with its dashes. False when nobody wants the rest.
bool CDC::State::strokePiece(std::vector<CPointF>& piece, StrokeStyle& pen)
{
    vector()->polyline(piece.data(), piece.size(), pen);
    if (dashPattern(pen.style).count != 0)
        pen.distance += lengthOf(piece);
    piece.erase(piece.begin(), piece.end() - 1);
    return canDraw() && !backend->isStopped();
}

void CDC::State::strokeVectors(const CPoint* points, std::size_t count)
{
    StrokeStyle pen = strokeStyle();
    const std::size_t most = std::min(backend->pointsAtOnce(), count);
    std::vector<CPointF> piece;
    piece.reserve(most);
    for (std::size_t i = 0; i < count; ++i) {
        if (piece.size() == most && !strokePiece(piece, pen))
            return;
        const CPoint p = now.mapping.toDevice(points[i]);
        piece.push_back({double(p.x), double(p.y)});
    }
    (void)strokePiece(piece, pen);
}

void CDC::State::paintDashed(const LineRun& run, const PixelPainter& painter,
                             const DashPattern& pattern, std::int64_t phase,
                             const PixelOperation& on, const PixelOperation& off) const
{
    splitDashes(run, pattern, phase, [&](const LineRun& piece, bool isOn) {
        if (isOn)
            painter.run(piece, on);
        else if (now.bkMode == OPAQUE)
            painter.run(piece, off);
    });
}

/// Paints a polyline in pixels. Thin lines are painted one after the other, wide ones all at once.
void CDC::State::stroke(const std::vector<CPoint>& points, bool closed)
{
    if (!hasPen() || points.size() < 2 || !surface().bits)
        return;
    const PixelPainter painter = this->painter();
    const PixelOperation operation = PixelOperation::of(now.rop2, pixel(now.pen.color()));
    const std::size_t segments = closed ? points.size() : points.size() - 1;
    const auto end = [&](std::size_t i) { return points[i + 1 < points.size() ? i + 1 : 0]; };
    const auto goesOn = [&](std::size_t i) { return i % lookEvery != 0 || canDraw(); };
    const int width = penWidth();
    if (width > 1) {
        WideLine& line = wideLineOf(width);
        const bool atOnce = isIdempotent(now.rop2);
        Ink ink;
        ink.operation = operation;
        spans.clear();
        for (std::size_t i = 0; i < segments && goesOn(i); ++i) {
            line.disc(points[i], painter.bounds(), spans);
            line.body(points[i], end(i), painter.bounds(), spans);
            if (i + 1 == segments)
                line.disc(end(i), painter.bounds(), spans);
            if (atOnce) {
                painter.spans(spans, ink);
                spans.clear();
            }
        }
        unite(spans);
        return painter.spans(spans, ink);
    }
    const DashPattern pattern = dashPattern(now.pen.style());
    const PixelOperation gap = PixelOperation::of(now.rop2, pixel(now.bkColor));
    std::int64_t phase = 0;
    for (std::size_t i = 0; i < segments && goesOn(i); ++i) {
        const CPoint a = points[i];
        const CPoint b = end(i);
        thinLine(a, b, painter.bounds(), [&](const LineRun& run) {
            if (pattern.count == 0)
                painter.run(run, operation);
            else
                paintDashed(run, painter, pattern, phase, operation, gap);
        });
        phase += std::max(std::abs(std::int64_t{b.x} - a.x), std::abs(std::int64_t{b.y} - a.y));
    }
}

CPoint CDC::MoveTo(int x, int y) { return std::exchange(state_->now.position, CPoint(x, y)); }

CPoint CDC::GetCurrentPosition() const { return state_->now.position; }

int CDC::LineTo(int x, int y)
{
    const CPoint points[2] = {state_->now.position, {x, y}};
    state_->now.position = points[1];
    return Polyline(points, 2);
}

int CDC::Polyline(const CPoint* points, int count)
{
    State& s = *state_;
    if (!points || count < 2)
        return 0;
    if (!s.canDraw() || !s.hasPen())
        return s.canDraw();
    if (IsVector()) {
        s.strokeVectors(points, static_cast<std::size_t>(count));
        return 1;
    }
    std::vector<CPoint> device(points, points + count);
    LPtoDP(device.data(), count);
    // lines along an axis are crisp as they are
    if (s.now.smooth && !isLevelOrUpright(device) && s.drawsVectors()) {
        const std::vector<CPointF> exact = asFractions(device);
        s.vector()->polyline(exact.data(), exact.size(), s.strokeStyle());
    } else {
        s.stroke(device, false);
    }
    return 1;
}

int CDC::PolylineF(const CPointF* points, int count)
{
    State& s = *state_;
    if (!points || count < 2)
        return 0;
    if (!s.canDraw() || !s.hasPen())
        return s.canDraw();
    // a point that is not finite parts the curve
    std::vector<CPointF> part;
    StrokeStyle pen = s.strokeStyle();
    const auto draw = [&] {
        const int ratio = GetPixelRatio();
        const bool crisp = !IsVector() && isLevelOrUpright(part);
        if (part.size() >= 2 && s.drawsVectors() && (!crisp || ratio > 1)) {
            if (crisp)
                snap(part, pen.width, ratio);
            s.vector()->polyline(part.data(), part.size(), pen);
        } else if (part.size() >= 2) {
            std::vector<CPoint> device(part.size());
            for (std::size_t i = 0; i < part.size(); ++i)
                device[i] = {nearestInt(part[i].x), nearestInt(part[i].y)};
            s.stroke(device, false);
        }
        part.clear();
        pen.distance = 0;
    };
    const std::size_t most = std::min(s.backend->pointsAtOnce(), static_cast<std::size_t>(count));
    part.reserve(most);
    for (int i = 0; i < count; ++i) {
        const CPointF p = s.now.mapping.toDevice(points[i]);
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
            draw();
            continue;
        }
        if (part.size() == most && !s.strokePiece(part, pen))  // only pages take less than all
            return 1;
        part.push_back(p);
    }
    draw();
    return 1;
}

}  // namespace pavane

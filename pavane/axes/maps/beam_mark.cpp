#include "pavane/axes/maps/beam_mark.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/device_strokes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr int outlinePoints = 72;
/// Hatching: lines from lower left to upper right, this part of the font height apart.
constexpr double hatchPart = 0.22;
constexpr COLORREF patchColor = RGB(255, 255, 255);
constexpr COLORREF inkColor = RGB(0, 0, 0);

/// The part of the hatch line y - x = offset (y upwards) inside the ellipse given by its outline.
int hatchLine(const std::vector<CPointF>& outline, double offset, CPointF ends[2])
{
    int found = 0;
    for (std::size_t i = 0; i < outline.size() && found < 2; ++i) {
        const CPointF& a = outline[i];
        const CPointF& b = outline[(i + 1) % outline.size()];
        const double sideA = a.y - a.x - offset;
        const double sideB = b.y - b.x - offset;
        if ((sideA < 0) == (sideB < 0))
            continue;
        const double t = sideA / (sideA - sideB);
        ends[found++] = {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
    }
    return found == 2;
}

}  // namespace

std::vector<CPointF> beamOutline(const MapBeam& beam, double xScale, double yScale, int count)
{
    const double angle = beam.angle * std::numbers::pi / 180;
    std::vector<CPointF> outline;
    for (int i = 0; i < count; ++i) {
        const double turn = 2 * std::numbers::pi * i / count;
        const double along = beam.major / 2 * std::cos(turn);
        const double across = beam.minor / 2 * std::sin(turn);
        const double east = along * std::sin(angle) + across * std::cos(angle);
        const double north = along * std::cos(angle) - across * std::sin(angle);
        outline.push_back({-east * xScale, north * yScale});
    }
    return outline;
}

void drawBeam(CDC& dc, ABAxis& axis, const MapBeam& beam)
{
    const CRect& rect = axis.getGraphRect();
    const TMinMax& range = axis.getMinMax();
    const double xScale = rect.Width() / std::fabs(range.xMax - range.xMin);
    const double yScale = rect.Height() / std::fabs(range.yMax - range.yMin);
    if (!beam.isSet() || !std::isfinite(xScale) || !std::isfinite(yScale))
        return;
    const std::vector<CPointF> outline = beamOutline(beam, xScale, yScale, outlinePoints);
    double halfWidth = 0, halfHeight = 0;
    for (const CPointF& p : outline) {
        halfWidth = std::max(halfWidth, p.x);
        halfHeight = std::max(halfHeight, p.y);
    }
    if (!(halfWidth * 4 < rect.Width() && halfHeight * 4 < rect.Height()))
        return;
    const FigureUnits units(dc);
    constexpr double marginPart = 0.4;
    const double margin = axis.getFHeight() * marginPart;
    const int side =
        static_cast<int>(std::lround(2 * std::max(halfWidth, halfHeight) + 2 * margin));
    const int gap = units.ofFont(axis.getFHeight(),
                                 [](int height) { return static_cast<int>(height * marginPart); });
    const CRect patch(rect.left + gap, rect.bottom - gap - side, rect.left + gap + side,
                      rect.bottom - gap);
    const CPointF centre{(patch.left + patch.right - 1) / 2.0,
                         (patch.top + patch.bottom - 1) / 2.0};
    DeviceStrokes strokes(dc, axis, inkColor, units.line(axis.getFHeight(), 16));
    strokes.box(patch, patchColor);
    constexpr double leastApart = 3;  // pixels
    const double apart = std::max(leastApart * units.perPixel(), axis.getFHeight() * hatchPart) *
                         std::numbers::sqrt2;
    const double reach = halfWidth + halfHeight;
    for (int i = static_cast<int>(std::ceil(-reach / apart)); i * apart < reach; ++i) {
        CPointF line[2];
        if (!hatchLine(outline, i * apart, line))
            continue;
        for (CPointF& p : line)
            p = {centre.x + p.x, centre.y - p.y};
        strokes.polyline(line, 2);
    }
    std::vector<CPointF> closed;
    for (std::size_t i = 0; i <= outline.size(); ++i) {
        const CPointF& p = outline[i % outline.size()];
        closed.push_back({centre.x + p.x, centre.y - p.y});
    }
    strokes.polyline(closed.data(), static_cast<int>(closed.size()));
}

}  // namespace pavane

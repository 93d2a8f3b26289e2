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
constexpr double mostHatchLines = 1000;

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

/// A square of `side`, `gap` from both edges of its corner of the plot.
CRect patchOf(const CRect& plot, BeamCorner corner, int gap, int side)
{
    const int right = corner == BeamCorner::lowerRight || corner == BeamCorner::upperRight;
    const int upper = corner == BeamCorner::upperLeft || corner == BeamCorner::upperRight;
    const int x = right ? plot.right - gap - side : plot.left + gap;
    const int y = upper ? plot.top + gap : plot.bottom - gap - side;
    return {x, y, x + side, y + side};
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

std::vector<CPointF> beamHatch(const std::vector<CPointF>& outline, double apart)
{
    double reach = 0;
    for (const CPointF& p : outline)
        reach = std::max(reach, std::fabs(p.x) + std::fabs(p.y));
    std::vector<CPointF> lines;
    if (!(apart > 0) || !(reach / apart < mostHatchLines))
        return lines;
    for (int i = static_cast<int>(std::ceil(-reach / apart)); i * apart < reach; ++i) {
        CPointF ends[2];
        if (hatchLine(outline, i * apart, ends))
            lines.insert(lines.end(), {ends[0], ends[1]});
    }
    return lines;
}

void drawBeam(CDC& dc, ABAxis& axis, const MapBeam& beam, const BeamLook& look)
{
    if (look.fill == BeamFill::none)
        return;
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
    const CRect patch = patchOf(rect, look.corner, gap, side);
    const CPointF centre{(patch.left + patch.right - 1) / 2.0,
                         (patch.top + patch.bottom - 1) / 2.0};
    DeviceStrokes strokes(dc, axis, inkColor, units.line(axis.getFHeight(), 16));
    strokes.box(patch, patchColor);
    constexpr double leastApart = 3;  // pixels
    const double apart = std::max(leastApart * units.perPixel(), axis.getFHeight() * hatchPart) *
                         std::numbers::sqrt2;
    const auto placed = [&](const CPointF& p) -> CPointF {
        return {centre.x + p.x, centre.y - p.y};
    };
    if (look.fill == BeamFill::hatched) {
        const std::vector<CPointF> hatch = beamHatch(outline, apart);
        for (std::size_t i = 0; i + 1 < hatch.size(); i += 2) {
            const CPointF line[] = {placed(hatch[i]), placed(hatch[i + 1])};
            strokes.polyline(line, 2);
        }
    }
    std::vector<CPointF> closed;
    for (std::size_t i = 0; i <= outline.size(); ++i)
        closed.push_back(placed(outline[i % outline.size()]));
    if (look.fill == BeamFill::filled)
        strokes.fill(closed.data(), static_cast<int>(closed.size()), inkColor);
    strokes.polyline(closed.data(), static_cast<int>(closed.size()));
}

}  // namespace pavane

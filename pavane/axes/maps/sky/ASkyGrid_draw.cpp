#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_options.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/maps/device_strokes.h"
#include "pavane/axes/maps/sky/ASkyGrid.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Labels inside the plot beside those of its edges.
constexpr double insideFont = 0.85;
/// A line shorter than this many heights of its label has none.
constexpr int leastLength = 5;

int meet(const CRect& a, const CRect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace

void ASkyGrid::draw(CDC& dc, CRect&, TMinMax&)
{
    boxes_.clear();
    if (!isReady_ || shown_ != SkyGridShown::lines)
        return;
    drawLines(dc, 0);
    drawLines(dc, 1);
    if (grid_.hasLimb()) {
        if (!hasLimb_)
            limb_ = grid_.limb();
        hasLimb_ = 1;
        drawPieces(dc, limb_);
    }
    if (!axis()->isFlagSet(axisBitmapMode))  // a raster has no text
        drawInsideLabels(dc);
}

void ASkyGrid::drawLines(CDC& dc, int isLatitude)
{
    for (const SkyGridLine& line : lines(isLatitude))
        drawPieces(dc, line.pieces);
}

void ASkyGrid::drawPieces(CDC& dc, const std::vector<std::vector<CellPoint>>& pieces) const
{
    DeviceStrokes strokes(dc, *axis(), color_, axis()->graphLine(1));
    std::vector<CPointF> points;
    for (const std::vector<CellPoint>& piece : pieces) {
        points.clear();
        for (const CellPoint& cell : piece)
            points.push_back(axis()->RPtoGPF(rpOf(cell, 0), rpOf(cell, 1)));
        strokes.polyline(points.data(), static_cast<int>(points.size()));
    }
}

/// How bad a place on a line is for its label. Parallels have theirs one above another, meridians
/// side by side, round a pole on the outside, all of them between the lines that they cross.
double ASkyGrid::costOf(const SkyGridLine& line, const CellPoint& cell, const CPointF& at) const
{
    constexpr double worthOfCrossing = 1;  // of the plot's height
    const CRect& plot = axis()->getGraphRect();
    const CPoint middle = plot.CenterPoint();
    const double height = plot.Height();
    double sky[2] = {};
    if (!grid_.toSky(cell, sky[0], sky[1]))
        return height;
    double cost = line.isLatitude ? std::fabs(at.x - middle.x) + 0.1 * (plot.bottom - at.y)
                                  : std::fabs(at.y - middle.y);
    if (!line.isLatitude && grid_.hasPole())
        cost = height * std::fabs(sky[1]) / 90 * 2;
    const SkySteps& crossed = steps_[static_cast<std::size_t>(!line.isLatitude)];
    const double lines = (sky[!line.isLatitude] - crossed.origin) / crossed.step;
    const double between = std::fabs(lines - std::round(lines));
    return cost + worthOfCrossing * height * (0.5 - between);
}

/// The best place on a line for a label of the size of `box`, inside the plot and clear of the
/// labels that stand there.
int ASkyGrid::placeLabel(CDC& dc, const SkyGridLine& line, int height, CRect& box) const
{
    const CRect& plot = axis()->getGraphRect();
    const CSize size = box.Size();
    const int spare = FigureUnits(dc).ofFont(axis()->getFHeight(), majorTickLength) + 1;
    double least = 1e30;
    double length = 0;
    for (const std::vector<CellPoint>& piece : line.pieces)
        for (std::size_t i = 0; i < piece.size(); ++i) {
            const CPointF at = axis()->RPtoGPF(rpOf(piece[i], 0), rpOf(piece[i], 1));
            if (i > 0) {
                const CPointF last = axis()->RPtoGPF(rpOf(piece[i - 1], 0), rpOf(piece[i - 1], 1));
                length += std::hypot(at.x - last.x, at.y - last.y);
            }
            const auto x = static_cast<int>(std::lround(at.x)) - size.cx / 2;
            const auto y = static_cast<int>(std::lround(at.y)) - size.cy / 2;
            const CRect place(x, y, x + size.cx, y + size.cy);
            if (place.left < plot.left + spare || place.right > plot.right - spare ||
                place.top < plot.top + spare || place.bottom > plot.bottom - spare ||
                std::any_of(boxes_.begin(), boxes_.end(),
                            [&](const CRect& other) { return meet(place, other); }))
                continue;
            if (const double cost = costOf(line, piece[i], at); cost < least) {
                least = cost;
                box = place;
            }
        }
    return least < 1e30 && length > static_cast<double>(leastLength) * height;
}

void ASkyGrid::drawInsideLabels(CDC& dc)
{
    const int height =
        std::max(1, static_cast<int>(std::lround(insideFont * axis()->getFHeight())));
    CFont font;
    if (!ABAxis::CreateAxisFont(font, height, 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(axis()->workColor(1));
    for (const int isLatitude : {1, 0})
        for (const SkyGridLine& line : lines(isLatitude)) {
            if (isLabelled(isLatitude, line.k))
                continue;
            const CString text =
                skyText(steps_[static_cast<std::size_t>(isLatitude)], line.k, isLatitude).whole();
            const int air = height / 4;
            CRect box(0, 0, dc.GetTextExtent(text).cx + 2 * air, height);
            if (!placeLabel(dc, line, height, box))
                continue;
            dc.FillSolidRect(box, axis()->workColor(0));
            dc.TextOut(box.left + air, box.top, text);
            boxes_.push_back(box);
        }
    dc.RestoreDC(saved);
}

}  // namespace pavane

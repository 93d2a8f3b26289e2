#include "pavane/axes/maps/MapContours.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/cells/StoppableCells.h"
#include "pavane/axes/maps/device_strokes.h"
#include "pavane/axes/maps/straight_runs.h"
#include "pavane/axes/SelectedObject.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace pavane
{

namespace
{

/// Points closer than this part of the font height to the one before are left out.
constexpr double finestPart = 0.01;
/// Points nearer to a straight run than this part of it are, too: some hundredths of a pixel.
constexpr double straightPart = 0.15;
/// Lines are this part of the font height wide.
constexpr int widthPart = 18;
/// Luma (Rec. ITU-R BT.601) above which a colour counts as light.
constexpr int lightLuma = 128;

int luma(COLORREF c)
{
    return (299 * GetRValue(c) + 587 * GetGValue(c) + 114 * GetBValue(c)) / 1000;
}

/// The points of a line in device units, thinned to what a picture can show.
void toDevice(const ABMapGraph& map, const CPointF* points, const ContourLine& line,
              std::vector<CPointF>& device)
{
    const double finest = map.axis()->getFHeight() * finestPart;
    // the steps of the map once for all points
    const int columns = map.cells().columns(), rows = map.cells().rows();
    const double x = map.MPXtoRPX(0), stepX = (map.MPXtoRPX(columns) - x) / columns;
    const double y = map.MPYtoRPY(0), stepY = (map.MPYtoRPY(rows) - y) / rows;
    const ABAxis& axis = *map.axis();
    device.clear();
    for (std::int64_t i = 0; i < line.count + line.closed; ++i) {
        const CPointF& cell = points[i % line.count];
        const CPointF p = axis.RPtoGPF(x + cell.x * stepX, y + cell.y * stepY);
        const int last = i + 1 == line.count + line.closed;
        if (!device.empty() && std::fabs(p.x - device.back().x) < finest &&
            std::fabs(p.y - device.back().y) < finest) {
            if (!last)
                continue;
            if (device.size() > 1)
                device.pop_back();
        }
        device.push_back(p);
    }
    keepStraightRuns(device, finest * straightPart);
}

}  // namespace

void MapContours::setLevels(const ContourLevels& levels)
{
    levels_ = levels;
    forget();
}

void MapContours::setLines(ContourLines lines, std::size_t levels, const CString& note)
{
    lines_ = std::move(lines);
    traced_ = 1;
    leftOutText_ = note;
    if (note.empty())
        tellLeftOut(levels);
}

std::vector<double> MapContours::levels(const ABMapGraph& map) const
{
    if (map.cellRange().isEmpty())
        return {};
    return levels_.values(map.cellRange().greatest, map.noise().sigma);
}

COLORREF MapContours::color(double level, const AColorsGraph* colors) const
{
    if (color_ != CLR_INVALID)
        return color_;
    if (!colors)
        return RGB(0, 0, 0);
    const int last = colors->getNColors() - 1;
    const double place = colors->scale().position(level) * last;
    return luma(colors->contourGround(truncated(place))) < lightLuma ? RGB(255, 255, 255)
                                                                     : RGB(0, 0, 0);
}

int MapContours::width(const CDC& dc, int fontHeight) const
{
    return width_ > 0 ? unitsOf(dc, width_) : FigureUnits(dc).line(fontHeight, widthPart);
}

void MapContours::draw(CDC& dc, const ABMapGraph& map, const AColorsGraph* colors) const
{
    const MapStop stop(map, dc);
    const std::vector<double> values = levels(map);
    if (!traced_) {
        const StoppableCells cells(map.cells(), map.stop());
        traced_ = lines_.trace(cells, values, bestSimdPath(), progressOf(map.stop()));
        if (cells.isStopped() || isStopped(map.stop())) {
            lines_ = {};
            traced_ = 0;
            return;
        }
        tellLeftOut(values.size());
    }
    ABAxis& axis = *map.axis();
    const double unit = axis.getFHeight();
    const double least = leastDash * FigureUnits(dc).perPixel();
    CRect clip = axis.getGraphRect();
    ++clip.right;
    ++clip.bottom;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(clip);
    std::vector<CPointF> device;
    std::size_t next = 0;
    for (std::size_t level = 0; level < values.size(); ++level) {
        DeviceStrokes strokes(dc, axis, color(values[level], colors), width(dc, axis.getFHeight()));
        for (; next < lines_.lines().size(); ++next) {
            const ContourLine& line = lines_.lines()[next];
            if (static_cast<std::size_t>(line.level) != level)
                break;
            if (dc.isStopped())
                break;
            toDevice(map, lines_.points(line), line, device);
            const int count = static_cast<int>(device.size());
            if (values[level] < 0)
                strokes.dashes(device.data(), count, std::max(least, unit * dashPart),
                               std::max(least, unit * gapPart));
            else
                strokes.polyline(device.data(), count);
        }
    }
    drawLeftOutText(dc, axis);
    dc.RestoreDC(saved);
}

void MapContours::tellLeftOut(std::size_t levels) const
{
    std::size_t leftOut = 0;
    for (std::size_t level = 0; traced_ && level < levels; ++level)
        leftOut += lines_.isLeftOut(static_cast<int>(level)) ? 1 : 0;
    leftOutText_.clear();
    if (traced_ && leftOut < 1)
        return;
    constexpr std::int64_t mega = std::int64_t{1} << 20;
    leftOutText_ = std::to_string(traced_ ? leftOut : levels) + " of " + std::to_string(levels) +
                   " contour levels left out: ";
    if (levels > ContourLines::mostLevels)
        leftOutText_ += "there are more than " + std::to_string(ContourLines::mostLevels);
    else if (!traced_)
        leftOutText_ += "there is not enough memory";
    else
        leftOutText_ += "their lines do not fit into " +
                        std::to_string(std::max<std::int64_t>(1, lines_.memory() / mega)) + " MB";
}

void MapContours::drawLeftOutText(CDC& dc, const ABAxis& axis) const
{
    CFont font;
    if (leftOutText_.empty() || axis.isFlagSet(axisBitmapMode) ||
        !ABAxis::CreateAxisFont(font, axis.getFHeight(), 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const int air =
        FigureUnits(dc).ofFont(axis.getFHeight(), [](int height) { return height / 4; });
    const CString text = fittedLine(dc, leftOutText_, axis.getGraphRect().Width() - 2 * air);
    const CSize size = dc.GetTextExtent(text);
    const CPoint corner = axis.getGraphRect().TopLeft();
    dc.FillSolidRect(
        CRect(corner.x, corner.y, corner.x + size.cx + 2 * air, corner.y + size.cy + air),
        RGB(255, 255, 255));
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(RGB(0, 0, 0));
    dc.TextOut(corner.x + air, corner.y + air / 2, text);
}

}  // namespace pavane

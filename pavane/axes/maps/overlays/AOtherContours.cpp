#include "pavane/axes/maps/overlays/AOtherContours.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "tessel/map_steps.h"
#include "tessel/PatchedMapping.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// Neighbouring points lie within a cell and a half of their map; a projection that is cut takes
/// them this many times as far apart as cells usually lie.
constexpr double cutCells = 30;

/// Pixels of the line and of the line with its edge.
constexpr int lineWidth = 1, edgeWidth = 3;

}  // namespace

AOtherContours::AOtherContours(ABAxis* axis, const ABMapGraph& map) : AGraph(axis, 0), map_(map) {}

void AOtherContours::setColors(COLORREF line, COLORREF edge)
{
    line_ = line;
    edge_ = edge;
}

void AOtherContours::clear()
{
    contours_.setLevels({LevelUnit::absolute, {}});
    contours_.setLines({}, 0);
}

CString AOtherContours::faultOf(const MapContent& other, const SkyCoordinates& own,
                                const SkyCoordinates& shown, int rows, int columns, SkyShift moved)
{
    if (other.range.isEmpty())
        return "has no cell with a value";
    const AMatrix<float>& cells = other.map.cells;
    return showTheSame(own, cells.rows(), cells.columns(), shown, rows, columns, moved)
               ? ""
               : "shows another part of the sky than the map beneath";
}

int AOtherContours::setMap(const MapContent& other, const SkyCoordinates& own,
                           const SkyCoordinates& shown, const LevelChoice& choice, SkyShift moved,
                           CString& error, const ProgressFunction& progress)
{
    constexpr double tracingShare = 0.5;
    error = faultOf(other, own, shown, map_.cells().rows(), map_.cells().columns(), moved);
    if (!error.empty()) {
        clear();
        return 0;
    }
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (!other.range.isEmpty())
        levels.factors = choice.none || choice.goesOn
                             ? levelValues(choice, other.range.greatest, other.noise.sigma)
                             : choice.list.values(other.range.greatest, other.noise.sigma);
    contours_.setLevels(levels);
    ContourLines lines;
    int goesOn = 1;
    const auto tell = [&](double part) { return goesOn = !progress || progress(part); };
    if (!lines.trace(AFloatMatrixAccess(other.map.cells), levels.factors, bestSimdPath(),
                     [&](double part) { return tell(part * tracingShare); })) {
        contours_.setLines({}, levels.factors.size(), "there are no contours of the other map");
        error = goesOn ? "there is not enough memory for contours" : "the work was given up";
        return 0;
    }
    const CellMapping mapping(own, shown, moved);
    PatchedMapping patched(mapping, other.map.cells.rows(), other.map.cells.columns());
    const MapSteps from = stepsOf(other.map.header);
    const ABMapGraph& map = map_;
    const auto place = [&](CPointF& point) {
        CellPlace to;
        if (!patched.map({point.x, point.y}, to))
            return 0;
        point = {to.column, to.row};
        return 1;
    };
    // how many cells of the map that is shown lie in one of the other
    LocalSky local;
    const int isThere =
        shown.localSky((map.cells().columns() - 1) / 2.0, (map.cells().rows() - 1) / 2.0, local);
    const double cell = isThere ? std::min(local.columnScale, local.rowScale) : 0;
    const double size = std::max(std::fabs(from.column), std::fabs(from.row));
    const double farthest =
        cell > 0 ? cutCells * std::max(size / cell, 1.0) : map.cells().columns() / 2.0;
    if (!lines.carry(place, farthest)) {
        error = "there is not enough memory for contours";
        return 0;
    }
    contours_.setLines(std::move(lines), levels.factors.size());
    return 1;
}

void AOtherContours::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    (void)rect;
    (void)range;
    if (!axis() || axis()->getGraphRect().IsRectEmpty())
        return;
    for (const auto& [color, width] : {std::pair(edge_, edgeWidth), std::pair(line_, lineWidth)}) {
        contours_.setColor(color);
        contours_.setWidth(width);
        contours_.draw(dc, map_, nullptr);
    }
}

}  // namespace pavane

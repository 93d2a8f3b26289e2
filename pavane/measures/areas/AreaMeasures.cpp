#include "pavane/measures/areas/AreaMeasures.h"

#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/trackers/masks/mask_order.h"
#include "pavane/trackers/masks/scan_fill.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace pavane
{

namespace
{

int isSame(const std::vector<CPoint>& kept, const AArray<CPoint>& points)
{
    if (kept.size() != static_cast<std::size_t>(std::max(points.count(), 0)))
        return 0;
    for (int i = 0; i < points.count(); ++i) {
        const CPoint& mine = kept[static_cast<std::size_t>(i)];
        if (mine.x != points(i).x || mine.y != points(i).y)
            return 0;
    }
    return 1;
}

}  // namespace

FluxScale FluxScale::of(const MapHeader& header, const MapFrame& frame)
{
    const FluxUnit unit = fluxUnit(header, frame);
    const MapUnit cells = mapUnit(header.bunit);
    const double beam = pavane::beamCells(header, frame);
    return {unit.factor, unit.unit, cells.prefix + cells.name, beam > 0 ? beam : CellNumbers::none,
            cells.perPixel};
}

double FluxScale::beams(std::int64_t cells) const { return static_cast<double>(cells) / beamCells; }

double FluxScale::error(double noise, std::int64_t cells) const
{
    if (perCell)
        return noise * factor * std::sqrt(static_cast<double>(cells));
    const double n = beams(cells);
    return noise * factor * beamCells * (n < 1 ? n : std::sqrt(n));
}

void AreaMeasures::setMap(const AMatrixAccess* cells, const MapContent* content)
{
    cells_ = cells && content && !cells->isEmpty() ? cells : nullptr;
    scale_ = cells_ ? FluxScale::of(content->map.header, content->frame) : FluxScale();
    mapNoise_ = cells_ && content->noise.finiteCells ? content->noise.sigma : CellNumbers::none;
    for (Area& area : areas_)
        area.isKnown = 0;
    isAllKnown_ = 0;
}

void AreaMeasures::take(Area& area, const AArray<CPoint>& points, int isNeverClean)
{
    if (area.isNeverClean == isNeverClean && isSame(area.points, points))
        return;
    isAllKnown_ = area.isKnown = 0;
    area.isNeverClean = isNeverClean;
    area.points.assign(points.lpArray(), points.lpArray() + std::max(points.count(), 0));
}

int AreaMeasures::update(int count, const AreaSource& source, const StopFlag* stop)
{
    try {
        const auto number = static_cast<std::size_t>(std::max(count, 0));
        if (areas_.size() != number)
            isAllKnown_ = 0;
        areas_.resize(number);
        AArray<CPoint> points;
        for (int i = 0; i < count; ++i) {
            Area& area = areas_[static_cast<std::size_t>(i)];
            int isNeverClean = 0;
            if (!source(i, points, isNeverClean))
                return 0;
            take(area, points, isNeverClean != 0);
            if (!area.isKnown && !measure(area, i == noiseArea_, stop))
                return 0;
        }
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return isAllKnown_ || measureAll(stop);
}

int AreaMeasures::measure(Area& area, int isNoise, const StopFlag* stop)
{
    area.numbers = {};
    area.deviation = CellNumbers::none;
    if (cells_) {
        AreaCells own;
        if (isStopped(stop) ||
            !cellsOfPolygon(area.points.data(), static_cast<int>(area.points.size()),
                            cells_->rows(), cells_->columns(), own) ||
            !counter_.count(*cells_, own.mask, own.firstRow, own.firstColumn, area.numbers, stop))
            return 0;
        if (isNoise)
            area.deviation = counter_.deviation(area.numbers.median);
    }
    area.isKnown = 1;
    return 1;
}

int AreaMeasures::measureAll(const StopFlag* stop)
{
    all_ = {};
    if (cells_) {
        ABitMatrix mask(cells_->rows(), cells_->columns());
        if (!mask.rows())
            return 0;
        int isWhole = 1;
        fillInOrder(
            mask, count(), [this](int i) { return isNeverClean(i); },
            [&](int i) {
                const std::vector<CPoint>& points = at(i).points;
                int overflow = 0;
                isWhole =
                    isWhole && fillPolygon(mask, points.data(), static_cast<int>(points.size()),
                                           std::numeric_limits<int>::max(), overflow, stop);
            });
        if (!isWhole || !counter_.count(*cells_, mask, 0, 0, all_, stop))
            return 0;
    }
    isAllKnown_ = 1;
    return 1;
}

double AreaMeasures::noise() const
{
    return noiseArea_ >= 0 && noiseArea_ < count() ? at(noiseArea_).deviation : mapNoise_;
}

void AreaMeasures::setNoiseArea(int i)
{
    noiseArea_ = i;
    if (i >= 0 && i < count())
        areas_[static_cast<std::size_t>(i)].isKnown = 0;
}

}  // namespace pavane

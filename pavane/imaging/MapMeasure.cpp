#include "pavane/imaging/MapMeasure.h"

#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/MapFrame.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Cells of a block: half a millisecond.
constexpr int blockCells = 1 << 18;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

}  // namespace

double noiseOutside(const MeasuredMap& residual)
{
    const double rms = residual.sums.rms(0);
    return std::isfinite(rms) ? rms : residual.noise;
}

void measureRound(const MeasuredMap& residual, const MeasuredMap* model,
                  const MeasuredMap* restored, const ABitMatrix& mask, RoundNumbers& numbers)
{
    const CellPeak& peak = residual.sums.peakInside();
    numbers.peak = peak.x < 0 ? nan : peak.value;
    numbers.peakX = peak.x;
    numbers.peakY = peak.y;
    numbers.noiseOutside = noiseOutside(residual);
    numbers.noiseInside = residual.sums.rms(1);
    numbers.maskCells = mask.rows() ? mask.count() : 0;
    numbers.modelFlux = model ? model->sums.sum() : 0;
    numbers.restoredFlux = numbers.restoredPeak = numbers.dynamicRange = nan;
    if (!restored)
        return;
    numbers.restoredPeak = restored->sums.greatest();
    if (numbers.noiseOutside > 0)
        numbers.dynamicRange = numbers.restoredPeak / numbers.noiseOutside;
    const double cells =
        beamCells(restored->header, frameOf(restored->header, restored->rows, restored->columns));
    numbers.restoredFlux = cells > 0 ? restored->sums.sumInside() / cells : nan;
}

int MapMeasure::begin(const std::string& file, int width, int height, const ABitMatrix& mask,
                      int wantsNoise, std::string& fault)
{
    map_ = {};
    row_ = 0;
    mask_ = &mask;
    wantsNoise_ = wantsNoise;
    cells_ = AMatrix<float>();
    if (!reader_.open(file, 0, fault))
        return 0;
    map_.header = reader_.header();
    map_.rows = reader_.rows();
    map_.columns = reader_.columns();
    if (map_.columns != width || map_.rows != height ||
        (mask.rows() > 0 && (mask.rows() != height || mask.columns() != width))) {
        fault = "has another size";
        return 0;
    }
    blockRows_ = std::max(1, blockCells / map_.columns);
    if (wantsNoise && mask.rows() == 0 && !cells_.allocate(map_.rows, map_.columns)) {
        fault = "is larger than the memory";
        return 0;
    }
    return 1;
}

WorkPiece MapMeasure::step(std::string& fault)
{
    if (row_ < map_.rows) {
        const int count = std::min(blockRows_, map_.rows - row_);
        float* to = cells_.rows() > 0 ? cells_.row(row_) : nullptr;
        if (!to) {
            block_.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(map_.columns));
            to = block_.data();
        }
        if (!reader_.read(row_, count, to, fault))
            return WorkPiece::failed;
        for (int i = 0; i < count; ++i)
            map_.sums.add(to + static_cast<std::ptrdiff_t>(i) * map_.columns, row_ + i,
                          map_.columns, *mask_);
        row_ += count;
        return WorkPiece::more;
    }
    if (map_.sums.finite() == 0) {
        fault = "has no cell with a value";
        return WorkPiece::failed;
    }
    if (!wantsNoise_ || map_.sums.countOutside() > 0)
        return WorkPiece::done;
    if (cells_.rows() == 0) {
        // the mask is all of the map: once more, with the cells
        if (!cells_.allocate(map_.rows, map_.columns)) {
            fault = "is larger than the memory";
            return WorkPiece::failed;
        }
        map_.sums = {};
        row_ = 0;
        return WorkPiece::more;
    }
    map_.noise = mapNoise(AFloatMatrixAccess(cells_)).sigma;
    cells_ = AMatrix<float>();
    return WorkPiece::done;
}

}  // namespace pavane

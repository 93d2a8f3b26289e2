#pragma once

#include "pavane/imaging/MapSums.h"
#include "pavane/imaging/StudyRound.h"
#include "tessel/AMatrix.h"
#include "tessel/api.h"
#include "tessel/FitsMapReader.h"
#include "tessel/long_files.h"

#include <limits>
#include <string>
#include <vector>

namespace pavane
{

/// A map that was read, without its cells.
struct MeasuredMap {
    MapHeader header;
    int rows = 0, columns = 0;
    MapSums sums;
    /// From the median absolute deviation of all cells, where there is no cell outside the mask and
    /// it was asked for; else NaN.
    double noise = std::numeric_limits<double>::quiet_NaN();
};

/// Noise of a residual outside the mask in Jy a beam: the rms there; with no mask, or one of the
/// whole map, that from the deviations.
PAVANE_API double noiseOutside(const MeasuredMap& residual);

/// Fills what maps tell: noise, peak, fluxes. Model and restored map may be null.
PAVANE_API void measureRound(const MeasuredMap& residual, const MeasuredMap* model,
                             const MeasuredMap* restored, const ABitMatrix& mask,
                             RoundNumbers& numbers);

/// Reads a map that an engine has written and measures it, a block of rows at a time, so that maps
/// of any size hold up nobody and take no memory. One that is cut, of another size, or without a
/// cell with a value is a fault.
class PAVANE_API MapMeasure
{
public:
    /// The mask is not owned and outlives the work; an empty one is the whole map. Non-zero on
    /// success, else `fault` is a clause.
    int begin(const std::string& file, int width, int height, const ABitMatrix& mask,
              int wantsNoise, std::string& fault);
    WorkPiece step(std::string& fault);
    const MeasuredMap& map() const { return map_; }

private:
    FitsMapReader reader_;
    const ABitMatrix* mask_ = nullptr;
    std::vector<float> block_;
    AMatrix<float> cells_;  ///< of a map whose noise is that of all of them
    int row_ = 0, blockRows_ = 1, wantsNoise_ = 0;
    MeasuredMap map_;
};

}  // namespace pavane

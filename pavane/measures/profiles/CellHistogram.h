#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/measures/areas/area_cells.h"
#include "platform/api.h"
#include "tessel/StopFlag.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// How many cells have which value, and the normal curve of the noise beside them. A plain value.
class PAVANE_API CellHistogram
{
public:
    /// Counts the cells of an area, or of the map without one (null), in bins of equal width, the
    /// first of which begins at a multiple of it: about a fifth of the noise (1, 2 or 5 times a
    /// power of ten), wider when there would be more than `mostBins`; a hundredth of the range
    /// where there is no noise. `noise` is that of the map. Empty when no cell has a value. 0
    /// without memory and when stopped.
    int take(const AMatrixAccess& cells, const AreaCells* area, const MapNoise& noise,
             const StopFlag* stop = nullptr);
    static constexpr int mostBins = 20000;

    int bins() const { return static_cast<int>(counts_.size()); }
    /// Where a bin begins; `bins()` is where the last one ends. A cell at it counts in that bin,
    /// the greatest value in the last one too.
    double edge(int bin) const { return (first_ + bin) * width_; }
    double width() const { return width_; }
    std::int64_t count(int bin) const { return counts_[static_cast<std::size_t>(bin)]; }
    std::int64_t greatestCount() const;
    std::int64_t cells() const { return cells_; }
    std::int64_t blank() const { return blank_; }
    /// How many cells of the bin would be noise: a normal distribution about the map's median, as
    /// wide as its noise, that has as many cells within one width of the median as are counted
    /// there. NaN where there is no noise.
    double normal(int bin) const;

private:
    double first_ = 0;  ///< of the first bin, in widths
    double width_ = 1;
    double median_ = 0, sigma_ = 0, all_ = 0;  ///< of the normal curve
    std::int64_t cells_ = 0, blank_ = 0;
    std::vector<std::int64_t> counts_;
};

}  // namespace pavane

#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "platform/api.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace pavane
{

/// What is told of some cells of a map, in its unit. Blank cells, those that are not finite, count
/// nowhere but in `blank`. NaN is what does not exist.
struct CellNumbers {
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    std::int64_t cells = 0;  ///< with a value
    std::int64_t blank = 0;
    double sum = 0;
    double mean = none;
    double median = none;  ///< with an even count the mean of the middle two
    double rms = none;     ///< about the mean: the root of the mean square of value - mean
    double least = none, greatest = none;
    /// Of the first cell, in memory order, with the least and the greatest value; -1 for none.
    int leastColumn = -1, leastRow = -1, greatestColumn = -1, greatestRow = -1;
    /// Mean place weighted by the values, in cells from 0; only where the sum is above 0.
    double centroidColumn = none, centroidRow = none;
};

/// Finds the numbers of cells; keeps its memory from one call to the next.
class PAVANE_API CellCounter
{
public:
    /// Of the cells whose bit is set: bit (r, c) is cell (firstRow + r, firstColumn + c), and every
    /// one of them lies in the map. 0, and no numbers, without memory and when stopped.
    int count(const AMatrixAccess& cells, const ABitMatrix& mask, int firstRow, int firstColumn,
              CellNumbers& numbers, const StopFlag* stop = nullptr);
    /// 1.4826 times the median of the distances from `median` of the cells that were counted last:
    /// their noise, undisturbed by the few sources among them. NaN without cells.
    double deviation(double median);

private:
    int gather(const AMatrixAccess& cells, const ABitMatrix& mask, int firstRow, int firstColumn,
               CellNumbers& numbers, const StopFlag* stop);
    std::vector<float> values_;  ///< the first of them are those that were counted last
    std::size_t taken_ = 0;
    std::vector<float> row_;
};

/// The exact median, with an even count the mean of the middle two; NaN of no value. The values are
/// finite, and come out in another order. May throw std::bad_alloc.
PAVANE_API double medianOf(float* values, std::size_t count);

}  // namespace pavane

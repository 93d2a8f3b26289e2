#pragma once

#include "tessel/ABitMatrix.h"
#include "tessel/api.h"

#include <cstdint>

namespace pavane
{

/// The greatest value by amount of some cells, with its sign, and its cell.
struct CellPeak {
    double value = 0;
    int x = -1, y = -1;  ///< column and row from 0; -1: no cell has a value
};

/// What one pass over the cells of a map tells, a row after another: those without a value are
/// passed over.
class PAVANE_API MapSums
{
public:
    /// Takes a row. The cells inside are those of the mask; an empty one is the whole map.
    void add(const float* cells, int row, int columns, const ABitMatrix& mask);

    std::int64_t finite() const { return inside_.count + outside_.count; }
    std::int64_t countOutside() const { return outside_.count; }
    const CellPeak& peakInside() const { return peak_; }
    double sum() const { return inside_.sum + outside_.sum; }
    double sumInside() const { return inside_.sum; }
    /// The greatest value of all, minus infinity of no cell.
    double greatest() const;
    /// Root of the mean square; NaN without such cells.
    double rms(int inside) const;

private:
    struct Part {
        std::int64_t count = 0;
        double sum = 0, squares = 0;
        float greatest = 0;  ///< when there are cells
    };
    void addRun(const float* cells, int row, int first, int count, int isInside);
    Part inside_, outside_;
    CellPeak peak_;
    float peakAmount_ = 0;
};

}  // namespace pavane

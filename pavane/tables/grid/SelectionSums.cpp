#include "pavane/tables/grid/SelectionSums.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// A sum with what it loses kept apart, so that great terms do not swallow small ones.
class CarefulSum
{
public:
    void add(double value)
    {
        plain_ += value;
        const double sum = sum_ + value;
        lost_ += std::fabs(sum_) >= std::fabs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
        sum_ = sum;
    }
    /// With infinite terms nothing can be kept apart.
    double value() const { return std::isfinite(sum_ + lost_) ? sum_ + lost_ : plain_; }

private:
    double plain_ = 0;
    double sum_ = 0;
    double lost_ = 0;
};

}  // namespace

SelectionSums sumsOf(TableValues& values, const CellRange& cells, std::int64_t mostCells)
{
    SelectionSums sums;
    CarefulSum sum;
    CarefulSum parts;  // of the mean, which may be finite where the sum is not
    for (std::int64_t row = cells.firstRow; row <= cells.lastRow; ++row) {
        for (std::int64_t column = cells.firstColumn; column <= cells.lastColumn; ++column) {
            if (sums.cells == mostCells)
                sums.partial = 1;
            double value = 0;
            int isNumber = 0;
            if (sums.partial || !values.number({static_cast<int>(row), static_cast<int>(column)},
                                               value, isNumber)) {
                row = cells.lastRow;
                break;
            }
            ++sums.cells;
            if (!isNumber || std::isnan(value))
                continue;
            sums.least = sums.numbers ? std::min(sums.least, value) : value;
            sums.greatest = sums.numbers ? std::max(sums.greatest, value) : value;
            ++sums.numbers;
            sum.add(value);
            parts.add(value / 1024);
        }
    }
    sums.sum = sum.value();
    const auto count = static_cast<double>(std::max<std::int64_t>(sums.numbers, 1));
    sums.mean = std::isfinite(sums.sum) ? sums.sum / count : parts.value() / count * 1024;
    return sums;
}

}  // namespace pavane

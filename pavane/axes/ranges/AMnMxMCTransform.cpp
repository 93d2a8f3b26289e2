#include "pavane/axes/ranges/AMnMxMCTransform.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

double valueAt(double cell, int count, double min, double max)
{
    return (max - min) * cell / (static_cast<double>(count) - 1.0) + min;
}

int cellAt(double value, int count, double min, double max)
{
    return truncated((static_cast<double>(count) - 1.0) * (value - min) / (max - min) + 0.5);
}

void orderInside(int count, int& first, int& last)
{
    if (first > last)
        std::swap(first, last);
    first = std::max(first, 0);
    last = std::min(last, count - 1);
}

}  // namespace

void AMnMxMCTransform::Init(const TMinMax& range, int rows, int columns)
{
    range_ = range;
    rows_ = std::max(rows, 0);
    columns_ = std::max(columns, 0);
}

double AMnMxMCTransform::MPXtoRPX(const double& column) const
{
    return valueAt(column, columns_, range_.xMin, range_.xMax);
}

double AMnMxMCTransform::MPYtoRPY(const double& row) const
{
    return valueAt(row, rows_, range_.yMin, range_.yMax);
}

int AMnMxMCTransform::RPXtoMPX(const double& x) const
{
    return cellAt(x, columns_, range_.xMin, range_.xMax);
}

int AMnMxMCTransform::RPYtoMPY(const double& y) const
{
    return cellAt(y, rows_, range_.yMin, range_.yMax);
}

void AMnMxMCTransform::GetRect(const TMinMax& r, AMatrixRect& cells) const
{
    cells = {RPYtoMPY(r.yMin), RPXtoMPX(r.xMin), RPYtoMPY(r.yMax), RPXtoMPX(r.xMax)};
    orderInside(rows_, cells.firstRow, cells.lastRow);
    orderInside(columns_, cells.firstColumn, cells.lastColumn);
}

}  // namespace pavane

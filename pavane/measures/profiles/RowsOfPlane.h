#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/measures/maps/moments.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pavane
{

/// Rows of a plane, from `first` to `last` of the map, as cells of the whole map are asked for. The
/// part outlives it.
class RowsOfPlane : public AMatrixAccess
{
public:
    RowsOfPlane(const CubePart& part, int first, int last)
        : part_(part), first_(first), cells_(static_cast<std::size_t>(last - first + 1) *
                                             static_cast<std::size_t>(part.columns))
    {
    }
    int rows() const override { return part_.rows; }
    int columns() const override { return part_.columns; }
    void copyRow(int row, int first, int count, float* to) const override
    {
        std::copy_n(floatRow(row) + first, count, to);
    }
    const float* floatRow(int row) const override
    {
        return cells_.data() + std::int64_t{row - first_} * part_.columns;
    }
    int read(int plane, int count, std::string& error)
    {
        return part_.read(plane, first_, count, cells_.data(), error);
    }

private:
    const CubePart& part_;
    int first_;
    std::vector<float> cells_;
};

}  // namespace pavane

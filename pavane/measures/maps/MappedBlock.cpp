#include "pavane/measures/maps/MappedBlock.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double none = std::numeric_limits<double>::quiet_NaN();
/// Smaller parts are mapped cell by cell.
constexpr int leastPart = 5;

}  // namespace

void MappedBlock::map(const CellMapping& mapping, int row, int column, int rows, int columns)
{
    mapping_ = &mapping;
    row_ = row;
    column_ = column;
    rows_ = rows;
    columns_ = columns;
    fill({0, 0, rows, columns});
}

void MappedBlock::fill(const Part& part)
{
    if (part.rows < leastPart || part.columns < leastPart) {
        for (int r = part.row; r < part.row + part.rows; ++r)
            for (int c = part.column; c < part.column + part.columns; ++c) {
                CellPlace& place = places_[indexOf(r, c)];
                place = {none, none};
                (void)mapping_->map(column_ + c, row_ + r, place.column, place.row);
            }
        return;
    }
    if (fitted(part))
        return;
    const int below = part.rows / 2, left = part.columns / 2;
    fill({part.row, part.column, below, left});
    fill({part.row, part.column + left, below, part.columns - left});
    fill({part.row + below, part.column, part.rows - below, left});
    fill({part.row + below, part.column + left, part.rows - below, part.columns - left});
}

int MappedBlock::fitted(const Part& part)
{
    MappedPatch patch;
    const double height = part.rows - 1, width = part.columns - 1;
    const CellPlace first{0.0 + column_ + part.column, 0.0 + row_ + part.row};
    if (!patch.fit(*mapping_, first, height, width))
        return 0;
    for (int r = 0; r < part.rows; ++r)
        for (int c = 0; c < part.columns; ++c)
            places_[indexOf(part.row + r, part.column + c)] = patch.at(r / height, c / width);
    return 1;
}

/// The way from one cell to the next one in a direction, from both sides where they are there.
int MappedBlock::step(int r, int c, int dr, int dc, double (&to)[2]) const
{
    const auto isInside = [this](int y, int x) {
        return y >= 0 && y < rows_ && x >= 0 && x < columns_ && std::isfinite(column(y, x));
    };
    const int after = isInside(r + dr, c + dc), before = isInside(r - dr, c - dc);
    const CellPlace& a = before ? at(r - dr, c - dc) : at(r, c);
    const CellPlace& b = after ? at(r + dr, c + dc) : at(r, c);
    const int steps = after + before;
    if (!steps || !std::isfinite(column(r, c)))
        return 0;
    to[0] = (b.column - a.column) / steps;
    to[1] = (b.row - a.row) / steps;
    return 1;
}

double MappedBlock::area(int r, int c) const
{
    double right[2], up[2];
    return step(r, c, 0, 1, right) && step(r, c, 1, 0, up)
               ? std::fabs(right[0] * up[1] - right[1] * up[0])
               : none;
}

}  // namespace pavane

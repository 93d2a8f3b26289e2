#pragma once

#include "tessel/MappedPatch.h"

#include <array>
#include <cstddef>

namespace pavane
{

/// Where the cells of a part of a grid lie on another map. A few places of it are mapped, those
/// between them by a MappedPatch where that holds; else the part is halved
/// both ways, down to some cells that are mapped each.
class MappedBlock
{
public:
    static constexpr int size = 64;

    /// The part of up to size x size cells whose first is at (row, column).
    void map(const CellMapping& mapping, int row, int column, int rows, int columns);
    /// CellPlace of a cell of the part, its row and column counted within it; NaN where it has
    /// none.
    double column(int r, int c) const { return at(r, c).column; }
    double row(int r, int c) const { return at(r, c).row; }
    /// Cells of the other map in this cell of the grid, from its neighbours; NaN without any.
    double area(int r, int c) const;

private:
    struct Part {
        int row, column, rows, columns;
    };
    static std::size_t indexOf(int r, int c)
    {
        return static_cast<std::size_t>(r) * size + static_cast<std::size_t>(c);
    }
    const CellPlace& at(int r, int c) const { return places_[indexOf(r, c)]; }
    void fill(const Part& part);
    int fitted(const Part& part);
    int step(int r, int c, int dr, int dc, double (&to)[2]) const;

    const CellMapping* mapping_ = nullptr;
    int row_ = 0, column_ = 0, rows_ = 0, columns_ = 0;
    std::array<CellPlace, std::size_t{size} * size> places_{};
};

}  // namespace pavane

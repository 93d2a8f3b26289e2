#include "tessel/PatchedMapping.h"

#include <algorithm>
#include <new>

namespace pavane
{

namespace
{

/// Cells of the sides of the largest and of the smallest patches.
constexpr int largest = 128, smallest = 8;

}  // namespace

PatchedMapping::PatchedMapping(const CellMapping& mapping, int rows, int columns)
    : mapping_(&mapping)
{
    try {
        nodes_.resize(static_cast<std::size_t>(std::max(rows, 0) / largest + 1) *
                      static_cast<std::size_t>(std::max(columns, 0) / largest + 1));
        down_ = std::max(rows, 0) / largest + 1;
        across_ = std::max(columns, 0) / largest + 1;
    } catch (const std::bad_alloc&) {
        nodes_.clear();
    }
}

int PatchedMapping::exact(CellPlace from, CellPlace& to) const
{
    return mapping_->map(from.column, from.row, to.column, to.row);
}

int PatchedMapping::find(CellPlace from, int& node, CellPlace& part)
{
    // not for numbers that no int holds, nor for NaN
    if (!(from.column >= 0 && from.row >= 0 && from.column < double{largest} * across_ &&
          from.row < double{largest} * down_))
        return 0;
    const int x = static_cast<int>(from.column) / largest;
    const int y = static_cast<int>(from.row) / largest;
    node = y * across_ + x;
    CellPlace first{double{largest} * x, double{largest} * y};
    for (double side = largest;; side /= 2) {
        Node& here = nodes_[static_cast<std::size_t>(node)];
        if (!here.isTried) {
            here.isTried = 1;
            here.isFitted = here.patch.fit(*mapping_, first, side, side);
        }
        if (here.isFitted) {
            part = {(from.column - first.column) / side, (from.row - first.row) / side};
            return 1;
        }
        if (side <= smallest)
            return 0;
        if (here.quarters < 0) {
            const int quarters = static_cast<int>(nodes_.size());
            nodes_.resize(nodes_.size() + 4);  // `here` is gone
            nodes_[static_cast<std::size_t>(node)].quarters = quarters;
        }
        const int isRight = from.column >= first.column + side / 2;
        const int isAbove = from.row >= first.row + side / 2;
        node = nodes_[static_cast<std::size_t>(node)].quarters + 2 * isAbove + isRight;
        first.column += isRight * side / 2;
        first.row += isAbove * side / 2;
    }
}

int PatchedMapping::map(CellPlace from, CellPlace& to)
{
    int node = 0;
    CellPlace part;
    try {
        if (find(from, node, part)) {
            to = nodes_[static_cast<std::size_t>(node)].patch.at(part.row, part.column);
            return 1;
        }
    } catch (const std::bad_alloc&) {
        // a quarter that has no room: the place is carried by itself
    }
    return exact(from, to);
}

}  // namespace pavane

#pragma once

#include "tessel/MappedPatch.h"

#include <vector>

namespace pavane
{

/// Carries many places of a map to another one: a patch of it at a time is fitted where the first
/// place in it is asked for, quarters of it where that does not hold, and at last each place is
/// carried through the sky by itself.
class PAVANE_API PatchedMapping
{
public:
    /// `mapping` has to outlive it; places with rows from 0 to `rows` and columns from 0 to
    /// `columns` may be carried by patches, others one by one.
    PatchedMapping(const CellMapping& mapping, int rows, int columns);

    /// As CellMapping::map, within 1e-4 cells. Where there is no memory for patches it is exact.
    int map(CellPlace from, CellPlace& to);

private:
    struct Node {
        MappedPatch patch;
        int isTried = 0, isFitted = 0;
        int quarters = -1;  ///< index of the first of its four; -1 without them
    };
    int exact(CellPlace from, CellPlace& to) const;
    /// Finds the patch of a place and the place's parts in it; 0 where it has to be exact.
    int find(CellPlace from, int& node, CellPlace& part);

    const CellMapping* mapping_;
    int across_ = 0, down_ = 0;
    std::vector<Node> nodes_;
};

}  // namespace pavane

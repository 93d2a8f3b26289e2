#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"

namespace pavane
{

/// The values that part the cells from `low` to `high` into `parts` (at most 255) equal shares:
/// values[i], i from 1 to parts - 1, has i / parts of them below it, to within a hundredth of a
/// share as far as equal cells allow. Rising. Cells that are not finite do not count; maps of more
/// than 12 million cells are sampled by whole rows at equal distances. Non-zero on success; 0, and
/// nothing written, when there are no cells.
int equalShares(const AMatrixAccess& cells, double low, double high, int parts, double* values);

}  // namespace pavane

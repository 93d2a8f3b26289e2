#pragma once

#include "pavane/measures/fits/source_shape.h"

namespace pavane
{

/// Where a fit of one source more begins: at the cell that lies farthest from the model, with the
/// shape of the cells about it that reach half of that, or of the beam (squared widths over
/// (column, row), null without one) where those are fewer than half a beam. May throw
/// std::bad_alloc.
CellSource startOfSource(const GaussianModel& model, const FitCells& cells, const Symmetric2* beam);

}  // namespace pavane

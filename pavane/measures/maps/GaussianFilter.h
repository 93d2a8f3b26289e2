#pragma once

#include "tessel/AMatrix.h"
#include "tessel/progress_function.h"

#include <string>

namespace pavane
{

/// A Gaussian in cells: its squared full widths at half maximum as a matrix over (column, row).
struct CellGaussian {
    double xx = 0, xy = 0, yy = 0;
};

/// Convolves cells, all finite, with a Gaussian of sum 1 in place, in the Fourier plane, zeros
/// beyond the edges. 0 with `error` without memory and when `progress` gave up; the cells are
/// spoiled then.
int convolve(AMatrix<float>& cells, const CellGaussian& gaussian, std::string& error,
             const ProgressFunction& progress);

}  // namespace pavane

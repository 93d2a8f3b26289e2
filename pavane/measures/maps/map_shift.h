#pragma once

#include "platform/api.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"
#include "tessel/CellMapping.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// How far a map has to be moved to lie on another one.
struct MapShift {
    SkyShift shift;          ///< degrees, as `moved` of regridMap takes it
    SkyShift error;          ///< of each, one standard deviation
    double correlation = 0;  ///< of the cells of both, after a move by whole cells
    double scale = 0;        ///< of the second map in the first
    std::int64_t cells = 0;  ///< that were compared
};

/// Finds the shift of `second` that correlates best with `first` over the cells of `mask`: whole
/// cells first, up to `reach` of them each way, then parts of cells by least squares of first = a +
/// k second, whose best shift is that of the best correlation. Both maps have the same cells and,
/// best, the same beam; places where the spectrum differs (a core) are left out by the mask. Errors
/// are from the covariance (J'J)^-1 J'NJ (J'J)^-1 of the least squares with the scatter of what is
/// left, N the correlation of white noise convolved with the beam, 1 without one. 0 with `error`,
/// in one line without a name, for a map not on the sky, fewer than 16 common cells, maps of which
/// one is constant there, a fit that does not converge or leaves the reach, without memory and when
/// `progress` gave up.
PAVANE_API int findMapShift(const AMatrix<float>& first, const AMatrix<float>& second,
                            const ABitMatrix& mask, const MapHeader& header, int reach,
                            MapShift& found, std::string& error,
                            const ProgressFunction& progress = {});

}  // namespace pavane

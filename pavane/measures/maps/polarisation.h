#pragma once

#include "platform/api.h"
#include "tessel/AMatrix.h"
#include "tessel/map_header.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// What Q and U, and I for the degree, make.
enum class PolarKind : int { intensity, degree, angle };

/// One Stokes parameter: cells and header are not owned; the noise is in the map's unit.
struct StokesMap {
    const AMatrix<float>* cells = nullptr;
    const MapHeader* header = nullptr;
    double noise = 0;
};

/// Linear polarisation of a map, NaN where it is not known.
struct PolarMap {
    AMatrix<float> cells;   ///< intensity in the unit of Q, degree as a part of I, or angle
    AMatrix<float> errors;  ///< of them
    AMatrix<float> angles;  ///< degrees -90 to 90 from north through east
    MapHeader header;       ///< that of Q with the unit of the cells
    double noise = 0;       ///< the mean of those of Q and U
    std::int64_t known = 0;
};

/// Makes polarised intensity root(Q^2 + U^2 - s^2), 0 below s, with s the mean noise of Q and U;
/// its degree, that over I; or the angle atan2(U, Q) / 2 from the north of the map's own frame
/// through east. Errors: s; of the degree by propagation; of the angle s / (2 intensity) radians.
/// Cells are blank where Q, U or I are, and where the intensity, or for the degree I, is not above
/// `clip` times its noise. `i` without cells: none, which the degree needs. 0 with `error`, to be
/// read behind the name of Q, for maps without the same cells (haveSameCells), unit or beam, or
/// that say to be other Stokes parameters, and without memory.
PAVANE_API int findPolarisation(PolarKind kind, const StokesMap& i, const StokesMap& q,
                                const StokesMap& u, double clip, PolarMap& made,
                                std::string& error);

}  // namespace pavane

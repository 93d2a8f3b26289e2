#pragma once

#include "platform/api.h"
#include "tessel/AMatrix.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// What becomes of the planes of a cube.
enum class Moment : int { integral = 0, mean = 1, dispersion = 2, greatest = 3 };

/// A plane that is taken: its number in the cube, the value of the axis of velocities in it and
/// how wide it is there (both in the unit of that axis), and the noise of its cells.
struct MomentPlane {
    int plane = 0;
    double value = 0, width = 0;
    double noise = 0;
};

/// Reads `count` rows of a plane, from row `first` on, blank cells NaN; 0 with an error.
using PlaneRows = std::function<int(int plane, int first, int count, float* cells, std::string&)>;

/// The planes of a cube that are taken, for work that holds only a few rows of them at a time.
struct CubePart {
    int rows = 0, columns = 0;
    std::vector<MomentPlane> planes;
    int isWhole = 0;  ///< a plane has to be read from its first row to its last
    PlaneRows read;
};

/// A moment and its error, of rows x columns cells, NaN where there is none.
struct MomentMap {
    Moment moment = Moment::integral;
    AMatrix<float> cells, errors;
};

/// Which planes of a cube stand between two (both included, from 0), with their places on its axis
/// of velocities: those that differ from the first in nothing else, so of a cube with several
/// Stokes parameters the ones of the first. `unit` becomes that of the axis. 0 with `error` for
/// planes that there are not and where a plane has no place; without such an axis only for
/// moments that need it.
PAVANE_API int planesBetween(const MapHeader& header, int first, int last, int needsAxis,
                             std::vector<MomentPlane>& planes, std::string& unit,
                             std::string& error);

/// Finds the robust noise of each plane (mapNoise), a plane in memory at a time. 0 with `error`
/// without memory, when a plane cannot be read or when `progress` gave up.
PAVANE_API int findPlaneNoises(CubePart& part, std::string& error,
                               const ProgressFunction& progress = {});

/// Finds the moments that `maps` name, in one pass over the planes. A cell of a plane is used when
/// it is finite and, with a clip above 0, above clip times the noise of the plane. With I its
/// value, v and w value and width of its plane and s its noise:
///  - integral: sum of I w, error the root of the sum of (s w)^2, which for equal planes is noise
///    times width times the root of their number;
///  - mean: sum of I w v over the integral;
///  - dispersion: the root of the mean of (v - mean)^2 weighted the same way, blank below 0;
///  - greatest: the greatest I, with the noise of its plane.
/// Mean and dispersion are blank where the integral is not above clip times its error (0 without a
/// clip), and have the errors that those of the cells make. Cells that no plane has a value for are
/// blank. Memory: some rows of a plane, and what the maps take. 0 as findPlaneNoises.
PAVANE_API int findMoments(const CubePart& part, double clip, std::vector<MomentMap>& maps,
                           std::string& error, const ProgressFunction& progress = {});

/// The unit of a moment: that of the cube times the one of its axis, or one of the two.
PAVANE_API std::string momentUnit(Moment moment, const std::string& bunit,
                                  const std::string& axisUnit);

}  // namespace pavane

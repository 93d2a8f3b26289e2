#pragma once

#include "platform/api.h"
#include "tessel/AMatrix.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// A beam on the sky: full widths at half maximum and the angle of the longer one, north through
/// east, all in degrees.
struct SkyBeam {
    double major = 0, minor = 0, angle = 0;
};

/// A map convolved to a larger beam. Its header has the new beam.
struct SmoothedMap {
    AMatrix<float> cells;
    MapHeader header;
    double factor = 1;  ///< new beam area over old one where the unit is per beam, else 1
    /// Cells with a value that lie within the longer axis of the new beam of a blank cell or of the
    /// edge, where the values take in cells that are not known.
    std::int64_t incomplete = 0;
};

/// Convolves a map with the Gaussian that makes its beam the larger one `beam`: its covariance is
/// the difference of theirs, its sum is 1, and it is exact in the Fourier plane. Values per beam
/// are multiplied by the ratio of the areas, so that a point source keeps its peak and an area its
/// flux; others are not. Beyond the map are zeros, nothing wraps round; blank cells count as 0 and
/// stay blank. 0 with `error`, in one line without a name, for a map without a beam or not on the
/// sky, a beam that is not larger in every direction (an equal one is allowed), without memory and
/// when `progress` gave up.
PAVANE_API int smoothMap(const AMatrix<float>& cells, const MapHeader& header, const SkyBeam& beam,
                         SmoothedMap& smoothed, std::string& error,
                         const ProgressFunction& progress = {});

/// Finds the Gaussian that makes `from` of `to`. Non-zero on success; 0 when `to` is smaller in
/// some direction, by more than 1e-6 of its longer axis squared. A width of it may be 0.
PAVANE_API int beamBetween(const SkyBeam& from, const SkyBeam& to, SkyBeam& between);

}  // namespace pavane

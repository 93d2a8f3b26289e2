#pragma once

#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// What a CLEAN took out of a map at one place, or a model that was fitted to it.
struct CleanComponent {
    double flux = 0;   ///< Jy
    double east = 0;   ///< degrees from the reference pixel of the map
    double north = 0;  ///< the same
    double major = 0;  ///< degrees, full width at half maximum of a Gaussian
    double minor = 0;
    double angle = 0;  ///< degrees, position angle of the major axis
    int code = 0;      ///< 0 point, 1 Gaussian; whatever else the file has
    int isSingle = 0;  ///< stored in single precision
};

/// The table of components of a map.
struct CleanComponents {
    int hasTable = 0;  ///< the file has one, maybe without rows
    std::vector<CleanComponent> rows;
    std::vector<std::string> notes;  ///< what the user should know, clauses without their subject
};

/// Reads the first binary table "AIPS CC" of a FITS file: columns by name, in any order, with the
/// units and scales that the file gives; Jy and degrees where it gives none. Axes, angle and kind
/// may be missing: they are points then. Rows without a finite flux and place are left out, with a
/// note. 0 when the file cannot be read or its table makes no sense: `error` is a clause without
/// its subject then, and `components` is empty.
PAVANE_API int readCleanComponents(const std::string& file, CleanComponents& components,
                                   std::string& error);

}  // namespace pavane

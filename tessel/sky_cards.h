#pragma once

#include <string>
#include <vector>

namespace pavane
{

/// A parameter of a projection, PVi_m.
struct SkyParameter {
    int axis = 0;    ///< 1 or 2
    int number = 0;  ///< 0 to 29
    double value = 0;
};

/// More parameters than any projection has.
inline constexpr int mostSkyParameters = 64;

/// What header cards say about the place on the sky beside the axes themselves.
struct SkyCards {
    int hasPosition = 1;  ///< both CRVAL are there, or there are no cards at all
    int isCoupled = 0;    ///< a matrix joins the two sky axes to a further one
    int hasLonpole = 0;
    int hasLatpole = 0;
    double lonpole = 0;
    double latpole = 0;
    std::string radesys;  ///< in capitals, empty when not given
    std::vector<SkyParameter> parameters;
};

/// Reads cards of 80 characters; those that are not of interest, damaged or not finite are passed
/// over.
SkyCards readSkyCards(const std::vector<std::string>& cards);

}  // namespace pavane

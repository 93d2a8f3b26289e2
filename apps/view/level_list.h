#pragma once

#include "pavane/axes/maps/cells/contour_levels.h"

#include <string>

namespace pavane
{

/// The contours that a command line asks for.
struct LevelChoice {
    int none = 0;        ///< no contour at all
    int goesOn = 0;      ///< after the last level on in the ratio of the last two, up to the peak
    ContourLevels list;  ///< chosen by the library when nothing was said
    std::string text;    ///< as it was given
};

/// Reads "peak:-1,1,2,4,...": a unit (peak, sigma or abs) and a list of numbers; a last item "..."
/// goes on in the ratio of the two before it, which have to rise above 0; "none" for no contour.
/// Non-zero on success, else 0 and `error` says why.
int parseLevels(const std::string& text, LevelChoice& choice, std::string& error);

/// What a reader of the picture has to know about the levels, in a few words; empty for nothing.
std::string levelNote(const LevelChoice& choice, double peak, double noise);

/// The levels as values of a map, rising; at most 100 of them where the list goes on.
std::vector<double> levelValues(const LevelChoice& choice, double peak, double noise);

}  // namespace pavane

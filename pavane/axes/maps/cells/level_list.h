#pragma once

#include "pavane/axes/maps/cells/contour_levels.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// The contours that are asked for, in words that suit any map.
struct LevelChoice {
    int none = 0;        ///< no contour at all
    int goesOn = 0;      ///< after the last level on in the ratio of the last two, up to the peak
    ContourLevels list;  ///< chosen by the library when nothing was said
    CString text;        ///< as it was given
};

/// Reads "peak:-1,1,2,4,...": a unit (peak, sigma or abs) and a list of numbers; a last item "..."
/// goes on in the ratio of the two before it, which have to rise above 0; "none" for no contour.
/// Non-zero on success, else 0 and `error` says what is wrong: "has 'x' as number 1, which is
/// none".
PAVANE_API int parseLevels(const CString& text, LevelChoice& choice, CString& error);

/// What a reader of the picture has to know about the levels, in a few words; empty for nothing.
PAVANE_API CString levelNote(const LevelChoice& choice, double peak, double noise);

/// The levels as values of a map, rising; at most 100 of them where the list goes on.
PAVANE_API std::vector<double> levelValues(const LevelChoice& choice, double peak, double noise);

}  // namespace pavane

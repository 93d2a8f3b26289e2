#pragma once

#include "pavane/measures/maps/map_shift.h"
#include "platform/CDialog.h"

#include <string>

namespace pavane
{

/// What the dialog of a shift shows, and what it is left with.
struct ShiftChoice {
    std::string first, second;  ///< names of the maps
    MapShift found;
    std::string fault;  ///< why none was found; "" when one was
    double cell = 0;    ///< degrees of a cell of the first map
    SkyShift wanted;    ///< the one found, or the one in use; then what the user wants
    int isOfAreas = 0;  ///< whether the cells are those of areas
};

/// Lets the user apply the shift that was found, another one, or none. Non-zero for Apply and for
/// Reset, which leaves none.
int askShift(CWnd* parent, ShiftChoice& choice);

/// "1.25 mas east, 0.4 mas south".
std::string shiftText(const SkyShift& shift);

}  // namespace pavane

#pragma once

#include "tessel/api.h"

#include <string>

namespace pavane
{

/// "RR", "I" ... of a value of a STOKES axis, rounded: 1 to 4 are I Q U V, -1 to -4 RR LL RL LR, -5
/// to -8 XX YY XY YX. "" for a code that stands for nothing.
PAVANE_API std::string stokesName(double value);

}  // namespace pavane

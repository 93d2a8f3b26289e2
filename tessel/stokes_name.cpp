#include "tessel/stokes_name.h"

#include <cmath>
#include <string_view>

namespace pavane
{

std::string stokesName(double value)
{
    static constexpr std::string_view names[] = {"YX", "XY", "YY", "XX", "LR", "RL", "LL",
                                                 "RR", "",   "I",  "Q",  "U",  "V"};
    const double code = std::floor(value + 0.5);
    return code >= -8 && code <= 4 ? std::string(names[static_cast<int>(code) + 8]) : std::string();
}

}  // namespace pavane

#pragma once

#include "apps/view/rgb_options.h"
#include "platform/CDialog.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// Which map is which colour, and between which values.
struct RgbChoice {
    std::vector<std::string> names;  ///< of the maps to choose from
    int isFixed = 0;                 ///< only the ranges are asked for
    std::array<int, rgbBands> maps{};
    std::array<std::string, rgbBands> ranges;     ///< LOW,HIGH or p:LOW,HIGH
    std::array<MapLook, rgbBands> looks;          ///< what they say, after OK
    std::function<std::string(int map)> rangeOf;  ///< what is proposed for a map
};

/// Asks until the ranges are right. Non-zero for OK.
int askRgb(CWnd* parent, RgbChoice& choice);

}  // namespace pavane

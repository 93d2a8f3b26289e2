#pragma once

#include "apps/view/several/MapLinks.h"

#include <cstddef>
#include <string_view>

namespace pavane
{

// Words of work files, for the one who reads them and the one who writes.

inline constexpr std::string_view workStart = "# pavane work ";
inline constexpr int workVersion = 2;
inline constexpr std::size_t mostWorkMaps = 100;
inline constexpr std::size_t mostWorkCurves = 12;

inline constexpr std::string_view shownNames[] = {"tabs", "side by side", "slider"};
inline constexpr std::string_view linkNames[] = {"nothing", "sky", "cell"};
inline constexpr std::string_view curveNames[] = {"none", "profile", "spectrum", "histogram"};
inline constexpr std::string_view acrossNames[] = {"mean", "greatest", "sum"};
inline constexpr struct {
    LinkPart part;
    std::string_view name;
} partNames[] = {
    {linkZoom, "zoom"}, {linkPointer, "pointer"}, {linkColours, "colours"}, {linkAreas, "areas"}};

}  // namespace pavane

#pragma once

#include "tessel/HeaderCards.h"
#include "tessel/map_header.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

using FitsHandle = const HeaderCards;

/// Reads the coordinate header of the image, whose axes have the given lengths. What is
/// missing or not a finite number keeps its default; `plane` counts over all further axes.
MapHeader readMapHeader(FitsHandle& fits, const std::vector<std::int64_t>& lengths, int plane);

/// Non-zero, and `value` set, when the current header has the key with a finite number.
int readNumber(FitsHandle& fits, const std::string& key, double& value);

/// The pixel, from 0, of `plane` along each axis; 0 on the first two.
std::vector<int> planePixels(const std::vector<MapAxis>& axes, int plane);

}  // namespace pavane

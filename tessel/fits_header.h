#pragma once

#include "tessel/HeaderCards.h"
#include "tessel/map_header.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// Reads the coordinate header of the image, whose axes have the given lengths. What is
/// missing or not a finite number keeps its default; `plane` counts over all further axes.
MapHeader readMapHeader(const HeaderCards& cards, const std::vector<std::int64_t>& lengths,
                        int plane);
/// Why the steps of such a header do not place its cells: a clause without its subject, empty when
/// they do. Files of programs that know no positions have steps of 0; `mayLack`: where the header
/// does not say that it is of the sky, none is missed.
std::string stepFault(const HeaderCards& cards, const MapHeader& header, int mayLack);

/// The pixel, from 0, of `plane` along each axis; 0 on the first two.
std::vector<int> planePixels(const std::vector<MapAxis>& axes, int plane);

}  // namespace pavane

#pragma once

#include "tessel/map_header.h"

#include <pybind11/pybind11.h>

namespace pavane::python
{

/// The header of a map as a tuple for pickling, and back; throws ValueError for another tuple.
pybind11::tuple stateOfHeader(const MapHeader& header);
MapHeader headerOfState(const pybind11::tuple& state);

}  // namespace pavane::python

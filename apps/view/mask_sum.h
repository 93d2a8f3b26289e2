#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"
#include "tessel/map_header.h"

#include <string>

namespace pavane
{

/// Sum of the cells whose bit is set, blank ones left out.
double sumInside(const AMatrix<float>& cells, const ABitMatrix& mask);

/// What a sum of cells is as a flux: the sum times `factor`, in `unit`. Janskys per beam are
/// divided by the area of the beam in cells; a map without a beam keeps the sum.
struct FluxUnit {
    double factor = 1;
    std::string unit;
};
FluxUnit fluxUnit(const MapHeader& header, const MapFrame& frame);

}  // namespace pavane

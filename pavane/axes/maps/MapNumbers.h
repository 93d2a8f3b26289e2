#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/MapContent.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// Sum of the cells whose bit is set, without a mask of all, blank ones left out. NaN without
/// memory.
PAVANE_API double sumInside(const AMatrixAccess& cells, const ABitMatrix* mask,
                            const StopFlag* stop = nullptr);

/// What a sum of cells is as a flux: the sum times `factor`, in `unit`. Janskys per beam are
/// divided by the area of the beam in cells; a map without a beam keeps the sum.
struct FluxUnit {
    double factor = 1;
    std::string unit;
};
PAVANE_API FluxUnit fluxUnit(const MapHeader& header, const MapFrame& frame);

/// The numbers that are told of a map and a mask of it. What is not known is NaN.
struct MapNumbers {
    double least = 0;  ///< of the finite cells, in the unit of the map
    double peak = 0;
    int peakColumn = -1, peakRow = -1;  ///< from 0; -1 without a finite cell
    MapPlace peakOffset;                ///< arcseconds east and north; NaN when not on the sky
    double noise = 0;
    double beamCells = 0;  ///< area of the beam in cells
    std::int64_t maskCells = 0;
    double flux = 0;  ///< of the cells in the mask, in fluxUnit
    std::string unit;
    std::string fluxUnit;
};

/// Of cells described as MapContent and a mask of the same size, null for all of them; a stop
/// leaves the flux unfinished.
PAVANE_API MapNumbers mapNumbers(const AMatrixAccess& cells, const MapContent& content,
                                 const ABitMatrix* mask, const StopFlag* stop = nullptr);

}  // namespace pavane

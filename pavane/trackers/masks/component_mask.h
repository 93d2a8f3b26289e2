#pragma once

#include "platform/api.h"
#include "tessel/ABitMatrix.h"

namespace pavane
{

class AComponents;
struct MapFrame;

/// Sets the cells of a map that components lie in: of a point the cell, of others what their
/// outline (half maximum, outer edge) holds. `mask` has the size of the map and is not cleared
/// before. 0 without memory.
PAVANE_API int componentMask(const AComponents& model, const MapFrame& frame, ABitMatrix& mask);

}  // namespace pavane

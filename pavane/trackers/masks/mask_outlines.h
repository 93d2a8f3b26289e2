#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

#include <vector>

namespace pavane
{

/// A closed polygon of cells (x = column, y = row), from the last one back to the first; one cell
/// or a line of them is one too. Only cells where it turns are in it.
struct MaskOutline {
    std::vector<CPoint> cells;
    int isHole = 0;  ///< its cells are cleared when all others are set
};

struct OutlineRules {
    int mostVertices = 1000;
    /// In a row of one polygon: as many as each filler of areas takes without a message.
    int mostCrossings = 30;
    /// Non-zero: what is enclosed is an outline of its own. Else all is cut into polygons without
    /// holes.
    int withHoles = 1;
    /// Non-zero: outlines with too many vertices or crossings are cut into several, and filled they
    /// give the mask again cell by cell. Else they are smoothed: those of more than `mostVertices`
    /// lose what is farther from the cells by the least distance that helps.
    int isExact = 1;
    /// Looked at between pieces and rows: no outlines then, as without memory.
    const StopFlag* stop = nullptr;
};

/// Polygons that, filled as AAreaBitFill fills, holes cleared afterwards, give the mask again;
/// cells that hang together by their sides share one. `outlines` begins empty and stays so without
/// memory and when stopped, when the result is 0. An empty mask has none.
PAVANE_API int outlinesOfMask(const ABitMatrix& mask, const OutlineRules& rules,
                              std::vector<MaskOutline>& outlines);

/// The mask of outlines: all but holes are set, then holes cleared. 0 without memory.
PAVANE_API int fillOutlines(const std::vector<MaskOutline>& outlines, ABitMatrix& mask);

}  // namespace pavane

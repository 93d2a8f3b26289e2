#pragma once

#include <cstdint>

namespace pavane
{

class CDC;

/// How an outline is drawn. Who draws many gives it to each tracker; never-clean areas know it.
struct OutlineLook {
    bool crowded = false;     ///< so many that lines of whole units without soft edges have to do
    bool dashed = false;      ///< not selected while something else is
    bool neverClean = false;  ///< dark with a light edge
    /// The clip region and the rectangles stay as they are in this context: who draws has clipped.
    const CDC* clipped = nullptr;
    std::int32_t colour = -1;  ///< 0xRRGGBB that the user gave; -1: the usual one
};

}  // namespace pavane

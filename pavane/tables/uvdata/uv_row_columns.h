#pragma once

#include "platform/api.h"
#include "platform/types.h"
#include "tessel/uvfits/UvPlotRows.h"

#include <span>

namespace pavane
{

/// A column of a list of visibilities.
struct UvRowColumn {
    const char* title;
    const char* tip;
    int width;  ///< in characters
    /// Text of a cell.
    CString (*text)(const AUVXFile& file, const UvPointOrigin& row);
    /// What a cell stands for; null in columns of words.
    double (*number)(const AUVXFile& file, const UvPointOrigin& row);
};

/// Time, telescopes, source, IF, channel, Stokes, u, v, w, distance, amplitude, phase, weight,
/// number and group. What is counted counts from 1.
PAVANE_API std::span<const UvRowColumn> uvRowColumns();

}  // namespace pavane

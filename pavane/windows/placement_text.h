#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <string_view>

namespace pavane
{

/// A window's place as the profile keeps it: ten numbers with commas between, in the order of the
/// fields.
struct PlacementRecord {
    unsigned flags = 0;        ///< bit 2: comes back maximised
    unsigned showCommand = 1;  ///< SW_...
    CPoint minPosition;
    CPoint maxPosition;
    CRect normal;
    friend bool operator==(const PlacementRecord&, const PlacementRecord&) = default;
};

/// The record as text: flags and show command without a sign, no blanks.
PAVANE_API CString placementText(const PlacementRecord& record);
/// Reads ten numbers; what follows them is ignored. Non-zero when all ten are there and the
/// rectangle is one that a window can have; else 0 and `record` is left alone.
PAVANE_API int readPlacement(std::string_view text, PlacementRecord& record);

}  // namespace pavane

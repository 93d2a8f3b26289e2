#pragma once

#include "tessel/uvfits/UvGroups.h"
#include "tessel/uvfits/UvLayout.h"

#include <cstdint>

namespace pavane
{

/// Bytes of groups as they stand in the file. Private to tessel's sources.
struct GroupBytes {
    const unsigned char* bytes = nullptr;
    std::int64_t step = 0;  ///< from one group to the next
    int count = 0;
};

/// Fills the arrays of `groups` that the bits of UvGroups::What in `what` choose, cells excepted.
void takeGroupValues(const UvLayout& layout, double referenceDay, const GroupBytes& stored,
                     int what, UvGroups& groups);

}  // namespace pavane

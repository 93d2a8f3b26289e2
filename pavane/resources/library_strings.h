#pragma once

#include "pavane/resources/resource_ids.h"
#include "platform/resources.h"

namespace pavane
{

/// Texts that hosts name by number.
inline constexpr StringTemplate libraryStrings[] = {
    {IDS_TIME_INTERVALS, "Time Intervals"},
};

}  // namespace pavane

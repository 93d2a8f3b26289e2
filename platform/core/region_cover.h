#pragma once

#include "platform/core/Region.h"

#include <vector>

namespace pavane
{

/// Few rectangles that together hold every pixel of `region` and not many more: exact when there
/// are at most `most` of them, else rows are taken together and small gaps are filled.
std::vector<CRect> coverOf(const Region& region, std::size_t most);

}  // namespace pavane

#pragma once

#include "platform/api.h"

namespace pavane
{

// Sizes that axes start with. They divide: the font height is at most 1/30 of the plot at first, a
// cross marker reaches fHeight / 6 to each side. A divisor below 1 counts as 1 where it is used.
// An axis takes them when it is made (ABAxis::setParts gives it others); these functions change
// what axes made later get, and what windows show at their next painting. Any thread may call them.

/// The sizes of an axis.
struct AxisParts {
    int point = 6;  ///< divisor of fHeight for point markers
    int font = 30;  ///< divisor of the picture's size for the font height
    int cross = 6;  ///< divisor of fHeight for cross markers
};

/// All three as they are now.
PAVANE_API AxisParts GetAxisParts();
/// Divisor of fHeight for point markers; 6 at first.
PAVANE_API int GetPartPointHeight();
PAVANE_API void SetPartPointHeight(int part);
/// Divisor of the picture's size for the font height; 30 at first.
PAVANE_API int GetPartFontHeight();
PAVANE_API void SetPartFontHeight(int part);
/// Divisor of fHeight for cross markers; 6 at first.
PAVANE_API int GetPartCrossHeight();
PAVANE_API void SetPartCrossHeight(int part);

}  // namespace pavane

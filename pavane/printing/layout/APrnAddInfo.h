#pragma once

#include "platform/types.h"

namespace pavane
{

/// What stands on a page beside the picture: its number above, a caption above or below.
struct APrnAddInfo {
    int pageNumber = 0;       ///< non-zero: with the band of the page number
    int subscript = 1;        ///< non-zero: with the caption
    CString subscriptFormat;  ///< of the caption, see FormatStr
    int firstNumber = 1;      ///< number that the first page gets
};

/// First numbers that the dialog takes.
inline constexpr int leastFirstNumber = 1;
inline constexpr int greatestFirstNumber = 99999;

}  // namespace pavane

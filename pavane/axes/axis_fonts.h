#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

class CFont;

/// Makes `font` of the named face: cell height in logical units, weight 700 when `bold`, turned
/// counter-clockwise by `angle` degrees. Non-zero on success.
PAVANE_API int CreateFont(CFont& font, int height, int bold, double angle, const CString& face);

}  // namespace pavane

#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

class CDC;

/// Text in the context's font with an edge of so many units, which is read on any ground.
PAVANE_API void drawEdgedText(CDC& dc, CPoint at, const CString& text, int edge, COLORREF color,
                              COLORREF edgeColor);

}  // namespace pavane

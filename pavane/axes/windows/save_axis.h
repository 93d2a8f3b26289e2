#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

class ABAxis;

/// Writes an axis with all that is in it as a picture with soft edges, whole or not at all: as PDF
/// or SVG where the name ends so, else as PNG. `size` in pixels of 96 per inch, up to 32768 a side.
/// Non-zero on success, else 0 and `error` says what went wrong in one line.
PAVANE_API int SaveAxis(ABAxis& axis, CSize size, const CString& file, CString& error);

}  // namespace pavane

#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

class CDC;

// Texts cut to their room, in the font selected in the context; what is left out shows as "...".

/// `text` when it is at most `width` wide, else as much of its start as fits with "..." behind it;
/// empty when not even that fits. Never a part of a character.
PAVANE_API CString fittedLine(CDC& dc, const CString& text, int width);

/// The same for a text that DrawText breaks at its blanks into lines: at most `height` high, but
/// one line at least. A word wider than `width` is cut for itself.
PAVANE_API CString fittedLines(CDC& dc, const CString& text, int width, int height);

}  // namespace pavane

#pragma once

#include "platform/picture.h"
#include "platform/window_dc.h"

namespace pavane
{

/// A context that shows on a picture what `printer` would print: caps, units, default font and
/// measures of text are the printer's, so that lines break as on paper. `target` is where the whole
/// sheet lies, in units of the picture; it may reach beyond it, and nothing is drawn outside. What
/// the picture held stays below what is drawn: fill it with the colour of the paper first. Picture
/// and context may not outlive the pixels; `printer` is not needed afterwards. Never null.
PAVANE_API std::unique_ptr<CDC> CreatePreviewDC(CPicture& picture, const CDC& printer,
                                                const CRect& target);
/// The same on the pixels of a bitmap for a window.
PAVANE_API std::unique_ptr<CDC> CreatePreviewDC(CBitmap& bitmap, const CDC& printer,
                                                const CRect& target);

}  // namespace pavane

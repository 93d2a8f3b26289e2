#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

class CDC;
class CWnd;

/// Puts a copy of `rect` of `dc` on the clipboard as a picture; 0 when the clipboard refuses.
PAVANE_API int CopyToClipboard(CWnd* owner, CDC& dc, const CRect& rect);
/// Saves a copy of `rect` of `dc` as a picture, with all pixels that the device has.
/// Deliberate: the name is older than the formats; the file is encoded by its extension, and PNG is
/// the only one that has an encoder. 0 without an encoder or when the file cannot be written; no
/// message is shown.
PAVANE_API int CopyToBMP(CDC& dc, const CRect& rect, const CString& fileName);

}  // namespace pavane

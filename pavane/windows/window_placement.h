#pragma once

#include "platform/api.h"

namespace pavane
{

class CWnd;

/// Brings a top-level window to the place kept in the profile, entry "WindowPos" of `section`. True
/// when it was applied; false, with the window left alone, when there is none or it is not whole.
PAVANE_API bool LoadWndPos(CWnd* window, const char* section);
/// Keeps the window's place there. A window that would come back maximised is kept as maximised,
/// also while it is minimised. Nothing is written when the place is not known.
PAVANE_API void SaveWndPos(CWnd* window, const char* section);

}  // namespace pavane

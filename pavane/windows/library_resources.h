#pragma once

#include "platform/api.h"

namespace pavane
{

/// Makes the menus, dialogs, cursors and texts of the library known. Every window and tracker of
/// the library calls it before it needs one; calling it again does nothing.
PAVANE_API void AddLibraryResources();

}  // namespace pavane

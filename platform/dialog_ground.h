#pragma once

#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// What dialogs have behind their controls, for windows without a ground of their own; white before
/// the platform was started for windows.
PAVANE_API COLORREF GetDialogGround();

}  // namespace pavane

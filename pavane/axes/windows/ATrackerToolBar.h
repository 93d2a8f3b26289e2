#pragma once

#include "pavane/resources/tools.h"
#include "platform/controls.h"

namespace pavane
{

/// The tools for marking areas. The commands are those of resource_ids.h; one of the tools is
/// pressed at any time.
class PAVANE_API ATrackerToolBar : public CToolBar
{
public:
    /// Adds the buttons; call it once, when the bar has been made. Non-zero on success.
    int SetupButtons(int which);
    /// The window that receives the commands; null gives them to the parent. With `enabled` zero
    /// the tools are grey, as long as there is nothing to draw in.
    void SetOwnerWnd(CWnd* owner, int enabled);
};

}  // namespace pavane

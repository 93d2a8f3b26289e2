#include "pavane/windows/window_placement.h"

#include "pavane/windows/placement_text.h"
#include "platform/CWnd.h"
#include "platform/profile.h"

namespace pavane
{

namespace
{

constexpr const char* placementEntry = "WindowPos";

}  // namespace

bool LoadWndPos(CWnd* window, const char* section)
{
    PlacementRecord record;
    if (!window || !section || !readPlacement(GetProfileString(section, placementEntry), record))
        return false;
    WINDOWPLACEMENT placement;
    placement.flags = record.flags;
    placement.showCmd = record.showCommand;
    placement.ptMinPosition = record.minPosition;
    placement.ptMaxPosition = record.maxPosition;
    placement.rcNormalPosition = record.normal;
    window->SetWindowPlacement(placement);
    return true;
}

void SaveWndPos(CWnd* window, const char* section)
{
    WINDOWPLACEMENT placement;
    if (!window || !section || !window->GetWindowPlacement(placement))
        return;
    PlacementRecord record;
    record.flags = placement.flags;
    record.showCommand =
        placement.flags & WPF_RESTORETOMAXIMIZED ? SW_SHOWMAXIMIZED : placement.showCmd;
    record.minPosition = placement.ptMinPosition;
    record.maxPosition = placement.ptMaxPosition;
    record.normal = placement.rcNormalPosition;
    // a profile that cannot be written costs a window's place, which is not worth a question
    (void)WriteProfileString(section, placementEntry, placementText(record));
}

}  // namespace pavane

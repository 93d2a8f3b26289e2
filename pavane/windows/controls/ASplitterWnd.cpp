#include "pavane/windows/controls/ASplitterWnd.h"

#include "pavane/resources/control_messages.h"
#include "platform/profile.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

int ASplitterWnd::SetProfile(const CString& section, const CString& entry)
{
    section_ = section;
    entry_ = entry;
    double share = 0;
    if (!stoval(GetProfileString(section_, entry_), share) || !(share >= 0 && share <= 1))
        return 0;
    SetShare(share);
    return 1;
}

/// Whatever the user did to the bar is kept at once: a program that is killed loses nothing.
void ASplitterWnd::moved()
{
    if (!section_.empty())
        (void)WriteProfileString(section_, entry_, valToStr(GetShare(), 6));
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

void ASplitterWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    const double before = GetShare();
    CSplitterWnd::OnLButtonDown(flags, point);
    if (FromHandle(self) == this && GetShare() != before)
        moved();
}

void ASplitterWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    if (!GetBarRect().PtInRect(point))
        return CSplitterWnd::OnLButtonDblClk(flags, point);
    const HWND self = GetSafeHwnd();
    SetShare(0.5);
    if (FromHandle(self) != this)
        return;
    moved();
    if (CWnd* const parent = GetParent())
        parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{SPN_MOVED} << 16,
                            static_cast<LPARAM>(self));
}

void ASplitterWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const HWND self = GetSafeHwnd();
    const double before = GetShare();
    CSplitterWnd::OnKeyDown(key, repeat, flags);
    if (FromHandle(self) == this && GetShare() != before)
        moved();
}

int ASplitterWnd::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_SEPARATOR;
    part.name = name_.empty() ? CString(splitterName) : name_;
    part.value = valToStr(std::floor(100 * GetShare() + 0.5)) + " %";
    part.state = GetStyle() & WS_TABSTOP ? STATE_SYSTEM_FOCUSABLE : 0;
    part.rect = GetBarRect();
    return 1;
}

int ASplitterWnd::AccessSetFocus(AccessId id)
{
    if (id != 0 || !(GetStyle() & WS_TABSTOP))
        return 0;
    SetFocus();
    return 1;
}

}  // namespace pavane

#include "apps/clean/RoundComponents.h"

#include "platform/CDC.h"
#include "platform/gdi_objects.h"
#include "platform/system_colors.h"

namespace pavane
{

namespace
{

constexpr int margin = 6;

}  // namespace

void RoundComponents::SetNote(const CString& note)
{
    note_ = note;
    if (GetSafeHwnd())
        Invalidate();
}

void RoundComponents::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    if (note_.empty() || components().count() > 0)
        return PartWindow<AComponentsTbl>::DrawWindow(dc, client, update);
    dc.FillSolidRect(update, GetWindowBkColor());
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
    CFont font = GetFont();
    CFont* const before = dc.SelectObject(&font);
    CRect text(margin, margin, client.right - margin, client.bottom);
    dc.DrawText(note_, text, DT_WORDBREAK | DT_NOPREFIX);
    dc.SelectObject(before);
}

void RoundComponents::OnNotice(const CString& text)
{
    if (notice)
        notice(text);
}

void RoundComponents::tell()
{
    if (changed)
        changed();
}

}  // namespace pavane

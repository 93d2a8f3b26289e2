#include "apps/view/StatusLine.h"

#include "pavane/windows/controls/AToolTip.h"
#include "platform/dialog_ground.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int lineHeight = 26;
constexpr int fontHeight = -12;
/// Room between the border of a pane and its text.
constexpr int inset = 8;
/// Added when a pane is widened, so that one more digit does not widen it again.
constexpr int spare = 14;
constexpr const char* lineName = "Status";

}  // namespace

StatusLine::StatusLine() { SetFlag(windowBuffered | windowNoWaitCursor, 1); }

int StatusLine::Create(CWnd* parent, unsigned id)
{
    LOGFONT font;
    font.lfHeight = fontHeight;
    font.lfFaceName = "Arial";
    font_.CreateFontIndirect(font);
    return CreateEx(0, GetWndClassName(), CString(), WS_CHILD | WS_VISIBLE, CRect(), parent, id);
}

int StatusLine::height() { return lineHeight; }

CRect StatusLine::paneRect(int pane, const CRect& client) const
{
    // what the areas hold stays at the right end, where it is not pushed about
    const StatusWidths widths = fittingPanes(widths_, client.Width());
    CRect rect = client;
    if (pane == statusMask) {
        rect.left = client.right - widths[statusMask];
        return rect;
    }
    for (int i = 0; i < pane; ++i)
        rect.left += widths[static_cast<std::size_t>(i)];
    rect.right = rect.left + widths[static_cast<std::size_t>(pane)];
    return rect;
}

/// Widens panes for texts that are longer than any before; non-zero when one was widened.
int StatusLine::widen(const StatusTexts& texts)
{
    CClientDC dc(this);
    CFont* const before = dc.SelectObject(&font_);
    int widened = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const int needed = texts[i].empty() ? 0 : dc.GetTextExtent(texts[i]).cx + 2 * inset;
        if (needed > widths_[i]) {
            widths_[i] = needed + spare;
            widened = 1;
        }
    }
    dc.SelectObject(before);
    return widened;
}

void StatusLine::Reset()
{
    widths_.fill(0);
    SetTexts(StatusTexts());
}

void StatusLine::SetTexts(const StatusTexts& texts)
{
    CRect client;
    if (!GetClientRect(client))
        return;
    if (widen(texts) || !message_.empty())
        Invalidate();
    message_.clear();
    for (int i = 0; i < statusPanes; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (texts_[at] != texts[at])
            InvalidateRect(paneRect(i, client));
    }
    texts_ = texts;
}

void StatusLine::SetMessage(const CString& message)
{
    if (message == message_)
        return;
    message_ = message;
    Invalidate();
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

/// The pane under a point, -1 for none.
int StatusLine::paneAt(CPoint point) const
{
    CRect client;
    GetClientRect(client);
    for (int i = 0; i < statusPanes; ++i)
        if (paneRect(i, client).PtInRect(point) && !texts_[static_cast<std::size_t>(i)].empty())
            return i;
    return -1;
}

CString StatusLine::tipAt(CPoint point, CRect& pane)
{
    const int at = message_.empty() ? paneAt(point) : -1;
    if (at >= 0) {
        CRect client;
        GetClientRect(client);
        pane = paneRect(at, client);
        return names_[static_cast<std::size_t>(at)];
    }
    CClientDC dc(this);
    CFont* const before = dc.SelectObject(&font_);
    const int isCut = dc.GetTextExtent(message_).cx > pane.Width() - 2 * inset;
    dc.SelectObject(before);
    return isCut ? message_ : CString();
}

void StatusLine::ExplainBy(AToolTip& tips)
{
    (void)tips.AddTool(this, [this](CPoint point, CRect& pane) { return tipAt(point, pane); });
}

// --- screen readers: the line reads as a whole, and its panes are parts

int StatusLine::GetAccessPart(AccessId id, AccessPart& part) const
{
    const auto pane = static_cast<std::size_t>(id - 1);
    if (id < 0 || (id > 0 && (pane >= texts_.size() || texts_[pane].empty())))
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_STATICTEXT;
    part.state = STATE_SYSTEM_READONLY;
    GetClientRect(part.rect);
    if (id > 0) {
        part.rect = paneRect(static_cast<int>(pane), part.rect);
        part.name = names_[pane].empty() ? texts_[pane] : names_[pane];
        part.value = texts_[pane];
        return 1;
    }
    part.name = lineName;
    part.value = message_;
    for (const std::string& text : texts_)
        if (message_.empty() && !text.empty())
            part.value += (part.value.empty() ? "" : "; ") + text;
    return 1;
}

std::vector<AccessId> StatusLine::GetAccessChildren() const
{
    std::vector<AccessId> panes;
    for (int i = 0; i < statusPanes; ++i)
        if (message_.empty() && !texts_[static_cast<std::size_t>(i)].empty())
            panes.push_back(i + 1);
    return panes;
}

AccessId StatusLine::AccessHitTest(CPoint point) const
{
    return message_.empty() ? paneAt(point) + 1 : 0;
}

void StatusLine::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    const COLORREF edge = GetSysColor(COLOR_BTNSHADOW);
    dc.FillSolidRect(update, GetDialogGround());
    dc.FillSolidRect(CRect(client.left, client.top, client.right, client.top + 1), edge);
    CFont* const before = dc.SelectObject(&font_);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
    const unsigned format = DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX;
    if (!message_.empty()) {
        CRect all = client;
        all.DeflateRect(inset, 0);
        dc.DrawText(message_, all, format);
        dc.SelectObject(before);
        return;
    }
    for (int i = 0; i < statusPanes; ++i) {
        CRect pane = paneRect(i, client);
        if (pane.Width() <= 0)
            continue;
        if (pane.left > client.left)
            dc.FillSolidRect(CRect(pane.left, pane.top + 5, pane.left + 1, pane.bottom - 4), edge);
        pane.DeflateRect(inset, 0);
        dc.DrawText(texts_[static_cast<std::size_t>(i)], pane, format);
    }
    dc.SelectObject(before);
}

}  // namespace pavane

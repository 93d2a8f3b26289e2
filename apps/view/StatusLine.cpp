#include "apps/view/StatusLine.h"

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
constexpr COLORREF face = RGB(239, 239, 239);
constexpr COLORREF edge = RGB(200, 200, 200);
constexpr COLORREF ink = RGB(30, 30, 30);

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
    message_ = message;
    Invalidate();
}

void StatusLine::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    dc.FillSolidRect(update, face);
    dc.FillSolidRect(CRect(client.left, client.top, client.right, client.top + 1), edge);
    CFont* const before = dc.SelectObject(&font_);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(ink);
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

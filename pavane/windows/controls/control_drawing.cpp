#include "pavane/windows/controls/control_drawing.h"

#include "pavane/windows/controls/control_texts.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/dialog_ground.h"
#include "platform/system_colors.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int tabGap = 8;

/// -1 for a line in one piece.
int tabIn(const CString& text, int column)
{
    const auto tab = column > 0 ? text.find('\t') : CString::npos;
    return tab == CString::npos ? -1 : static_cast<int>(tab);
}

}  // namespace

COLORREF controlGround(const CWnd& window)
{
    const CWnd* const parent = window.GetParent();
    return parent && parent->IsDialog() ? GetDialogGround() : GetSysColor(COLOR_WINDOW);
}

ControlFont::ControlFont(CDC& dc, const CWnd& window)
    : dc_(dc), font_(window.GetFont()), before_(dc.SelectObject(&font_))
{
    dc.SetBkMode(TRANSPARENT);
}

ControlFont::~ControlFont() { dc_.SelectObject(before_); }

int widthOfText(const CDC& dc, const CString& text, int from, int to)
{
    const auto begin = static_cast<std::size_t>(std::max(0, from));
    if (to <= from || begin >= text.size())
        return 0;
    return dc.GetTextExtent(text.substr(begin, static_cast<std::size_t>(to) - begin)).cx;
}

int placeInLine(const CDC& dc, const CString& text, int at, int column)
{
    const auto tab = tabIn(text, column);
    if (at <= tab || tab < 0)
        return widthOfText(dc, text, 0, at);
    return std::max(column, widthOfText(dc, text, 0, tab) + tabGap) +
           widthOfText(dc, text, tab + 1, at);
}

int byteAt(const CDC& dc, const CString& text, int x, int column)
{
    int at = 0;
    int left = 0;
    while (at < static_cast<int>(text.size())) {
        const int next = nextCharacter(text, at);
        const int right = placeInLine(dc, text, next, column);
        if (x < (left + right) / 2)
            break;
        at = next;
        left = right;
    }
    return at;
}

void drawSelectedText(CDC& dc, CPoint at, int height, const CString& text, int from, int to,
                      COLORREF color, int column)
{
    if (const int tab = tabIn(text, column); tab >= 0) {
        const int behind = placeInLine(dc, text, tab + 1, column);
        drawSelectedText(dc, at, height, text.substr(0, static_cast<std::size_t>(tab)),
                         std::min(from, tab), std::min(to, tab), color);
        return drawSelectedText(dc, {at.x + behind, at.y}, height,
                                text.substr(static_cast<std::size_t>(tab) + 1),
                                std::max(0, from - tab - 1), std::max(0, to - tab - 1), color);
    }
    dc.SetTextColor(color);
    if (from >= to) {
        dc.TextOut(at.x, at.y, text);
        return;
    }
    const auto piece = [&](int begin, int end) {
        const int size = static_cast<int>(text.size());
        const int first = std::min(begin, size);
        return text.substr(static_cast<std::size_t>(first),
                           static_cast<std::size_t>(std::min(end, size) - first));
    };
    const int left = at.x + widthOfText(dc, text, 0, from);
    const bool withEnd = to > static_cast<int>(text.size());
    const int right = at.x + widthOfText(dc, text, 0, to) + (withEnd ? height / 3 : 0);
    dc.TextOut(at.x, at.y, piece(0, from));
    dc.FillSolidRect({left, at.y, right, at.y + height}, GetSysColor(COLOR_HIGHLIGHT));
    dc.SetTextColor(GetSysColor(COLOR_HIGHLIGHTTEXT));
    dc.TextOut(left, at.y, piece(from, to));
    dc.SetTextColor(color);
    if (!withEnd)
        dc.TextOut(right, at.y, piece(to, static_cast<int>(text.size())));
}

}  // namespace pavane

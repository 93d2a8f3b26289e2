#include "pavane/axes/windows/AAreaTableWnd.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDC.h"
#include "platform/message.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int columnCount = 2;
constexpr int lineHeight = 24;
constexpr int headHeight = 22;
constexpr int labelWidth = 108;
constexpr int edge = 4;
constexpr unsigned firstField = 1000;
constexpr COLORREF background = RGB(240, 240, 240);
constexpr COLORREF textColor = RGB(20, 20, 20);
constexpr const char* noArea = "No area is selected.";

std::size_t fieldAt(int line, int column)
{
    const int at = line * columnCount + column;
    return static_cast<std::size_t>(at);
}

}  // namespace

AAreaTableWnd::AAreaTableWnd() { SetFlag(windowNoWaitCursor, 1); }

const char* AAreaTableWnd::GetWndClassName() { return "AAreaTableWnd"; }

void AAreaTableWnd::SetAxisWnd(AAxisWnd* window)
{
    axis_ = window;
    Refresh();
}

void AAreaTableWnd::SetUnits(const ValueUnit& x, const ValueUnit& y)
{
    unitX_ = x;
    unitY_ = y;
    Refresh();
}

void AAreaTableWnd::Refresh()
{
    if (keeping_)
        return;
    int item = axis_ ? axis_->GetTrackers()->GetCurItemNo() : -1;
    ShapeValues shape;
    const ATracker* const current = item >= 0 ? axis_->GetTrackers()->trackerAt(item) : nullptr;
    if (!current || !current->IsActive() || !axis_->GetTrackers()->GetShape(item, shape))
        item = -1;
    if (item >= 0) {
        const TMinMax& whole = axis_->GetWholeRange();
        if (whole.xMin < whole.xMax && whole.yMin < whole.yMax)
            table_.setMap({whole.xMin, whole.yMin, whole.xMax, whole.yMax}, unitX_, unitY_);
        table_.setShape(shape);
    }
    if (item != item_)
        firstRow_ = 0;
    item_ = item;
    makeFields();
    showTexts();
    Invalidate();
}

int AAreaTableWnd::visibleLines() const
{
    CRect client;
    GetClientRect(client);
    return std::max(0, (client.Height() - headHeight) / lineHeight);
}

CRect AAreaTableWnd::fieldRect(int line, int column) const
{
    CRect client;
    GetClientRect(client);
    const int room = std::max(columnCount, client.Width() - labelWidth - edge);
    const int columns = item_ >= 0 ? table_.columns() : 1;
    const int left = labelWidth + room * column / columns;
    const int top = headHeight + line * lineHeight;
    return {left, top + 1, labelWidth + room * (column + 1) / columns - 2, top + lineHeight - 1};
}

AAreaTableWnd::Field* AAreaTableWnd::field(int line, int column) const
{
    const auto at = fieldAt(line, column);
    return at < fields_.size() ? fields_[at].get() : nullptr;
}

/// As many fields as lines are seen, and the scroll range.
void AAreaTableWnd::makeFields()
{
    if (!GetSafeHwnd())
        return;
    const int rows = item_ >= 0 ? table_.rows() : 0;
    lines_ = std::min(rows, visibleLines());
    firstRow_ = std::clamp(firstRow_, 0, rows - lines_);
    while (static_cast<int>(fields_.size()) < lines_ * columnCount) {
        const int at = static_cast<int>(fields_.size());
        fields_.push_back(std::make_unique<Field>(*this, at / columnCount, at % columnCount));
        fields_.back()->Create(WS_CHILD | WS_TABSTOP, CRect(0, 0, 10, 10), this,
                               firstField + static_cast<unsigned>(at));
        shown_.emplace_back();
    }
    for (int at = 0; at < static_cast<int>(fields_.size()); ++at) {
        const int line = at / columnCount;
        const int column = at % columnCount;
        const int seen = line < lines_ && column < table_.columns();
        if (seen)
            field(line, column)->MoveWindow(fieldRect(line, column));
        field(line, column)->ShowWindow(seen ? SW_SHOW : SW_HIDE);
    }
    SetScrollRange(SB_VERT, 0, std::max(0, rows - 1), std::max(1, lines_));
    SetScrollPos(SB_VERT, firstRow_);
    ShowScrollBar(SB_VERT, rows > lines_);
}

void AAreaTableWnd::showTexts()
{
    for (int line = 0; line < lines_; ++line)
        for (int column = 0; column < table_.columns(); ++column) {
            CString& shown = shown_[fieldAt(line, column)];
            shown = table_.text(firstRow_ + line, column);
            if (field(line, column)->GetWindowText() == shown)
                continue;
            field(line, column)->SetWindowText(shown);
            field(line, column)->SetSel(0, 0);  // the leading digits are seen, not the last
        }
}

int AAreaTableWnd::SetText(int row, int column, const CString& text)
{
    if (item_ < 0 || !axis_)
        return 0;
    std::string message;
    VertexTable changed = table_;
    int done = changed.setText(row, column, text, message);
    if (done && !(changed.shape() == table_.shape())) {
        done = axis_->GetTrackers()->SetShape(axis_, item_, changed.shape());
        if (!done)
            message = "The area cannot become that.";
    }
    if (!done)
        AfxMessageBox(message, MB_OK | MB_ICONERROR);
    return done;
}

/// Reads a field that the user has changed; a text that cannot be read gives way to the number.
void AAreaTableWnd::keep(int line, int column)
{
    const auto at = fieldAt(line, column);
    if (keeping_ || item_ < 0 || line >= lines_ || !field(line, column))
        return;
    const CString text = field(line, column)->GetWindowText();
    if (text == shown_[at])
        return;
    const HWND self = GetSafeHwnd();
    keeping_ = 1;
    (void)SetText(firstRow_ + line, column, text);
    if (CWnd::FromHandle(self) != this)
        return;
    keeping_ = 0;
    Refresh();
}

void AAreaTableWnd::goTo(int row, int column)
{
    if (item_ < 0 || row < 0 || row >= table_.rows())
        return;
    if (row < firstRow_)
        scrollTo(row);
    else if (row >= firstRow_ + lines_)
        scrollTo(row - lines_ + 1);
    if (Field* const next = field(row - firstRow_, column)) {
        next->SetFocus();
        next->SetSel(0, -1);
    }
}

/// Keeps a field and goes to the one `step` after it in reading order; past the ends, to the map.
void AAreaTableWnd::leave(int line, int column, int step)
{
    const HWND self = GetSafeHwnd();
    keep(line, column);
    if (CWnd::FromHandle(self) != this || item_ < 0)
        return;
    const int columns = table_.columns();
    const int next = (firstRow_ + line) * columns + column + step;
    if (next >= 0 && next < table_.rows() * columns)
        goTo(next / columns, next % columns);
    else if (axis_)
        axis_->SetFocus();
}

void AAreaTableWnd::Field::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    AAreaTableWnd& table = *table_;
    const int line = line_;
    const int column = column_;
    switch (static_cast<int>(key)) {
    case VK_RETURN:
        table.keep(line, column);
        return;
    case VK_ESCAPE: {
        const CString& shown = table.shown_[fieldAt(line, column)];
        if (GetWindowText() == shown && table.axis_)
            return (void)table.axis_->SetFocus();
        SetWindowText(shown);
        SetSel(0, -1);
        return;
    }
    case VK_TAB:
        return table.leave(line, column, GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
    case VK_UP:
    case VK_DOWN: {
        const int row = table.firstRow_ + line + (static_cast<int>(key) == VK_UP ? -1 : 1);
        const HWND self = table.GetSafeHwnd();
        table.keep(line, column);
        if (CWnd::FromHandle(self) == &table)
            table.goTo(row, column);
        return;
    }
    default:
        CEdit::OnKeyDown(key, repeat, flags);
    }
}

void AAreaTableWnd::scrollTo(int row)
{
    const int rows = item_ >= 0 ? table_.rows() : 0;
    const int first = std::clamp(row, 0, std::max(0, rows - lines_));
    if (first == firstRow_)
        return;
    firstRow_ = first;
    SetScrollPos(SB_VERT, firstRow_);
    showTexts();
    Invalidate();
}

void AAreaTableWnd::OnVScroll(unsigned code, unsigned position)
{
    switch (code) {
    case SB_LINEUP:
        return scrollTo(firstRow_ - 1);
    case SB_LINEDOWN:
        return scrollTo(firstRow_ + 1);
    case SB_PAGEUP:
        return scrollTo(firstRow_ - lines_);
    case SB_PAGEDOWN:
        return scrollTo(firstRow_ + lines_);
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        return scrollTo(static_cast<int>(position));
    default:
        return;
    }
}

int AAreaTableWnd::OnMouseWheel(unsigned, int delta, CPoint)
{
    scrollTo(firstRow_ - 3 * delta / WHEEL_DELTA);
    return 1;
}

int AAreaTableWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id < firstField || id >= firstField + fields_.size())
        return ABWindow::OnCommand(id, code, control);
    const int at = static_cast<int>(id - firstField);
    if (code == EN_KILLFOCUS)
        keep(at / columnCount, at % columnCount);
    return 1;
}

void AAreaTableWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    makeFields();
    showTexts();
}

void AAreaTableWnd::OnDestroy()
{
    keeping_ = 1;  // fields that lose the focus with the window change nothing
    ABWindow::OnDestroy();
}

void AAreaTableWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    dc.FillSolidRect(update, background);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(textColor);
    CFont font;
    LOGFONT wanted;
    wanted.lfHeight = -12;
    wanted.lfFaceName = "Arial";
    font.CreateFontIndirect(wanted);
    dc.SelectObject(&font);
    constexpr unsigned format = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX;
    if (item_ < 0) {
        CRect all(edge, 0, client.right - edge, headHeight);
        dc.DrawText(noArea, all, format);
        return;
    }
    for (int column = 0; column < table_.columns(); ++column) {
        CRect head = fieldRect(0, column);
        head.top = 0;
        head.bottom = headHeight;
        dc.DrawText(table_.columnLabel(column), head, format | DT_CENTER);
    }
    for (int line = 0; line < lines_; ++line) {
        CRect label(edge, headHeight + line * lineHeight, labelWidth - edge,
                    headHeight + (line + 1) * lineHeight);
        dc.DrawText(table_.rowLabel(firstRow_ + line), label, format);
    }
}

}  // namespace pavane

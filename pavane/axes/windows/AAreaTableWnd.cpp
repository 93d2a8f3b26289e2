#include "pavane/axes/windows/AAreaTableWnd.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/TableWatch.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CDC.h"
#include "platform/message.h"
#include "platform/system_colors.h"

#include <iterator>

namespace pavane
{

namespace
{

constexpr int labelCharacters = 17;
constexpr int valueCharacters = 10;  // at least; the columns share what there is
constexpr int rowUnit = 13;          // eighths of a character
constexpr int margin = 4;
constexpr int lineHeight = 24;

}  // namespace

AAreaTableWnd::AAreaTableWnd()
{
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect);
    SetCellHeaderUnit(rowUnit);
    layOutRows();
}

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
    const TableWatch watch(*this);
    const int other = item != item_;
    item_ = item;
    if (other) {
        hasEdits_ = 0;
        setRows(0);  // an editor on the numbers of another area closes
    }
    if (watch.gone())
        return;
    layOutRows();
    if (watch.gone())
        return;
    if (other)
        ReConstruct({1, 1, 1, 1});
    else
        SetUpWindow();
    if (watch.gone())
        return;
    if (other)
        (void)tableVScrollTrack(1);
    Invalidate();
}

void AAreaTableWnd::layOutRows()
{
    const TableWatch watch(*this);
    const int values = item_ >= 0 ? table_.columns() : 1;
    if (columns() != values) {
        // every cell can be edited: marks would only take the room of digits
        constexpr std::uint16_t flags = colChars | colEdit | colNoGlyph | colStretch;
        ATableColumn columns[] = {
            {labelCharacters, colChars}, {valueCharacters, flags}, {valueCharacters, flags}};
        setColumnPar(columns, 1 + values);
    }
    if (!watch.gone())
        setRows(item_ >= 0 ? table_.rows() : 0);
}

CString AAreaTableWnd::hdrCellAsStr(int row, int column, void*)
{
    if (item_ < 0 || (row == 0 && column == 0))
        return {};
    return row == 0 ? table_.columnLabel(column - 1) : table_.rowLabel(row - 1);
}

CString AAreaTableWnd::cellAsStr(int row, int column, void*)
{
    if (item_ < 0)
        return {};
    return (edits_ ? edited_ : table_).text(row - 1, column - 1);
}

int AAreaTableWnd::SetText(int row, int column, const CString& text)
{
    std::string message;
    if (take(row, column, text, message))
        return 1;
    if (!message.empty())
        AfxMessageBox(message, MB_OK | MB_ICONERROR);
    return 0;
}

int AAreaTableWnd::setCellStr(int row, int column, const CString& text)
{
    return leaving_ || SetText(row - 1, column - 1, text);
}

int AAreaTableWnd::pasteCell(int row, int column, const CString& text)
{
    std::string ignored;  // whoever pastes counts what is refused
    return take(row - 1, column - 1, text, ignored);
}

/// Between beginEdits and endEdits the area waits, so that a polygon is not made anew for each
/// number.
int AAreaTableWnd::take(int row, int column, const CString& text, std::string& message)
{
    if (item_ < 0 || !axis_)
        return 0;
    if (edits_) {
        const int taken = edited_.setText(row, column, text, message);
        hasEdits_ |= taken;
        return taken;
    }
    VertexTable changed = table_;
    if (!changed.setText(row, column, text, message))
        return 0;
    if (changeArea(changed, {}))
        return 1;
    message = areaCannotBeThat;
    return 0;
}

/// The area becomes what the table says; one step of undo, with the collection's own label where
/// there is none. What the collection made of it is shown.
int AAreaTableWnd::changeArea(const VertexTable& changed, const CString& label)
{
    if (changed.shape() == table_.shape())
        return 1;
    const TableWatch watch(*this);
    ATrackerArrayInAxis* const areas = axis_->GetTrackers();
    if (!label.empty())
        areas->BeginEdits(label);
    const int done = areas->SetShape(axis_, item_, changed.shape());
    if (watch.gone())
        return done;
    if (!label.empty())
        areas->EndEdits(axis_);
    if (!watch.gone())
        Refresh();
    return done;
}

void AAreaTableWnd::beginEdits(const CString& label)
{
    if (edits_++)
        return;
    edited_ = table_;
    label_ = label;
    hasEdits_ = 0;
}

void AAreaTableWnd::endEdits()
{
    if (edits_ == 0 || --edits_ || !hasEdits_ || item_ < 0 || !axis_)
        return;
    const TableWatch watch(*this);
    if (!changeArea(edited_, label_) && !watch.gone()) {
        Refresh();
        AfxMessageBox(areaCannotBeThat, MB_OK | MB_ICONERROR);
    }
}

int AAreaTableWnd::canUndo() { return axis_ && axis_->GetTrackers()->CanUndo(); }
int AAreaTableWnd::canRedo() { return axis_ && axis_->GetTrackers()->CanRedo(); }
int AAreaTableWnd::Undo() { return walkHistory(0); }
int AAreaTableWnd::Redo() { return walkHistory(1); }

CString AAreaTableWnd::undoLabel()
{
    return axis_ ? CString(axis_->GetTrackers()->history().undoLabel()) : CString();
}

CString AAreaTableWnd::redoLabel()
{
    return axis_ ? CString(axis_->GetTrackers()->history().redoLabel()) : CString();
}

int AAreaTableWnd::walkHistory(int forward)
{
    const TableWatch watch(*this);
    if (!axis_ || !hideEditors() || watch.gone())
        return 0;
    ATrackerArrayInAxis* const areas = axis_->GetTrackers();
    const int done = forward ? areas->Redo(axis_) : areas->Undo(axis_);
    if (!watch.gone())
        Refresh();
    return done;
}

void AAreaTableWnd::kbTab(int count, int shift)
{
    const ASelectRect at = getSelectRect();
    const int atEnd =
        rows() == 0 || (shift ? at.anchorRow <= 1 && at.anchorColumn <= 1
                              : at.anchorRow >= rows() && at.anchorColumn >= columns());
    if (!atEnd || !axis_)
        return ATableWnd::kbTab(count, shift);
    const TableWatch watch(*this);
    if (hideEditors() && !watch.gone())
        axis_->SetFocus();
}

void AAreaTableWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    if (key == VK_ESCAPE && axis_)
        return (void)axis_->SetFocus();
    ATableWnd::OnKeyDown(key, repeat, flags);
}

/// Digits, and whatever else begins a text, are no keys of menus here.
unsigned AAreaTableWnd::OnGetDlgCode() { return DLGC_WANTALLKEYS | DLGC_WANTCHARS; }

/// What is still in an editor when the window goes changes nothing: the areas may be gone.
void AAreaTableWnd::OnDestroy()
{
    const TableWatch watch(*this);
    leaving_ = 1;
    ATableWnd::OnDestroy();
    if (!watch.gone())
        leaving_ = 0;
}

void AAreaTableWnd::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column > 0);
}

void AAreaTableWnd::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), 1);
}

void AAreaTableWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    if (item_ >= 0)
        return ATableWnd::DrawWindow(dc, client, update);
    dc.FillSolidRect(update, GetWindowBkColor());
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
    CFont font = GetFont();
    dc.SelectObject(&font);
    CRect line(margin, 0, client.right - margin, lineHeight);
    dc.DrawText(noAreaText, line, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

}  // namespace pavane

#include "pavane/tables/ATableWnd.h"

#include "pavane/tables/table_editors.h"
#include "pavane/tables/TableWatch.h"
#include "platform/accessibility.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned editId = 1001;
constexpr unsigned comboId = 1002;
constexpr int longestEdit = 128;  // characters
constexpr int listHeight = 200;   // below the cell, most
constexpr int listFrame = 5;      // what of the height of a row the frame of a list takes

/// Bytes of the first `characters` characters of a text.
std::size_t prefix(const CString& text, int characters)
{
    std::size_t at = 0;
    for (int n = 0; at < text.size(); ++at)
        if ((text[at] & 0xC0) != 0x80 && n++ == characters)
            break;
    return at;
}

/// The places of editors on a cell, which may lie farther away than windows can.
CRect nearRect(const CRect& cell)
{
    static constexpr int farthest = 1 << 23;
    const auto cut = [](int at) { return std::clamp(at, -farthest, farthest); };
    return {cut(cell.left), cut(cell.top), cut(cell.right), cut(cell.bottom)};
}
CRect fieldRect(const CRect& cell)
{
    const CRect rect = nearRect(cell);
    return {rect.left, rect.top, rect.right - 1, rect.bottom - 1};
}
CRect listRect(const CRect& cell)
{
    const CRect rect = nearRect(cell);
    return {rect.left, rect.top - 1, rect.right - 1, rect.bottom + listHeight};
}

}  // namespace

int ATableWnd::isComboEnabled(int row, int column)
{
    // paints ask it too, also while another of these hooks shows a box
    const int outer = std::exchange(baseRan_, 0);
    const TableWatch watch(*this);
    const int enabled = isEnableAutoComboBox(row, column);
    if (watch.gone())
        return 0;
    return std::exchange(baseRan_, outer) || enabled;
}

/// Whether one of the editors would open on a data cell.
int ATableWnd::canEdit(int row, int column)
{
    const TableWatch watch(*this);
    if (!grid_.extent().contains({row, column}))
        return 0;
    if ((grid_.columns().flags(column) & colEdit) && isEnableAutoEdit(row, column))
        return !watch.gone();
    return !watch.gone() && (grid_.columns().flags(column) & colCombo) &&
           isComboEnabled(row, column);
}

int ATableWnd::showAuto(int row, int column)
{
    const TableWatch watch(*this);
    if (showEdit(row, column))
        return 1;
    return !watch.gone() && showCombo(row, column);
}

int ATableWnd::showEdit(int row, int column)
{
    const TableWatch watch(*this);
    const TableCell cell{row, column};
    const auto allowed = [&] {
        return !watch.gone() && grid_.extent().contains(cell) &&
               (grid_.columns().flags(column) & colEdit);
    };
    if (!GetSafeHwnd() || !allowed() || !isEnableAutoEdit(row, column) || !allowed())
        return 0;
    if (edit_)
        return (void)hideEdit(), 0;
    if (!hideCombo() || !allowed())
        return 0;
    const CString text = strCell(row, column);
    const CString title = watch.gone() ? CString() : cellTitle(row, column);
    if (!allowed() || edit_ || !showCell(cell) || !allowed())
        return 0;
    forgetClosed();
    const CRect rect = fieldRect(grid_.cellRect(row, column));
    // no paint between here and the editor that covers the cell
    setOpt(optSkipPaint, 1);
    opening_ = 1;
    edit_ = std::make_unique<ATableEdit>(*this, cell);
    ATableEdit& edit = *edit_;
    if (!edit.Create(WS_CHILD | WS_VISIBLE, rect, this, editId))
        return edit_.reset(), endOpening(), 0;
    SetAccessName(edit.GetSafeHwnd(), title);
    edit.SetFont(tableFont());
    const bool tooLong = prefix(text, longestEdit) < text.size();
    edit.LimitText(tooLong ? 0 : longestEdit);
    edit.SetWindowText(text);
    if (tooLong)
        edit.keepText();  // stored, it would be cut
    edit.SetSel(0, -1);
    edit.SetModify(0);
    edit.SetFocus();
    if (watch.gone())
        return 0;
    endOpening();
    return edit_ != nullptr;
}

/// Paints may come again; what was put off is invalid.
void ATableWnd::endOpening()
{
    opening_ = 0;
    setOpt(optSkipPaint, 0);
    InvalidateRect(skipped_);
    skipped_.SetRectEmpty();
}

int ATableWnd::showCombo(int row, int column)
{
    const TableWatch watch(*this);
    const TableCell cell{row, column};
    const auto allowed = [&] {
        return !watch.gone() && grid_.extent().contains(cell) &&
               (grid_.columns().flags(column) & colCombo);
    };
    if (!GetSafeHwnd() || !allowed() || !isComboEnabled(row, column) || !allowed())
        return 0;
    if (combo_)
        return (void)hideCombo(), 0;
    if (!hideEdit() || !allowed())
        return 0;
    const CString title = cellTitle(row, column);
    if (!allowed() || !showCell(cell) || !allowed())
        return 0;
    forgetClosed();
    const CRect rect = listRect(grid_.cellRect(row, column));
    combo_ = std::make_unique<ATableCombo>(*this, cell);
    ATableCombo* const list = combo_.get();
    if (!list->Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST, rect, this, comboId))
        return combo_.reset(), 0;
    SetAccessName(list->GetSafeHwnd(), title);
    list->SetFont(tableFont());
    (void)list->SetItemHeight(-1, std::max(grid_.rowHeight() - listFrame, 1));
    baseRan_ = 0;
    const int chosen = FillComboBox(list, row, column);
    if (watch.gone() || combo_.get() != list)
        return 0;
    (void)list->SetCurSel(baseRan_ ? -1 : chosen);
    list->SetFocus();
    return !watch.gone() && combo_ != nullptr;
}

int ATableWnd::hideEdit()
{
    if (!edit_)
        return 1;
    if (storing_)
        return 0;  // a hook that stores it leads here again
    ATableEdit* const edit = edit_.get();
    if (edit->GetModify()) {
        const TableWatch watch(*this);
        CString text = edit->GetWindowText();
        text.resize(prefix(text, longestEdit));
        storing_ = 1;
        const TableCell cell = edit->cell();
        const int taken = storeAsStep("Edit of ", cell.row, cell.column,
                                      [&] { return setCellStr(cell.row, cell.column, text); });
        if (watch.gone())
            return 0;
        storing_ = 0;
        if (edit_.get() != edit)
            return 1;
        if (!taken) {
            edit->SetModify(1);
            if (closing_)
                return 0;
            edit->SetFocus();
            if (!watch.gone() && edit_.get() == edit)
                edit->SetSel(0, -1);
            return 0;
        }
    }
    const TableWatch watch(*this);
    closeEditor(std::move(edit_));
    return !watch.gone();
}

int ATableWnd::hideCombo()
{
    if (!combo_)
        return 1;
    if (storing_)
        return 0;
    ATableCombo* const list = combo_.get();
    const TableWatch watch(*this);
    storing_ = 1;
    const TableCell cell = list->cell();
    const int taken = storeAsStep("Edit of ", cell.row, cell.column, [&] {
        baseRan_ = 0;
        const int chosen = getFromComboBox(list, cell.row, cell.column);
        return !watch.gone() && (chosen || baseRan_);
    });
    if (watch.gone())
        return 0;
    storing_ = 0;
    if (combo_.get() != list)
        return 1;
    if (!taken) {
        if (!closing_)
            list->SetFocus();
        return 0;
    }
    closeEditor(std::move(combo_));
    return !watch.gone();
}

/// Takes an editor down. It may be on the stack, so the object stays until the next one opens.
void ATableWnd::closeEditor(std::unique_ptr<CWnd> editor)
{
    const TableWatch watch(*this);
    CWnd* const window = editor.get();
    closed_.push_back(std::move(editor));
    if (!closing_ && GetFocus() == window)
        SetFocus();
    if (watch.gone())
        return;
    (void)window->DestroyWindow();
    if (!watch.gone() && !closing_)
        UpdateWindow();
}

void ATableWnd::forgetClosed()
{
    if (!keyFromEditor_ && !storing_)
        closed_.clear();
}

/// Closes editors without storing.
void ATableWnd::dropEditors()
{
    const TableWatch watch(*this);
    if (edit_)
        closeEditor(std::move(edit_));
    if (!watch.gone() && combo_)
        closeEditor(std::move(combo_));
}

/// Keeps editors on their cells; one whose cell is gone closes, and what was typed goes with it.
void ATableWnd::moveEditors()
{
    const TableWatch watch(*this);
    if (edit_ && !grid_.extent().contains(edit_->cell()))
        closeEditor(std::move(edit_));
    if (!watch.gone() && combo_ && !grid_.extent().contains(combo_->cell()))
        closeEditor(std::move(combo_));
    if (watch.gone())
        return;
    if (edit_)
        edit_->MoveWindow(fieldRect(grid_.cellRect(edit_->cell().row, edit_->cell().column)));
    if (combo_)
        combo_->MoveWindow(listRect(grid_.cellRect(combo_->cell().row, combo_->cell().column)));
}

/// The field lost the focus to another window; a refused value takes it back.
void ATableWnd::editorLostFocus()
{
    if (!storing_ && !closing_)
        (void)hideEdit();
}

void ATableWnd::OnHideCombo()
{
    if (!storing_ && !closing_)
        (void)hideCombo();
}

/// Handles a key that was pressed in an editor as the table's own.
void ATableWnd::keyFromEditor(unsigned key, unsigned repeat)
{
    const TableWatch watch(*this);
    keyFromEditor_ = 1;
    (void)SendMessage(WM_KEYDOWN, key, static_cast<LPARAM>(repeat));
    if (!watch.gone())
        keyFromEditor_ = 0;
}

void ATableWnd::OnSetFocus(CWnd* old)
{
    const TableWatch watch(*this);
    InvalidateRect(cellRect(selection_.anchorRow, selection_.anchorColumn));
    if (grid_.extent().contains({selection_.anchorRow, selection_.anchorColumn}))
        tellAccess(EVENT_OBJECT_FOCUS, {selection_.anchorRow, selection_.anchorColumn});
    if (!watch.gone())
        ABWindow::OnSetFocus(old);
}

void ATableWnd::OnKillFocus(CWnd* next)
{
    InvalidateRect(cellRect(selection_.anchorRow, selection_.anchorColumn));
    ABWindow::OnKillFocus(next);
}

}  // namespace pavane

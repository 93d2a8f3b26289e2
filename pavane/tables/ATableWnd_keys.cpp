#include "pavane/tables/ATableWnd.h"

#include "pavane/tables/ColumnSizer.h"
#include "pavane/tables/table_editors.h"
#include "pavane/tables/TableTasks.h"
#include "pavane/tables/TableWatch.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <algorithm>
#include <limits>

namespace pavane
{

namespace
{

constexpr unsigned deleteCharacter = 127;
constexpr unsigned firstCharacter = 32;

int held(int key) { return GetKeyState(key) < 0; }

CString utf8(unsigned c)
{
    const auto byte = [](unsigned value) { return static_cast<char>(value); };
    if (c < 0x80)
        return {byte(c)};
    if (c < 0x800)
        return {byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F))};
    if (c < 0x10000)
        return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F))};
    return {byte(0xF0 | (c >> 18 & 7)), byte(0x80 | (c >> 12 & 0x3F)), byte(0x80 | (c >> 6 & 0x3F)),
            byte(0x80 | (c & 0x3F))};
}

}  // namespace

void ATableWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const TableWatch watch(*this);
    const int count = static_cast<int>(
        std::min<unsigned>(repeat, static_cast<unsigned>(std::numeric_limits<int>::max())));
    const int shift = held(VK_SHIFT);
    const int control = held(VK_CONTROL);
    const int fromEditor = keyFromEditor_;
    tasks_->hush();
    if (watch.gone())
        return;
    switch (key) {
    case VK_ESCAPE:
        if (sizer_->cancel() || watch.gone() || tasks_->cancel())
            return;  // no dialog ends by it
        for (CWnd* above = GetParent(); above; above = above->GetParent())
            if (above->IsDialog())
                return (void)above->PostMessage(WM_COMMAND, IDCANCEL);
        break;
    case VK_TAB:
        kbTab(count, shift);
        break;
    case VK_RETURN:
        kbEnter(count, 0);
        break;
    case VK_PRIOR:
        kbPgUp(count, shift);
        break;
    case VK_NEXT:
        kbPgDown(count, shift);
        break;
    case VK_HOME:
        control ? kbCtrlHome(count, shift) : kbHome(count, shift);
        break;
    case VK_END:
        control ? kbCtrlEnd(count, shift) : kbEnd(count, shift);
        break;
    case VK_LEFT:
        kbLeft(count, shift);
        break;
    case VK_RIGHT:
        kbRight(count, shift);
        break;
    case VK_UP:
        kbUp(count, shift);
        break;
    case VK_DOWN:
        kbDown(count, shift);
        break;
    default:
        if (const TableCommand* const command =
                tableCommandOfKey(static_cast<int>(key), shift, control);
            command && !held(VK_MENU))
            (void)RunTableCommand(command->id);
        break;
    }
    // a Tab that stored a cell of a dialog stays in the table
    if (!watch.gone() && !fromEditor)
        ABWindow::OnKeyDown(key, repeat, flags);
}

void ATableWnd::OnChar(unsigned character, unsigned repeat, unsigned flags)
{
    const TableWatch watch(*this);
    const bool types = character >= firstCharacter && character != deleteCharacter &&
                       character <= 0x10FFFF && !held(VK_CONTROL) && !held(VK_MENU);
    const auto opens = [&] {
        const TableCell cell =
            nearestCell({selection_.anchorRow, selection_.anchorColumn}, grid_.extent());
        return showAuto(cell.row, cell.column);
    };
    if (types && hideEditors() && !watch.gone() && !grid_.extent().empty() && opens()) {
        const CString text = utf8(character);
        if (edit_ && !edit_->keepsText()) {
            edit_->SetWindowText(text);
            edit_->SetSel(1, 1);
            edit_->SetModify(1);
        }
        if (combo_)
            (void)combo_->SelectString(-1, text);
    }
    if (!watch.gone())
        ABWindow::OnChar(character, repeat, flags);
}

/// The way of every key that moves: store what is being edited, move the anchor, ask, show.
void ATableWnd::moveFocus(TableMove move, int count, int shift)
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || grid_.extent().empty())
        return;
    const CRect all = client();
    const MoveSpace space{grid_.extent(), grid_.pageRows(all), grid_.pageColumns(all)};
    const int extend = shift && isOptSet(optRangeSelect);
    const ASelectRect to = movedSelection(selection_, move, count, extend, space);
    (void)takeSelection(to, {to.anchorRow, to.anchorColumn});
}

void ATableWnd::kbUp(int count, int shift) { moveFocus(TableMove::up, count, shift); }
void ATableWnd::kbDown(int count, int shift) { moveFocus(TableMove::down, count, shift); }
void ATableWnd::kbLeft(int count, int shift) { moveFocus(TableMove::left, count, shift); }
void ATableWnd::kbRight(int count, int shift) { moveFocus(TableMove::right, count, shift); }
void ATableWnd::kbPgUp(int count, int shift) { moveFocus(TableMove::pageUp, count, shift); }
void ATableWnd::kbPgDown(int count, int shift) { moveFocus(TableMove::pageDown, count, shift); }
void ATableWnd::kbPgLeft(int count, int shift) { moveFocus(TableMove::pageLeft, count, shift); }
void ATableWnd::kbPgRight(int count, int shift) { moveFocus(TableMove::pageRight, count, shift); }
void ATableWnd::kbNext(int count, int shift) { moveFocus(TableMove::next, count, shift); }
void ATableWnd::kbPrev(int count, int shift) { moveFocus(TableMove::previous, count, shift); }
void ATableWnd::kbHome(int count, int shift) { moveFocus(TableMove::rowStart, count, shift); }
void ATableWnd::kbEnd(int count, int shift) { moveFocus(TableMove::rowEnd, count, shift); }
void ATableWnd::kbCtrlHome(int count, int shift) { moveFocus(TableMove::tableStart, count, shift); }
void ATableWnd::kbCtrlEnd(int count, int shift) { moveFocus(TableMove::tableEnd, count, shift); }

/// From an editor it goes on to the next row; else it activates the focus cell.
void ATableWnd::kbEnter(int count, int)
{
    if (keyFromEditor_)
        return kbDown(count, 0);
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || grid_.extent().empty())
        return;
    const TableCell cell =
        nearestCell({selection_.anchorRow, selection_.anchorColumn}, grid_.extent());
    if (!showAuto(cell.row, cell.column) && !watch.gone() && grid_.extent().contains(cell))
        changeCell(cell.row, cell.column);
}

/// In a dialog Tab goes to the next control, unless it comes from an editor: then it goes from
/// one cell that can be edited to the next.
void ATableWnd::kbTab(int count, int shift)
{
    const CWnd* const parent = GetParent();
    const bool inDialog = parent && parent->IsDialog();
    if (inDialog && keyFromEditor_)
        return goToNextEditor(shift);
    if (inDialog)
        return;
    if (shift)
        kbPrev(count, 0);
    else
        kbNext(count, 0);
}

void ATableWnd::goToNextEditor(int back)
{
    // cells that are asked for; a table whose hooks refuse everything ends there
    constexpr int farthest = 4096;
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || !mayHoldEditable(1, grid_.extent().lastColumn))
        return;
    ASelectRect at = selection_;
    for (int asked = 0; asked < farthest && !grid_.extent().empty();) {
        const ASelectRect next = movedSelection(at, back ? TableMove::previous : TableMove::next, 1,
                                                0, {grid_.extent(), 1, 1});
        const TableCell cell{next.anchorRow, next.anchorColumn};
        if (cell == TableCell{at.anchorRow, at.anchorColumn})
            return;  // the end of the table
        at = next;
        if (!mayHoldEditable(cell.column, cell.column))
            continue;
        ++asked;
        const int can = canEdit(cell.row, cell.column);
        if (watch.gone() || grid_.extent().empty())
            return;
        if (!can)
            continue;
        if (takeSelection(next, cell) && selection_ == next)
            (void)showAuto(cell.row, cell.column);
        return;
    }
}

}  // namespace pavane

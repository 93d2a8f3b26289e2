#include "pavane/resources/mark_commands.h"
#include "pavane/tables/observation/AMarkTable.h"
#include "pavane/tables/observation/mark_box.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CMenu.h"

namespace pavane
{

namespace
{

/// In the flags of a key: it was held before, so that this is a repetition.
constexpr unsigned heldBefore = 0x4000;
/// A press so near to the edge of a column is for its width.
constexpr int edgeReach = 4;

const TableCommand* markCommandOfKey(unsigned key)
{
    if (GetKeyState(VK_MENU) < 0)
        return nullptr;
    const int held = (GetKeyState(VK_CONTROL) < 0 ? tableControl : 0) |
                     (GetKeyState(VK_SHIFT) < 0 ? tableShift : 0);
    for (const TableCommand& command : markCommands)
        if (command.key == static_cast<int>(key) && command.held == held)
            return &command;
    return nullptr;
}

}  // namespace

/// The item whose box is under a point, -1 for none.
int AMarkTable::boxAt(CPoint point) const
{
    const TableCell cell = grid().cellAt(point);
    const CRect rect = cellRect(cell.row, cell.column);
    // beyond the cells the last ones count
    if (!rect.PtInRect(point) || !hasBox(cell.row, cell.column) ||
        (isOptSet(optSizeColumns) && grid().edgeAt(point, edgeReach) >= 0))
        return -1;
    const int inMiddle = cell.row > 0 && cell.column > 0;
    CRect box = markBox(rect, inMiddle);
    box.InflateRect(box.Width() / 4, rect.Height());
    return inMiddle || box.PtInRect(point) ? itemOf(cell.row, cell.column) : -1;
}

void AMarkTable::OnLButtonDown(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    const int item = boxAt(point);
    ATableWnd::OnLButtonDown(flags, point);
    // without the focus a refused value is still being edited
    if (!watch.gone() && item >= 0 && !(flags & (MK_SHIFT | MK_CONTROL)) && hasFocus())
        (void)ToggleMark(item);
}

/// The second press of two fast clicks on a box. Deliberate: on the box of a column both are one
/// double click, which marks once, as it does beside the box.
void AMarkTable::OnLButtonDblClk(unsigned flags, CPoint point)
{
    const int item = boxAt(point);
    if (item < 0)
        return ATableWnd::OnLButtonDblClk(flags, point);
    const TableWatch watch(*this);
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the table is passed over
    ABWindow::OnLButtonDblClk(flags, point);
    if (!watch.gone() && items_ == MarkItems::rows && hasFocus())
        (void)ToggleMark(item);
}

void AMarkTable::changeHeader(int row, int column)
{
    if (items_ == MarkItems::columns ? row == 0 : column == 0 && row > 0)
        (void)ToggleMark(itemOf(row, column));
}

void AMarkTable::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const TableCommand* const command = markCommandOfKey(key);
    if (!command || items_ == MarkItems::none)
        return ATableWnd::OnKeyDown(key, repeat, flags);
    const TableWatch watch(*this);
    if (!(flags & heldBefore))
        (void)RunTableCommand(command->id);
    if (!watch.gone())
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): the table is passed over
        ABWindow::OnKeyDown(key, repeat, flags);
}

void AMarkTable::OnChar(unsigned character, unsigned repeat, unsigned flags)
{
    if (character == ' ')
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): the table is passed over
        return ABWindow::OnChar(character, repeat, flags);
    ATableWnd::OnChar(character, repeat, flags);
}

// --- commands

int AMarkTable::GetMenuID()
{
    return items_ == MarkItems::none ? ATableWnd::GetMenuID() : static_cast<int>(IDR_MARK_MENU);
}

void AMarkTable::amMenuParse(CMenu* popup)
{
    const TableWatch watch(*this);
    ATableWnd::amMenuParse(popup);
    for (const TableCommand& command : markCommands) {
        if (watch.gone())
            return;
        const int can = markCount() > 0 && isTime(command.when);
        (void)popup->EnableMenuItem(command.id, can ? MF_ENABLED : MF_GRAYED);
    }
}

int AMarkTable::RunTableCommand(unsigned id)
{
    switch (id) {
    case ID_MARK_SELECTED:
        return (void)cmMark(), 1;
    case ID_MARK_ALL:
        return (void)cmMarkAll(), 1;
    case ID_MARK_NONE:
        return (void)cmMarkNone(), 1;
    case ID_MARK_INVERT:
        return (void)cmInvertMarks(), 1;
    default:
        return ATableWnd::RunTableCommand(id);
    }
}

}  // namespace pavane

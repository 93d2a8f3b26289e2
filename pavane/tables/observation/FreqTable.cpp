#include "pavane/tables/observation/FreqTable.h"

#include "pavane/tables/freq/group_look.h"
#include "pavane/tables/observation/AFreqGroupFixedStepDlg.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CMenu.h"
#include "platform/message.h"
#include "platform/system_colors.h"

namespace pavane
{

namespace
{

constexpr double readable = 4.5;

const FreqCommand* freqCommandOfKey(unsigned key)
{
    if (GetKeyState(VK_MENU) < 0)
        return nullptr;
    const int held = (GetKeyState(VK_CONTROL) < 0 ? tableControl : 0) |
                     (GetKeyState(VK_SHIFT) < 0 ? tableShift : 0);
    for (const FreqCommand& command : freqCommands)
        if (command.key == static_cast<int>(key) && command.held == held)
            return &command;
    return nullptr;
}

/// Half of one colour and half of the other.
COLORREF between(COLORREF a, COLORREF b)
{
    return RGB((GetRValue(a) + GetRValue(b)) / 2, (GetGValue(a) + GetGValue(b)) / 2,
               (GetBValue(a) + GetBValue(b)) / 2);
}

}  // namespace

FreqTable::FreqTable(MarkItems items)
    : AMarkTable(items), steps_(std::make_shared<FreqGroupSteps>())
{
    steps_->addView(this);
}

FreqTable::~FreqTable() { steps_->removeView(this); }

void FreqTable::UseSteps(const std::shared_ptr<FreqGroupSteps>& steps)
{
    steps_->removeView(this);
    steps_ = steps;
    steps_->addView(this);
    GroupsChanged({1, 1, 1, 1, 0, -1, 0});
}

// --- colours

COLORREF FreqTable::GetGroupBkColor(int group)
{
    // that of the desktop, or of paper while it prints
    const COLORREF window = ATableWnd::GetCellBkColor(1, 1, 0);
    if (window != window_)
        dark_ = ContrastRatio(window, RGB(255, 255, 255)) > ContrastRatio(window, 0);
    window_ = window;
    return group < 0 ? window : groupColor(group, dark_);
}

COLORREF FreqTable::GetGroupTextColor(int group)
{
    const COLORREF ground = GetGroupBkColor(group);
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    constexpr COLORREF white = RGB(255, 255, 255);
    return ContrastRatio(text, ground) >= readable                    ? text
           : ContrastRatio(0, ground) >= ContrastRatio(white, ground) ? 0
                                                                      : white;
}

COLORREF FreqTable::GetCellBkColor(int row, int column, int state)
{
    const int group = groupOfCell(row, column);
    if (group < 0)
        return AMarkTable::GetCellBkColor(row, column, state);
    const COLORREF ground = GetGroupBkColor(group);
    return (state & 2) && !isOptSet(optNoSelColor) ? between(ground, GetSysColor(COLOR_HIGHLIGHT))
                                                   : ground;
}

// --- commands

ABitArray FreqTable::selectedGroups()
{
    ABitArray groups(steps_->groups() ? steps_->groups()->count() : 0);
    const CellRange cells = selectedCells(getSelectRect(), grid().extent());
    if (cells.empty())
        return groups;
    // a column of IFs shows one group, or a row of the list
    if (markItems() == MarkItems::columns)
        for (int c = cells.firstColumn; c <= cells.lastColumn; ++c)
            groups.set(groupOfCell(cells.firstRow, c));
    else
        for (std::int64_t r = cells.firstRow; r <= cells.lastRow; ++r)
            groups.set(groupOfCell(static_cast<int>(r), cells.firstColumn));
    return groups;
}

int FreqTable::isTimeOf(FreqWhen when)
{
    const int groups = steps_->groups() ? steps_->groups()->count() : 0;
    switch (when) {
    case FreqWhen::hasMarks:
        return steps_->edit().marked().ones() > 0;
    case FreqWhen::hasGroup:
        return selectedGroups().firstOne() >= 0;
    case FreqWhen::hasGroups:
        return groups > 0;
    case FreqWhen::hasIfs:
        return steps_->ifCount() > 0;
    case FreqWhen::severalIfs:
        return steps_->ifCount() > 1;
    }
    return 0;
}

void FreqTable::amMenuParse(CMenu* popup)
{
    AMarkTable::amMenuParse(popup);
    for (const FreqCommand& command : freqCommands)
        (void)popup->EnableMenuItem(command.id, isTimeOf(command.when) ? MF_ENABLED : MF_GRAYED);
}

int FreqTable::addMarked()
{
    const auto steps = steps_;
    FreqGroupEdit::Fault fault = FreqGroupEdit::Fault::none;
    const int last = steps->add(fault);
    if (fault == FreqGroupEdit::Fault::notNeighbours)
        AfxMessageBox(notNeighboursText, MB_OK | MB_ICONWARNING);
    return last;
}

void FreqTable::OnAddGroup() { (void)addMarked(); }

void FreqTable::OnDeleteGroup()
{
    if (const ABitArray groups = selectedGroups(); groups.firstOne() >= 0)
        (void)steps_->remove(groups);
}

void FreqTable::OnDeleteAllGroup() { (void)steps_->removeAll(); }

void FreqTable::OnAllInOne() { (void)steps_->allInOne(); }

void FreqTable::OnFixedStepGroup()
{
    if (!isTimeOf(FreqWhen::hasIfs))
        return;
    const auto steps = steps_;
    AFreqGroupFixedStepDlg dialog(steps->ifCount(), this);
    if (dialog.DoModal() == IDOK)
        steps->fixedStep(dialog.step());
}

int FreqTable::RunTableCommand(unsigned id)
{
    switch (id) {
    case ID_FREQ_ADD_GROUP:
        return OnAddGroup(), 1;
    case ID_FREQ_DELETE_GROUP:
        return OnDeleteGroup(), 1;
    case ID_FREQ_DELETE_ALL:
        return OnDeleteAllGroup(), 1;
    case ID_FREQ_ALL_IN_ONE:
        return OnAllInOne(), 1;
    case ID_FREQ_FIXED_STEP:
        return OnFixedStepGroup(), 1;
    default:
        return AMarkTable::RunTableCommand(id);
    }
}

int FreqTable::Undo() { return steps_->undo(); }
int FreqTable::Redo() { return steps_->redo(); }

// --- input

/// Insert waits for its release, so that one press asks for one group however long it lasts.
void FreqTable::OnKeyUp(unsigned key, unsigned repeat, unsigned flags)
{
    const TableWatch watch(*this);
    if (const FreqCommand* const command = freqCommandOfKey(key);
        command && command->key == VK_INSERT)
        (void)RunTableCommand(command->id);
    if (!watch.gone())
        AMarkTable::OnKeyUp(key, repeat, flags);
}

void FreqTable::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const TableWatch watch(*this);
    const FreqCommand* const command = freqCommandOfKey(key);
    if (!command)
        return AMarkTable::OnKeyDown(key, repeat, flags);
    if (command->key != VK_INSERT)
        (void)RunTableCommand(command->id);
    if (!watch.gone())
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): the table is passed over
        ABWindow::OnKeyDown(key, repeat, flags);
}

void FreqTable::OnSetFocus(CWnd* old)
{
    steps_->setActive(this);
    AMarkTable::OnSetFocus(old);
}

}  // namespace pavane

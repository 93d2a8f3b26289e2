#include "pavane/tables/observation/AFreqGroupTbl.h"

#include "pavane/tables/freq/group_look.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::int16_t headerCharacters = 12;
constexpr std::int16_t cellCharacters = 17;

int at(const std::vector<int>& list, int i)
{
    return i >= 0 && i < static_cast<int>(list.size()) ? list[static_cast<std::size_t>(i)] : -1;
}

}  // namespace

AFreqGroupTbl::AFreqGroupTbl() : FreqTable(MarkItems::columns)
{
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns);
    makeColumns();
}

const char* AFreqGroupTbl::GetWndClassName() { return "AFreqGroupTbl"; }
int AFreqGroupTbl::GetMenuID() { return static_cast<int>(IDR_FREQ_GROUP_MENU); }

void AFreqGroupTbl::makeColumns()
{
    // without IFs one column says that there are none
    const int ifs = steps().ifCount();
    std::vector<ATableColumn> columns(static_cast<std::size_t>(std::max(ifs, 1)) + 1,
                                      ATableColumn{cellCharacters, colChars});
    columns[0].width = headerCharacters;
    setColumnPar(columns.data(), static_cast<long>(columns.size()));
    setRows(steps().groups() ? steps().groups()->FqTbl().channels() : 0);
    AMarkTable::SetMarkCount(ifs);
}

void AFreqGroupTbl::learnGroups()
{
    const auto ifs = static_cast<std::size_t>(steps().ifCount());
    first_.assign(ifs, -1);
    second_.assign(ifs, -1);
    const AFreqGroupArray* const groups = steps().groups();
    for (int g = groups ? groups->count() - 1 : -1; g >= 0; --g)
        for (int i = std::max((*groups)(g).firstOne(), 0); i <= lastOne((*groups)(g)); ++i)
            if (const auto place = static_cast<std::size_t>(i);
                (*groups)(g).get(i) && place < ifs) {
                second_[place] = first_[place];
                first_[place] = g;
            }
}

void AFreqGroupTbl::GroupsChanged(const FreqGroupNews& news)
{
    const TableWatch watch(*this);
    if (news.other) {
        selection_ = 0;
        makeColumns();
        if (watch.gone())
            return;
    }
    if (news.groups)
        learnGroups();
    if (news.marks)
        ABMarkTable::SetMark(steps().edit().marked());
    if (watch.gone())
        return;
    if (news.other)
        ReConstruct(ASelectRect{});
    else if (news.groups)
        Invalidate();
    if (!watch.gone() && news.undone)
        showItem(news.showIf);
}

void AFreqGroupTbl::ChangeFreqID(int selection)
{
    const AFreqGroupArray* const groups = steps().groups();
    if (!groups || selection < 0 || selection >= groups->FqTbl().selectionCount())
        return;
    selection_ = selection;
    Invalidate();
}

// --- marks and groups

/// Marks that a host sets come here only; they are no step of undo.
void AFreqGroupTbl::MarksChanged(int first, int last)
{
    const TableWatch watch(*this);
    if (!(GetMark() == steps().edit().marked()))
        steps().SetMarked(GetMark());
    if (!watch.gone())
        FreqTable::MarksChanged(first, last);
}

int AFreqGroupTbl::takeMarks(const ABitArray& marks, const CString& label)
{
    return steps().mark(marks, label);
}

int AFreqGroupTbl::groupOfCell(int, int column) { return at(first_, column - 1); }

void AFreqGroupTbl::GroupChosen(int group)
{
    const AFreqGroupArray* const groups = steps().groups();
    if (groups && group >= 0 && group < groups->count())
        showItem((*groups)(group).firstOne());
}

void AFreqGroupTbl::sendSelectionChange(ASelectRect& next, ASelectRect& previous)
{
    FreqTable::sendSelectionChange(next, previous);
    steps().chooseGroup(at(first_, next.anchorColumn - 1), this);
}

// --- texts and painting

CString AFreqGroupTbl::groupsText(int ifIndex) const
{
    const AFreqGroupArray* const groups = steps().groups();
    CString text;
    for (int g = 0; groups && g < groups->count(); ++g)
        if ((*groups)(g).get(ifIndex))
            text += (text.empty() ? "Frequency group #" : ", #") + std::to_string(g + 1);
    return text.empty() ? "in no frequency group" : text;
}

CString AFreqGroupTbl::describeItem(int item)
{
    return FreqTable::describeItem(item) + ", " + groupsText(item);
}

CString AFreqGroupTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    const bool isTitle = cell.row == 0 && itemOf(cell.row, cell.column) >= 0;
    return isTitle && cellRect(cell.row, cell.column).PtInRect(point) ? groupsText(cell.column - 1)
                                                                      : FreqTable::OnToolTip(point);
}

CString AFreqGroupTbl::hdrCellAsStr(int row, int column, void*)
{
    const int hasIfs = steps().ifCount() > 0;
    if (row == 0 && column == 0)
        return {};
    if (row == 0)
        return hasIfs ? "IF " + std::to_string(column) + " [MHz]" : "No IF [MHz]";
    return (hasIfs ? "Ch. " : "Freq. ") + std::to_string(row);
}

CString AFreqGroupTbl::cellAsStr(int row, int column, void*)
{
    const AFreqGroupArray* const groups = steps().groups();
    return groups ? megahertzText(groups->FqTbl().frequency(selection_, column - 1, row - 1))
                  : CString();
}

void AFreqGroupTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    const TableWatch watch(*this);
    FreqTable::drawCell(dc, rect, row, column, state);
    if (watch.gone())
        return;
    const int unit = std::max(1, rect.Height() / 20);
    if (const int second = at(second_, column - 1); second >= 0)
        dc.FillSolidRect({rect.left + 3 * unit, rect.top + 3 * unit,
                          rect.left + 3 * unit + rect.Height() / 2, rect.bottom - 3 * unit},
                         GetGroupBkColor(second));
    if (column > 1 && at(first_, column - 1) != at(first_, column - 2))
        dc.FillSolidRect({rect.left, rect.top, rect.left + unit, rect.bottom + 1},
                         dc.GetTextColor());
}

}  // namespace pavane

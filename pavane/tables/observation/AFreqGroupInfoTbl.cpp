#include "pavane/tables/observation/AFreqGroupInfoTbl.h"

#include "pavane/tables/freq/group_look.h"
#include "pavane/tables/observation/freq_list.h"
#include "pavane/tables/TableWatch.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* groupTitles[] = {"Group", "IFs", "Lowest [MHz]", "Highest [MHz]"};

}  // namespace

AFreqGroupInfoTbl::AFreqGroupInfoTbl() : FreqTable(MarkItems::none) { setUpFreqList(*this, 14); }

const char* AFreqGroupInfoTbl::GetWndClassName() { return "AFreqGroupInfoTbl"; }
int AFreqGroupInfoTbl::GetMenuID() { return static_cast<int>(IDR_FREQ_INFO_MENU); }

CString AFreqGroupInfoTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row == 0)
        return column >= 0 && column < freqColumnCount ? groupTitles[column] : "";
    return groupNameText(row - 1);
}

CString AFreqGroupInfoTbl::cellAsStr(int row, int column, void*)
{
    const AFreqGroupArray* const groups = steps().groups();
    if (!groups || row < 1 || row > groups->count())
        return {};
    const ABitArray& group = (*groups)(row - 1);
    return column == ifsColumn
               ? groupRangeText(group)
               : frequencyEndText(groups->FqTbl(), selection_, &group, column == highestColumn);
}

int AFreqGroupInfoTbl::isTextRight(int column) { return column > ifsColumn; }

int AFreqGroupInfoTbl::groupOfCell(int row, int)
{
    return steps().groups() && row <= steps().groups()->count() ? row - 1 : -1;
}

void AFreqGroupInfoTbl::GroupsChanged(const FreqGroupNews& news)
{
    if (!news.groups && !news.other && news.show < 0)
        return;
    if (news.other)
        selection_ = 0;
    const TableWatch watch(*this);
    const int count = steps().groups() ? steps().groups()->count() : 0;
    setRows(count);
    if (watch.gone())
        return;
    ASelectRect selection = getSelectRect();
    const int last = std::max(count, 1);
    selection.anchorRow = std::clamp(selection.anchorRow, 1, last);
    selection.endRow = std::clamp(selection.endRow, 1, last);
    if (news.show >= 0)
        selection = oneCell({std::min(news.show + 1, last), 1});
    ReConstruct(selection);
    if (watch.gone())
        return;
    ASelectRect same = getSelectRect();
    setSelectCell(same, same.anchorRow, same.anchorColumn);
}

void AFreqGroupInfoTbl::GroupChosen(int group)
{
    const ASelectRect now = getSelectRect();
    if (group < 0 || (now.anchorRow == group + 1 && now.endRow == group + 1))
        return;
    const TableWatch watch(*this);
    following_ = 1;
    SetSelectOneCell(group + 1, 1);
    if (!watch.gone())
        following_ = 0;
}

void AFreqGroupInfoTbl::SelectionChosen(int selection)
{
    selection_ = selection;
    Invalidate();
}

void AFreqGroupInfoTbl::sendSelectionChange(ASelectRect& next, ASelectRect& previous)
{
    FreqTable::sendSelectionChange(next, previous);
    if (!following_)
        steps().chooseGroup(groupOfCell(next.anchorRow, 1), this);
}

}  // namespace pavane

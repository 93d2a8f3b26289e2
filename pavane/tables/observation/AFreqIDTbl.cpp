#include "pavane/tables/observation/AFreqIDTbl.h"

#include "pavane/tables/observation/freq_list.h"
#include "pavane/tables/TableWatch.h"

namespace pavane
{

namespace
{

constexpr const char* idTitles[] = {"Frequencies", "IFs", "Lowest [MHz]", "Highest [MHz]"};

}  // namespace

AFreqIDTbl::AFreqIDTbl() : FreqTable(MarkItems::rows) { setUpFreqList(*this, 8); }

const char* AFreqIDTbl::GetWndClassName() { return "AFreqIDTbl"; }

CString AFreqIDTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row == 0)
        return column >= 0 && column < freqColumnCount ? idTitles[column] : "";
    const AFreqGroupArray* const groups = steps().groups();
    if (!groups || row > groups->FqTbl().selectionCount())
        return {};
    const auto place = static_cast<std::size_t>(row) - 1;
    return "Freq. ID " + std::to_string(groups->FqTbl().selections()[place].id);
}

CString AFreqIDTbl::cellAsStr(int row, int column, void*)
{
    const AFreqGroupArray* const groups = steps().groups();
    if (!groups || row < 1 || row > groups->FqTbl().selectionCount())
        return {};
    const AUVXFqTbl& table = groups->FqTbl();
    if (column == ifsColumn)
        return std::to_string(table.selections()[static_cast<std::size_t>(row) - 1].ifs.size());
    return frequencyEndText(table, row - 1, nullptr, column == highestColumn);
}

int AFreqIDTbl::takeMarks(const ABitArray& marks, const CString& label)
{
    return steps().markSelections(marks, label);
}

/// Marks that a host sets come here only; they are no step of undo.
void AFreqIDTbl::MarksChanged(int first, int last)
{
    if (AFreqGroupArray* const groups = steps().groups();
        groups && groups->GetFqIDMark().count() == markCount())
        groups->GetFqIDMark() = GetMark();
    FreqTable::MarksChanged(first, last);
}

void AFreqIDTbl::GroupsChanged(const FreqGroupNews& news)
{
    const TableWatch watch(*this);
    const AFreqGroupArray* const groups = steps().groups();
    if (news.other) {
        const int selections = groups ? groups->FqTbl().selectionCount() : 0;
        setRows(selections);
        AMarkTable::SetMarkCount(selections);
    }
    if (!watch.gone() && news.selections)
        ABMarkTable::SetMark(groups ? groups->GetFqIDMark() : ABitArray());
    if (!watch.gone() && news.other)
        ReConstruct(ASelectRect{});
}

void AFreqIDTbl::sendSelectionChange(ASelectRect& next, ASelectRect& previous)
{
    FreqTable::sendSelectionChange(next, previous);
    steps().chooseSelection(next.anchorRow - 1, this);
}

}  // namespace pavane

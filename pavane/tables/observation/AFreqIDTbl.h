#pragma once

#include "pavane/tables/observation/FreqTable.h"

namespace pavane
{

/// The list of the frequency selections of the data file, by their identifiers. The marked ones
/// are those that the groups are for; the one with the focus is shown in the table of IFs.
class PAVANE_API AFreqIDTbl : public FreqTable
{
public:
    AFreqIDTbl();

    const char* GetWndClassName() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;

protected:
    int groupOfCell(int, int) override { return -1; }
    int takeMarks(const ABitArray& marks, const CString& label) override;
    void MarksChanged(int first, int last) override;
    void GroupsChanged(const FreqGroupNews& news) override;
};

}  // namespace pavane

#pragma once

#include "pavane/tables/observation/FreqTable.h"

namespace pavane
{

/// The list of the frequency groups: the IFs of each and the lowest and highest frequency of their
/// channels. Delete takes the group of the focus away.
class PAVANE_API AFreqGroupInfoTbl : public FreqTable
{
public:
    AFreqGroupInfoTbl();

    const char* GetWndClassName() override;
    int GetMenuID() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int isTextRight(int column) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;

protected:
    int groupOfCell(int row, int column) override;
    void GroupsChanged(const FreqGroupNews& news) override;
    void GroupChosen(int group) override;
    void SelectionChosen(int selection) override;

private:
    int selection_ = 0;  ///< whose frequencies are shown
    int following_ = 0;  ///< the selection follows another table
};

}  // namespace pavane

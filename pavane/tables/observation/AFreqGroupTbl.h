#pragma once

#include "pavane/tables/observation/FreqTable.h"

#include <vector>

namespace pavane
{

/// The table in which IFs are marked and made groups: a column for each IF, a row for each channel,
/// frequencies in MHz. Columns of one group have one colour, and a line stands where the next
/// begins; of an IF in two groups a strip of the cell shows the second.
class PAVANE_API AFreqGroupTbl : public FreqTable
{
public:
    AFreqGroupTbl();

    /// Makes the marked IFs a group in its place. The number of groups less 1; -1 and nothing
    /// changed when none is marked, or when there are gaps between them, of which the user is told.
    int AddFreqGroup() { return addMarked(); }
    /// 0 for a group that does not exist.
    int DeleteFreqGroup(int group) { return steps().remove(group); }
    void DeleteAllFreqGroup() { (void)steps().removeAll(); }
    /// One group of all IFs, when there are several. Non-zero when it was made.
    int AllInOne() { return steps().allInOne(); }
    /// Where a group of these IFs belongs.
    int GetInsertIndex(const ABitArray& bits) const { return steps().edit().GetInsertIndex(bits); }
    /// The first group that holds the IF, -1 when none does.
    int GetGroupNumber(int ifIndex) const { return steps().edit().GetGroupNumber(ifIndex); }
    /// Marks of the IFs that are in a group.
    const ABitArray& GetGrouped() const { return steps().edit().grouped(); }

    /// Shows the frequencies of another frequency selection, counted from 0.
    void ChangeFreqID(int selection);
    int GetFreqID() const { return selection_; }
    /// Sets the mark of an IF, or takes it.
    void ChangeState(int ifIndex) { (void)ToggleMark(ifIndex); }

    const char* GetWndClassName() override;
    int GetMenuID() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;
    /// Its groups, too.
    CString describeItem(int item) override;
    CString OnToolTip(CPoint point) override;

protected:
    int groupOfCell(int row, int column) override;
    int takeMarks(const ABitArray& marks, const CString& label) override;
    void MarksChanged(int first, int last) override;
    void GroupsChanged(const FreqGroupNews& news) override;
    void GroupChosen(int group) override;
    void SelectionChosen(int selection) override { ChangeFreqID(selection); }

private:
    void makeColumns();
    void learnGroups();
    CString groupsText(int ifIndex) const;

    int selection_ = 0;
    std::vector<int> first_;   ///< the first group of each IF, -1 for none
    std::vector<int> second_;  ///< the second one
};

}  // namespace pavane

#pragma once

#include "pavane/tables/freq/AFreqGroupArray.h"
#include "tessel/api.h"

namespace pavane
{

/// What a user does to frequency groups, without a window: marks IFs for the next group, adds and
/// deletes groups. IFs and groups count from 0. The groups are the host's and outlive this.
class PAVANE_API FreqGroupEdit
{
public:
    /// IFs that are in a group of `groups` are grouped, none is marked. Null: nothing to edit.
    void SetParameters(AFreqGroupArray* groups);
    const ABitArray& marked() const { return marked_; }
    const ABitArray& grouped() const { return grouped_; }
    void SetMarked(const ABitArray& marked);

    /// Why the marked IFs make no group; `none` also when nothing is marked.
    enum class Fault { none, notNeighbours };
    /// Makes the marked IFs a group in its place and unmarks them. The number of groups less 1; -1
    /// and nothing changed when none is marked, or when there are gaps between them. `place` is
    /// the index of the new group.
    int AddFreqGroup(int& place, Fault& fault);
    /// Where a group of these IFs belongs: before the first that begins above it.
    int GetInsertIndex(const ABitArray& bits) const;
    /// Non-zero on success, 0 for a group that does not exist. An IF stays grouped that another
    /// group holds.
    /// Deliberate: the marks that go are those of the IFs before the group's own; with other
    /// marks left, the same steps would make other groups.
    int DeleteFreqGroup(int group);
    void DeleteAllFreqGroup();
    /// One group of all IFs, when there are several. Non-zero when it was made.
    int AllInOne();
    /// Groups of `step` IFs, at least 1, from the first on; the last one takes what remains.
    void FixedStep(int step);
    /// The first group that holds the IF, -1 when none does.
    int GetGroupNumber(int ifIndex) const;

private:
    int ifCount() const { return groups_ ? groups_->FqTbl().ifCount() : 0; }
    void dropAll();
    AFreqGroupArray* groups_ = nullptr;  ///< not owned
    ABitArray grouped_;
    ABitArray marked_;
};

}  // namespace pavane

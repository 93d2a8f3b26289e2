#pragma once

#include "pavane/history/EditHistory.h"
#include "pavane/tables/freq/FreqGroupEdit.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// What has changed of frequency groups.
struct FreqGroupNews {
    int other = 0;       ///< all is another: other groups of another file
    int groups = 0;      ///< the groups
    int marks = 0;       ///< the marked IFs
    int selections = 0;  ///< the marked frequency selections
    int show = -1;       ///< index of the group to be chosen in a list, -1 for the one that is
    int showIf = -1;     ///< the first IF that is now in another group or marked otherwise
    int undone = 0;      ///< by undo or redo
};

/// Shows frequency groups; is told of each change, and of what the user looks at.
class PAVANE_API FreqGroupView
{
public:
    virtual ~FreqGroupView() = default;
    virtual void GroupsChanged(const FreqGroupNews& news) = 0;
    virtual void GroupChosen(int group) { (void)group; }
    virtual void SelectionChosen(int selection) { (void)selection; }
    /// The user works in another view now.
    virtual void ActiveChanged() {}
};

/// The edits of frequency groups with one history for all windows that show them. Groups, IFs and
/// frequency selections count from 0. The groups are the host's; who changes them by other ways
/// calls Refresh.
class PAVANE_API FreqGroupSteps : public std::enable_shared_from_this<FreqGroupSteps>,
                                  private EditTarget
{
public:
    /// Nothing can be undone then, and the groups count as saved. Null: nothing to edit.
    void SetParameters(AFreqGroupArray* groups);
    /// Shows all again; groups that were changed by other ways are taken as SetParameters does.
    void Refresh();
    AFreqGroupArray* groups() const { return groups_; }
    const FreqGroupEdit& edit() const { return edit_; }
    int ifCount() const { return groups_ ? groups_->FqTbl().ifCount() : 0; }

    // Each is a step of undo, when it changes something; results are those of FreqGroupEdit.
    int mark(const ABitArray& marks, std::string_view label);
    int markSelections(const ABitArray& marks, std::string_view label);
    int add(FreqGroupEdit::Fault& fault);
    int remove(int group);
    /// Several groups in one step; how many there were.
    int remove(const ABitArray& groups);
    int removeAll();
    int allInOne();
    void fixedStep(int step);
    /// Marks that a host sets; no step.
    void SetMarked(const ABitArray& marks);

    int canUndo() const { return history_.canUndo(); }
    int canRedo() const { return history_.canRedo(); }
    std::string_view undoLabel() const { return history_.undoLabel(); }
    std::string_view redoLabel() const { return history_.redoLabel(); }
    int undo();
    int redo();
    /// What the user has to be told of the history, once; see EditHistory.
    EditRecorded takeLoss() { return history_.takeLoss(); }

    /// Non-zero when the groups are others than those that were set or marked as saved.
    int isModified() const;
    void markSaved();

    void addView(FreqGroupView* view) { views_.push_back(view); }
    void removeView(FreqGroupView* view);
    /// `by` itself is not told.
    void chooseGroup(int group, FreqGroupView* by);
    void chooseSelection(int selection, FreqGroupView* by);
    /// The view that the user works in; null before there is one.
    FreqGroupView* active() const { return active_; }
    void setActive(FreqGroupView* view);

private:
    /// Groups, marked IFs and marked selections in their stored forms.
    struct State {
        std::string groups, marks, selections;
    };
    State state() const;
    template <typename Edit>
    int step(std::string_view label, Edit&& edit);
    void tellChange(const State& before, const State& after, int show, int undone = 0);
    template <typename Call>
    void tell(Call&& call);
    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection&) override { return 1; }

    AFreqGroupArray* groups_ = nullptr;
    FreqGroupEdit edit_;
    EditHistory history_;
    std::string saved_;
    std::string known_;  ///< the groups as they are here
    std::vector<FreqGroupView*> views_;
    FreqGroupView* active_ = nullptr;
};

}  // namespace pavane

#pragma once

#include "pavane/history/EditHistory.h"
#include "pavane/trackers/areas/ActiveItems.h"
#include "pavane/trackers/areas/AreaItems.h"
#include "platform/api.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pavane
{

/// The current item, active flags, selection and steps of undo of a collection of areas, wherever
/// its items are. It tells nobody: who edits knows. The selection is neither stored nor undone.
class PAVANE_API AreaEdits : private EditTarget
{
public:
    /// Everything that is recorded while it lives is one step of undo; inner ones belong to the
    /// outermost. Nothing of a host runs inside.
    class Step
    {
    public:
        /// A null label makes no step: what happens is no edit. For the key see EditHistory.
        Step(AreaEdits& of, const char* label, std::uint64_t mergeKey = 0)
            : of_(label ? &of : nullptr), mergeKey_(mergeKey)
        {
            if (of_)
                of_->begin(label);
        }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step()
        {
            if (of_)
                (void)of_->end(mergeKey_);
        }

    private:
        AreaEdits* of_;
        std::uint64_t mergeKey_;
    };

    /// `items` has to outlive it.
    explicit AreaEdits(AreaItems& items) : items_(items) {}

    // Current item and active flags
    /// -1 for none.
    int current() const { return current_; }
    /// The flags stay.
    void setCurrent(int i) { current_ = i; }
    /// Makes item i current and active and the old one inactive; -1 leaves none.
    void makeCurrent(int i);
    void setActive(int i, int on);
    /// The flag of item i is `on` by a host's own doing.
    void noteActive(int i, int on) { active_.note(i, on); }
    /// The flag that item i came with.
    int usuallyActive(int i) const { return active_.usual(i); }

    // Selection
    int isSelected(int i) const;
    void select(int i, int on);
    void selectAll();
    void clearSelection();
    int selectionCount() const { return selectionCount_; }
    /// By rising index: the selection, or the current item where that is empty and it is active.
    std::vector<int> selected() const;

    // Items that come and go. These follow the items; they record nothing.
    void inserted(int i, int usuallyActive);
    void removed(int i);

    // Recording, inside a step
    /// Item i has been inserted, or is about to be removed.
    void noteInsert(int i);
    void noteRemove(int i);
    /// Item i has changed; `before` is its record from before.
    void noteChange(int i, std::string_view before);
    void noteOpen(int kind, std::string_view before, std::string_view after);
    /// Outside a step it is no edit.
    void noteState(int which, std::string_view before, std::string_view after);

    // Steps
    void begin(std::string_view label);
    /// Non-zero when a step has ended: the outermost.
    int end(std::uint64_t mergeKey = 0);
    int isInStep() const { return depth_ > 0; }
    /// One step each; 0 when there is none, and inside a step. Items that an undone step brought
    /// back alone are selected, as after the deletion or the copy of several; one that is current
    /// and active again is so without.
    int undo();
    int redo();
    /// See EditHistory.
    int dropTrial();
    EditHistory& history() { return history_; }
    const EditHistory& history() const { return history_; }

private:
    enum Mark : std::uint8_t { selectedMark = 1, cameBackMark = 2 };

    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection& selection) override;
    EditSelection selectionNow() const { return {current_, active_.unusual()}; }
    void selectCameBack(int fewest);
    void setMark(int i, Mark mark, int on, int& count);
    void clearMarks(Mark mark, int& count);
    int isMarked(int i, Mark mark) const;

    AreaItems& items_;
    EditHistory history_;
    ActiveItems active_;
    std::vector<std::uint8_t> marks_;
    int selectionCount_ = 0;
    int cameBack_ = 0;  ///< items that the step brought back
    int wentAway_ = 0;  ///< it took items too
    int current_ = -1;
    int depth_ = 0;
};

}  // namespace pavane

#pragma once

#include "pavane/history/EditHistory.h"
#include "pavane/tables/components/AComponents.h"
#include "platform/api.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pavane
{

/// A list of components that is edited, with steps of undo that bring every bit back. It tells
/// nobody: who edits knows.
class PAVANE_API EditedComponents : private EditTarget
{
public:
    EditedComponents();

    /// Good until the next edit.
    const AComponents& list() const { return *list_; }
    /// Shows another list, which counts as saved; the steps are forgotten. 0, and all stays,
    /// without memory.
    int reset(const AComponents& list);

    /// The component that the user is at, from 0; part of a step, as it was before and after.
    int current() const { return current_; }
    void setCurrent(int i) { current_ = i; }

    /// Everything between these two is one step. Calls nest; the outermost label counts. The last
    /// `end` returns what became of the step.
    void begin(std::string_view label);
    EditRecorded end();

    // Edits, inside a step; 0, and all stays, outside of one, beyond the list or without memory.
    int set(int i, const ACompItem& item);
    int insert(int i, const ACompItem* items, int count);
    int remove(int i, int count);

    /// One step; 0 when there is none, or while one is open.
    int undo() { return depth_ == 0 && history_.undo(*this); }
    int redo() { return depth_ == 0 && history_.redo(*this); }
    /// Components that came (count above 0) at an index, or went from it on, since the last call,
    /// in their order: for whoever shows rows.
    struct Move {
        int at;
        int count;
    };
    std::vector<Move> takeMoves() { return std::exchange(moves_, {}); }
    const EditHistory& history() const { return history_; }
    EditHistory& history() { return history_; }
    int isModified() const { return history_.isModified(); }

private:
    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection& selection) override;
    int putIn(int i, RecordBytes items);
    void takeOut(int i, int count);
    int isRange(int i, int count) const;

    std::unique_ptr<AComponents> list_;
    EditHistory history_;
    std::vector<Move> moves_;
    int current_ = -1;
    int depth_ = 0;
};

/// Components of the list that the six digits of a text file do not hold, one line each: what of
/// which becomes what. Beyond `most` lines the last one counts the rest.
PAVANE_API std::vector<std::string> lossesOfComponentText(const AComponents& list, int most = 100);

}  // namespace pavane

#pragma once

#include "pavane/history/EditHistory.h"
#include "tessel/api.h"
#include "tessel/flags/VisibilityFlags.h"

#include <string_view>
#include <vector>

namespace pavane
{

/// The flags of a study with undo and redo without limit.
class PAVANE_API FlagEdits final : private EditTarget
{
public:
    FlagEdits() = default;
    FlagEdits(const FlagEdits&) = delete;
    FlagEdits& operator=(const FlagEdits&) = delete;
    ~FlagEdits() override;

    const VisibilityFlags& flags() const { return flags_; }
    /// Other flags, as after opening a file: nothing can be undone, and they count as saved.
    void set(VisibilityFlags flags);

    // Each is a step of undo; `label` is what the menu says after "Undo". Non-zero when something
    // has changed.
    /// Puts lines at the end.
    int add(const std::vector<FlagLine>& lines, std::string_view label);
    /// Takes a line out, by its index.
    int remove(std::size_t line, std::string_view label);
    int removeAll(std::string_view label);
    /// Other lines in place of all; their times become those of the day that these count from.
    int replace(const VisibilityFlags& flags, std::string_view label);

    int undo() { return history_.undo(*this); }
    int redo() { return history_.redo(*this); }
    int canUndo() const { return history_.canUndo(); }
    int canRedo() const { return history_.canRedo(); }
    std::string_view undoLabel() const { return history_.undoLabel(); }
    std::string_view redoLabel() const { return history_.redoLabel(); }
    int isModified() const { return history_.isModified(); }
    void markSaved() { history_.markSaved(); }
    /// What an undo or a commit could not keep, see EditHistory::takeLoss.
    EditRecorded takeLoss() { return history_.takeLoss(); }
    /// Another number after each change: who shows the flags, or data without them, compares it.
    unsigned version() const { return version_; }

private:
    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection&) override { return 1; }

    VisibilityFlags flags_;
    EditHistory history_;
    unsigned version_ = 0;
};

}  // namespace pavane

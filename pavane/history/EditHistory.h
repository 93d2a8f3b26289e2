#pragma once

#include "pavane/containers/Pile.h"
#include "platform/api.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace pavane
{

struct EditStep;

using RecordBytes = std::span<const std::uint8_t>;

/// What one change of an edit is about.
enum class EditKind : std::uint8_t {
    insert,   ///< an item appears at `index`, the later ones move up
    remove,   ///< the item at `index` goes, the later ones move down
    replace,  ///< the item at `index` stays in place and becomes another value
    working,  ///< the shape under construction; empty bytes mean that there is none
    state     ///< other values of the collection; `index` says which, as the caller numbers them
};

/// One change, always in the direction in which it is to be made: undoing an `insert` arrives as a
/// `remove`. `before` is empty for an insert, `after` for a remove.
struct EditChange {
    EditKind kind = EditKind::replace;
    int index = 0;
    int classCode = 0;  ///< the class of the record, as the caller numbers classes
    RecordBytes before;
    RecordBytes after;
};

/// What belongs to a collection beside its items: the current index (-1 for none) and all active
/// items, by rising index.
struct EditSelection {
    int current = -1;
    std::span<const int> active;
};

/// What a history works on. Both calls return non-zero on success; they have to leave the history
/// alone. Spans are good until the call returns.
class EditTarget
{
public:
    virtual ~EditTarget() = default;
    virtual int applyEdit(const EditChange& change) = 0;
    /// Comes last, after the changes of a step: current index, and active those listed and no
    /// others.
    virtual int applySelection(const EditSelection& selection) = 0;
};

/// What became of an edit that was to be remembered. Non-zero: it can be undone.
enum EditRecorded : int {
    editLost = 0,  ///< no memory for this one: the history is empty now, and edits are modified
    editRecorded = 1,
    editUnchanged = 2,    ///< nothing had changed, no step was made
    editGaveUpOld = 3,    ///< recorded, and for the first time old steps had to go: tell the user
    editUndoneInPart = 4  ///< an undo left out what could not be brought back
};

/// Undo and redo without limit. A step is a list of changes given as bytes before and after; the
/// history knows nothing of what they mean. Its cost is that of the bytes that differ: a change of
/// a record keeps what is equal at both ends once.
///
/// Record after the edit was made: `begin`, one call for each change in the order in which they
/// were made, `commit`. The selection need not be recorded when it changes alone: undo brings back
/// that from before the step, redo that from after it.
///
/// Memory that cannot be had costs the oldest steps, never the edit.
class PAVANE_API EditHistory
{
public:
    EditHistory() = default;
    EditHistory(const EditHistory&) = delete;
    EditHistory& operator=(const EditHistory&) = delete;
    ~EditHistory() { clear(); }

    /// Starts a step; `label` is what the menu says after "Undo" ("Move of Area 3"), cut to 255
    /// bytes. A step that was begun and not committed is dropped.
    void begin(std::string_view label, const EditSelection& before);
    void insert(int index, int classCode, RecordBytes after);
    void remove(int index, int classCode, RecordBytes before);
    /// Equal bytes are no change.
    void replace(int index, int classCode, RecordBytes before, RecordBytes after);
    void working(int classCode, RecordBytes before, RecordBytes after);
    void state(int which, RecordBytes before, RecordBytes after);
    /// Ends the step; what could be redone is gone. A `mergeKey` other than 0 that is also the last
    /// step's joins the two when both replace the same items and no undo, redo, `markSaved` or
    /// `endSeries` came between; the joined step keeps the earlier label.
    EditRecorded commit(const EditSelection& after, std::uint64_t mergeKey = 0);
    /// Drops the step that was begun.
    void abandon();
    /// What the user has to be told, once: editGaveUpOld or editLost after a `commit` that said so,
    /// editUndoneInPart after such an undo, else editRecorded.
    EditRecorded takeLoss();
    /// The next step is not joined to the last.
    void endSeries() { seriesKey_ = 0; }

    int canUndo() const { return position_ > std::max(first_, floor_); }
    int canRedo() const { return position_ < end_; }
    /// Label of the step that would be undone or redone; empty when there is none. Good until the
    /// history changes.
    std::string_view undoLabel() const;
    std::string_view redoLabel() const;
    /// Makes the changes of the last step backwards on `target`; 0 without a step. A change that
    /// the target refuses is left out, so that it does not bar the way to older steps: takeLoss
    /// tells then, nothing can be redone from there, and no state counts as saved.
    int undo(EditTarget& target);
    /// Makes the changes of the next step forwards. 0 without a step, or when the target refused a
    /// change: those before it are taken back then, and the step can be tried again.
    int redo(EditTarget& target);

    /// From here to endTrial `undo` goes no further back than now, and all edits together can be
    /// taken back: for a dialog that can be cancelled.
    void beginTrial();
    void endTrial() { floor_ = nowhere; }
    /// Takes back what happened in the trial and forgets its steps; the trial has ended. 0 when
    /// that cannot be done, since steps of it were given up: `target` may be anything then.
    int dropTrial(EditTarget& target);

    /// The present state is what is saved.
    void markSaved();
    /// No state is: the next save cannot be saved by undoing (after a crash was recovered from).
    void markUnsaved() { saved_ = nowhere; }
    /// Non-zero unless the present state is the saved one. An empty history starts as saved.
    int isModified() const { return saved_ != position_; }

    /// Forgets all steps; whether the present state is saved stays.
    void clear();
    /// Steps held, those that can be redone included.
    std::size_t steps() const { return static_cast<std::size_t>(end_ - first_); }
    /// Steps that can be undone.
    std::size_t undoSteps() const { return static_cast<std::size_t>(position_ - first_); }
    /// Memory that the steps take, in bytes.
    std::size_t bytesUsed() const;
    /// Beyond so many bytes the oldest steps are given up as if memory had run out; 0, as at first,
    /// for no limit. The latest step is always kept.
    void setByteLimit(std::size_t bytes) { limit_ = bytes; }

private:
    static constexpr std::int64_t nowhere = -1;

    template <typename Attempt>
    void insist(Attempt&& attempt);
    void addChange(const EditChange& change);
    void addSelection(const EditSelection& selection);
    EditStep* joined(const EditStep& last, const EditStep& next);
    void tidyOpen();
    int giveUpOldest();
    int roomForStep();
    void dropRedo();
    void drop(std::int64_t number);
    EditRecorded lose();
    int run(const EditStep& step, EditTarget& target, bool forward);
    void undoInPart(const EditStep& step, EditTarget& target);
    int runChanges(const EditStep& step, EditTarget& target, bool forward, std::size_t& at,
                   std::size_t end);
    EditStep*& slot(std::int64_t number) { return list_.data()[number - listStart_]; }
    const EditStep& at(std::int64_t number) const { return *list_.data()[number - listStart_]; }

    // Steps are numbered through since the history began; the list holds first_ to end_ - 1.
    Pile<EditStep*> list_;
    std::int64_t listStart_ = 0;  // number of the first slot of the list
    std::int64_t first_ = 0;
    std::int64_t end_ = 0;
    std::int64_t position_ = 0;  // the step that would be redone
    std::int64_t saved_ = 0;
    std::size_t bytes_ = 0;
    std::size_t limit_ = 0;
    std::int64_t floor_ = nowhere;  // where the trial began
    std::int64_t trialStep_ = 0;    // the first step that was made in it
    bool trialBroken_ = false;
    std::uint64_t seriesKey_ = 0;
    bool toldOfLoss_ = false;
    EditRecorded loss_ = editRecorded;

    // The step that is being recorded.
    Pile<std::uint8_t> open_;
    std::size_t openChanges_ = 0;  // offset of the first change
    bool begun_ = false;
    bool failed_ = false;
    bool gaveUp_ = false;

    // Room for what undo and redo hand out, made while recording so that these need no memory.
    Pile<std::uint8_t> scratch_;
    Pile<int> active_;
};

}  // namespace pavane

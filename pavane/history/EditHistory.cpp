#include "pavane/history/EditHistory.h"

#include "pavane/history/edit_step.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace pavane
{

/// Tries until there is memory for it, at the cost of the oldest steps.
template <typename Attempt>
void EditHistory::insist(Attempt&& attempt)
{
    while (!failed_ && !attempt())
        failed_ = !giveUpOldest();
}

void EditHistory::begin(std::string_view label, const EditSelection& before)
{
    open_.cut(0);
    begun_ = true;
    failed_ = gaveUp_ = false;
    insist([&] { return writeLabel(open_, label); });
    addSelection(before);
    openChanges_ = open_.count();
}

void EditHistory::insert(int index, int classCode, RecordBytes after)
{
    addChange({EditKind::insert, index, classCode, {}, after});
}

void EditHistory::remove(int index, int classCode, RecordBytes before)
{
    addChange({EditKind::remove, index, classCode, before, {}});
}

void EditHistory::replace(int index, int classCode, RecordBytes before, RecordBytes after)
{
    if (!std::ranges::equal(before, after))
        addChange({EditKind::replace, index, classCode, before, after});
}

void EditHistory::working(int classCode, RecordBytes before, RecordBytes after)
{
    if (!std::ranges::equal(before, after))
        addChange({EditKind::working, 0, classCode, before, after});
}

void EditHistory::state(int which, RecordBytes before, RecordBytes after)
{
    if (!std::ranges::equal(before, after))
        addChange({EditKind::state, which, 0, before, after});
}

void EditHistory::addChange(const EditChange& change)
{
    if (!begun_)
        return;
    insist([&] { return writeChange(open_, change); });
    insist([&] { return scratch_.reserve(change.before.size() + change.after.size()); });
}

void EditHistory::addSelection(const EditSelection& selection)
{
    insist([&] { return writeSelection(open_, selection); });
    insist([&] { return active_.reserve(selection.active.size()); });
}

EditRecorded EditHistory::commit(const EditSelection& after, std::uint64_t mergeKey)
{
    if (!begun_)
        return editUnchanged;
    begun_ = false;
    const std::size_t tail = open_.count();
    if (!failed_ && tail == openChanges_)
        return editUnchanged;
    const bool sameSeries = mergeKey && mergeKey == seriesKey_ && !canRedo() && canUndo();
    dropRedo();
    addSelection(after);
    EditStep* step = nullptr;
    insist([&] { return (step = makeStep(open_, openChanges_, tail)) != nullptr; });
    tidyOpen();
    if (!step)
        return lose();
    seriesKey_ = mergeKey;
    if (EditStep* both = sameSeries && canUndo() ? joined(at(position_ - 1), *step) : nullptr) {
        drop(position_ - 1);
        --end_;
        --position_;
        std::free(step);
        step = both;
    } else if (!roomForStep()) {
        std::free(step);
        return lose();
    }
    slot(end_) = step;
    trialStep_ = std::min(trialStep_, end_);
    bytes_ += step->memory();
    position_ = ++end_;
    while (limit_ && bytesUsed() > limit_ && steps() > 1)
        (void)giveUpOldest();
    if (!gaveUp_ || toldOfLoss_)
        return editRecorded;
    toldOfLoss_ = true;
    return loss_ = editGaveUpOld;
}

void EditHistory::abandon()
{
    begun_ = false;
    open_.cut(0);
}

void EditHistory::tidyOpen()
{
    constexpr std::size_t keptRoom = 1 << 16;
    if (open_.count() > keptRoom)
        open_.release();
    open_.cut(0);
}

/// One step from before `last` to after `next`; null when they replace different items, or without
/// memory, which leaves them two.
EditStep* EditHistory::joined(const EditStep& last, const EditStep& next)
{
    Pile<std::uint8_t> room;  // a record before and after share bytes in the step
    if (!open_.append(last.bytes(), last.changes) || !room.reserve(2 * last.size))
        return nullptr;
    std::size_t a = last.changes;
    std::size_t b = next.changes;
    bool same = true;
    while (same && a < last.after && b < next.after) {
        const EditChange first = readChange(last, a, true, room.data());
        const EditChange second = readChange(next, b, true, scratch_.data());
        const EditChange both{EditKind::replace, first.index, first.classCode, first.before,
                              second.after};
        same = first.kind == EditKind::replace && second.kind == EditKind::replace &&
               first.index == second.index && first.classCode == second.classCode &&
               writeChange(open_, both) && scratch_.reserve(both.before.size() + both.after.size());
    }
    same = same && a == last.after && b == next.after;
    const std::size_t tail = open_.count();
    same = same && open_.append(next.bytes() + next.after, next.size - next.after);
    EditStep* const step = same ? makeStep(open_, last.changes, tail) : nullptr;
    tidyOpen();
    return step;
}

EditRecorded EditHistory::lose()
{
    clear();
    markUnsaved();
    return loss_ = editLost;
}

EditRecorded EditHistory::takeLoss() { return std::exchange(loss_, editRecorded); }

int EditHistory::roomForStep()
{
    const auto used = static_cast<std::size_t>(end_ - listStart_);
    const auto unused = static_cast<std::size_t>(first_ - listStart_);
    constexpr std::size_t fewSlots = 64;
    if (unused > fewSlots && unused > used / 2) {
        std::memmove(list_.data(), list_.data() + unused, (used - unused) * sizeof(EditStep*));
        listStart_ = first_;
        list_.cut(used - unused);
        return list_.add(nullptr);
    }
    list_.cut(used);
    while (!list_.add(nullptr))
        if (!giveUpOldest())
            return 0;
    return 1;
}

int EditHistory::giveUpOldest()
{
    gaveUp_ = true;
    if (canRedo()) {
        dropRedo();
        return 1;
    }
    if (first_ == end_)
        return 0;
    drop(first_++);
    if (saved_ < first_)
        saved_ = nowhere;
    return 1;
}

void EditHistory::dropRedo()
{
    while (end_ > position_)
        drop(--end_);
    if (saved_ > position_)
        saved_ = nowhere;
}

void EditHistory::drop(std::int64_t number)
{
    EditStep*& step = slot(number);
    bytes_ -= step->memory();
    std::free(step);
    step = nullptr;
}

void EditHistory::clear()
{
    abandon();
    const bool modified = isModified();
    while (end_ > first_)
        drop(--end_);
    list_.cut(0);
    listStart_ = first_ = end_ = position_ = 0;
    trialBroken_ = true;
    floor_ = std::min(floor_, position_);
    saved_ = modified ? nowhere : position_;
    seriesKey_ = 0;
    toldOfLoss_ = false;
}

void EditHistory::markSaved()
{
    saved_ = position_;
    endSeries();
}

void EditHistory::beginTrial()
{
    endSeries();
    floor_ = position_;
    trialStep_ = std::numeric_limits<std::int64_t>::max();
    trialBroken_ = false;
}

int EditHistory::dropTrial(EditTarget& target)
{
    const std::int64_t floor = std::exchange(floor_, nowhere);
    if (floor == nowhere || trialBroken_ || first_ > floor)
        return 0;
    while (position_ > floor)
        if (!undo(target))
            return 0;
    while (end_ > std::max(trialStep_, position_))
        drop(--end_);
    return !trialBroken_;
}

std::size_t EditHistory::bytesUsed() const
{
    // beside its own size a block costs what the C library keeps about it
    constexpr std::size_t blockCost = 2 * sizeof(void*);
    return bytes_ + steps() * (blockCost + sizeof(EditStep*));
}

std::string_view EditHistory::undoLabel() const
{
    return canUndo() ? at(position_ - 1).label() : std::string_view();
}

std::string_view EditHistory::redoLabel() const
{
    return canRedo() ? at(position_).label() : std::string_view();
}

int EditHistory::undo(EditTarget& target)
{
    endSeries();
    if (!canUndo())
        return 0;
    const EditStep& step = at(position_ - 1);
    if (run(step, target, false)) {
        --position_;
        return 1;
    }
    undoInPart(step, target);
    --position_;
    dropRedo();
    saved_ = nowhere;
    trialBroken_ = true;
    loss_ = editUndoneInPart;
    return 1;
}

/// Every change that the target takes.
void EditHistory::undoInPart(const EditStep& step, EditTarget& target)
{
    for (std::size_t at = step.after; at != step.changes;)
        (void)target.applyEdit(readChange(step, at, false, scratch_.data()));
    (void)target.applySelection(readSelection(step, step.before(), active_.data()));
}

int EditHistory::redo(EditTarget& target)
{
    endSeries();
    if (!canRedo() || !run(at(position_), target, true))
        return 0;
    ++position_;
    return 1;
}

int EditHistory::run(const EditStep& step, EditTarget& target, bool forward)
{
    const std::size_t start = forward ? step.changes : step.after;
    const std::size_t end = forward ? step.after : step.changes;
    std::size_t reached = start;
    const std::size_t selectionAt = forward ? step.after : step.before();
    if (runChanges(step, target, forward, reached, end) &&
        target.applySelection(readSelection(step, selectionAt, active_.data())))
        return 1;
    // as far as the target can, it gets back what it had; it refused already and is not asked twice
    (void)runChanges(step, target, !forward, reached, start);
    return 0;
}

int EditHistory::runChanges(const EditStep& step, EditTarget& target, bool forward, std::size_t& at,
                            std::size_t end)
{
    while (at != end) {
        std::size_t next = at;
        if (!target.applyEdit(readChange(step, next, forward, scratch_.data())))
            return 0;
        at = next;
    }
    return 1;
}

}  // namespace pavane

#include "pavane/trackers/EditHistory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace pavane
{

/// One step in one block of memory: the length of the label (a byte) and the label, the selection
/// before, the changes, the selection after. Numbers are of variable length, seven bits a byte.
///
/// A change: kind (a byte), index, class, lengths of the record before and after, how many bytes
/// both have in common at the start and at the end; these common bytes, with those of before and of
/// after between them; and the length of all this, so that changes can be read backwards.
struct EditHistory::Step {
    std::size_t size;     // bytes that follow
    std::size_t changes;  // offset of the first change
    std::size_t after;    // offset of the selection after

    std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(this + 1); }
    const std::uint8_t* bytes() const { return reinterpret_cast<const std::uint8_t*>(this + 1); }
    std::size_t memory() const { return sizeof(Step) + size; }
};

namespace
{

using Length = std::uint64_t;  // behind every change

constexpr std::uint64_t zigzag(std::int64_t v)
{
    return static_cast<std::uint64_t>(v) << 1 ^ static_cast<std::uint64_t>(v >> 63);
}

constexpr std::int64_t unzigzag(std::uint64_t v)
{
    return static_cast<std::int64_t>(v >> 1) ^ -static_cast<std::int64_t>(v & 1);
}

std::uint64_t takeNumber(const std::uint8_t*& from)
{
    std::uint64_t number = 0;
    for (int shift = 0;; shift += 7) {
        const std::uint8_t byte = *from++;
        number |= std::uint64_t{byte & 0x7Fu} << shift;
        if (byte < 0x80)
            return number;
    }
}

int takeInt(const std::uint8_t*& from) { return static_cast<int>(unzigzag(takeNumber(from))); }

std::uint8_t* copyBytes(std::uint8_t* to, const std::uint8_t* from, std::size_t n)
{
    if (n)
        std::memcpy(to, from, n);
    return to + n;
}

/// The same change made backwards.
EditChange reversed(const EditChange& change)
{
    const EditKind kind = change.kind == EditKind::insert   ? EditKind::remove
                          : change.kind == EditKind::remove ? EditKind::insert
                                                            : change.kind;
    return {kind, change.index, change.classCode, change.after, change.before};
}

std::string_view labelOf(const std::uint8_t* bytes)
{
    return {reinterpret_cast<const char*>(bytes + 1), bytes[0]};
}

bool sameBytes(RecordBytes a, RecordBytes b) { return std::ranges::equal(a, b); }

}  // namespace

void EditHistory::begin(std::string_view label, const EditSelection& before)
{
    open_.cut(0);
    begun_ = true;
    failed_ = gaveUp_ = false;
    constexpr std::size_t longestLabel = 255;
    std::size_t n = std::min(label.size(), longestLabel);
    while (n < label.size() && n > 0 && (static_cast<unsigned char>(label[n]) & 0xC0) == 0x80)
        --n;  // not inside a character
    const auto length = static_cast<std::uint8_t>(n);
    put(&length, 1);
    put(label.data(), n);
    putSelection(before);
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
    if (!sameBytes(before, after))
        addChange({EditKind::replace, index, classCode, before, after});
}

void EditHistory::working(int classCode, RecordBytes before, RecordBytes after)
{
    if (!sameBytes(before, after))
        addChange({EditKind::working, 0, classCode, before, after});
}

void EditHistory::state(int which, RecordBytes before, RecordBytes after)
{
    if (!sameBytes(before, after))
        addChange({EditKind::state, which, 0, before, after});
}

void EditHistory::addChange(const EditChange& change)
{
    if (begun_)
        putChange(change);
}

void EditHistory::putChange(const EditChange& change)
{
    const std::size_t start = open_.count();
    const RecordBytes before = change.before;
    const RecordBytes after = change.after;
    const auto shorter = std::min(before.size(), after.size());
    const auto differs = std::ranges::mismatch(before, after);
    const auto prefix = static_cast<std::size_t>(differs.in1 - before.begin());
    std::size_t suffix = 0;
    while (suffix < shorter - prefix &&
           before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix])
        ++suffix;
    const auto kind = static_cast<std::uint8_t>(change.kind);
    put(&kind, 1);
    putNumber(zigzag(change.index));
    putNumber(zigzag(change.classCode));
    for (const std::size_t n : {before.size(), after.size(), prefix, suffix})
        putNumber(n);
    put(before.data(), prefix);
    put(before.data() + prefix, before.size() - prefix - suffix);
    put(after.data() + prefix, after.size() - prefix - suffix);
    put(after.data() + after.size() - suffix, suffix);
    const Length length = open_.count() - start;
    put(&length, sizeof length);
    while (!failed_ && !scratch_.reserve(before.size() + after.size()))
        failed_ = !giveUpOldest();
}

void EditHistory::put(const void* bytes, std::size_t n)
{
    while (!failed_ && !open_.append(static_cast<const std::uint8_t*>(bytes), n))
        failed_ = !giveUpOldest();
}

void EditHistory::putNumber(std::uint64_t number)
{
    std::uint8_t bytes[10];
    std::size_t n = 0;
    for (; number >= 0x80; number >>= 7)
        bytes[n++] = static_cast<std::uint8_t>(number | 0x80);
    bytes[n++] = static_cast<std::uint8_t>(number);
    put(bytes, n);
}

/// The current index, how many are active, and runs of neighbours: distance from the run before and
/// length.
void EditHistory::putSelection(const EditSelection& selection)
{
    const std::span<const int> active = selection.active;
    putNumber(zigzag(selection.current));
    putNumber(active.size());
    std::int64_t reached = 0;
    for (std::size_t i = 0; i < active.size();) {
        std::size_t end = i + 1;
        while (end < active.size() && active[end] == active[end - 1] + 1)
            ++end;
        putNumber(zigzag(active[i] - reached));
        putNumber(end - i);
        reached = std::int64_t{active[end - 1]} + 1;
        i = end;
    }
    while (!failed_ && !active_.reserve(active.size()))
        failed_ = !giveUpOldest();
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
    putSelection(after);
    Step* step = takeOpen(tail, true);
    if (!step)
        return lose();
    seriesKey_ = mergeKey;
    if (Step* both = sameSeries && canUndo() ? joined(at(position_ - 1), *step) : nullptr) {
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
    bytes_ += step->memory();
    position_ = ++end_;
    while (limit_ && bytesUsed() > limit_ && steps() > 1)
        (void)giveUpOldest();
    if (!gaveUp_ || toldOfLoss_)
        return editRecorded;
    toldOfLoss_ = true;
    return editGaveUpOld;
}

void EditHistory::abandon()
{
    begun_ = false;
    open_.cut(0);
}

/// The open step in a block of its own; null without memory.
EditHistory::Step* EditHistory::takeOpen(std::size_t after, bool mayGiveUp)
{
    void* block = nullptr;
    while (!failed_ && !(block = std::malloc(sizeof(Step) + open_.count())) && mayGiveUp)
        failed_ = !giveUpOldest();
    if (!block)
        return nullptr;
    Step* const step = new (block) Step{open_.count(), openChanges_, after};
    std::memcpy(step->bytes(), open_.data(), open_.count());
    constexpr std::size_t keptRoom = 1 << 16;
    if (open_.count() > keptRoom)
        open_.release();
    open_.cut(0);
    return step;
}

/// One step from before `last` to after `next`; null when they replace different items, or without
/// memory, which leaves them two.
EditHistory::Step* EditHistory::joined(const Step& last, const Step& next)
{
    // All bytes of a joined change are in one of the two, its numbers grow by less than they take;
    // with this room nothing below gives up a step, which might be one of these.
    const std::size_t enough = 2 * (last.size + next.size);
    if (!open_.reserve(enough) || !scratch_.reserve(enough))
        return nullptr;
    std::size_t a = last.changes;
    std::size_t b = next.changes;
    open_.cut(0);
    put(last.bytes(), last.changes);
    openChanges_ = last.changes;
    while (a < last.after && b < next.after) {
        // the scratch room holds one change at a time, so the first is kept behind the open step
        const EditChange first = change(last, a, true);
        Pile<std::uint8_t> before;
        if (!before.append(first.before.data(), first.before.size()))
            return nullptr;
        const EditChange second = change(next, b, true);
        if (first.kind != EditKind::replace || second.kind != EditKind::replace ||
            first.index != second.index || first.classCode != second.classCode)
            return nullptr;
        putChange({EditKind::replace,
                   first.index,
                   first.classCode,
                   {before.data(), before.count()},
                   second.after});
    }
    if (a != last.after || b != next.after)
        return nullptr;
    const std::size_t tail = open_.count();
    put(next.bytes() + next.after, next.size - next.after);
    return takeOpen(tail, false);
}

EditRecorded EditHistory::lose()
{
    clear();
    markUnsaved();
    return editLost;
}

int EditHistory::roomForStep()
{
    const auto used = static_cast<std::size_t>(end_ - listStart_);
    const auto unused = static_cast<std::size_t>(first_ - listStart_);
    constexpr std::size_t fewSlots = 64;
    if (unused > fewSlots && unused > used / 2) {
        std::memmove(list_.data(), list_.data() + unused, (used - unused) * sizeof(Step*));
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
    Step*& step = slot(number);
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
    saved_ = modified ? nowhere : position_;
    seriesKey_ = 0;
    toldOfLoss_ = false;
}

void EditHistory::markSaved()
{
    saved_ = position_;
    endSeries();
}

std::size_t EditHistory::bytesUsed() const
{
    // beside its own size a block costs what the C library keeps about it
    constexpr std::size_t blockCost = 2 * sizeof(void*);
    return bytes_ + steps() * (blockCost + sizeof(Step*));
}

std::string_view EditHistory::undoLabel() const
{
    return canUndo() ? labelOf(at(position_ - 1).bytes()) : std::string_view();
}

std::string_view EditHistory::redoLabel() const
{
    return canRedo() ? labelOf(at(position_).bytes()) : std::string_view();
}

int EditHistory::undo(EditTarget& target)
{
    endSeries();
    if (!canUndo() || !run(at(position_ - 1), target, false))
        return 0;
    --position_;
    return 1;
}

int EditHistory::redo(EditTarget& target)
{
    endSeries();
    if (!canRedo() || !run(at(position_), target, true))
        return 0;
    ++position_;
    return 1;
}

int EditHistory::run(const Step& step, EditTarget& target, bool forward)
{
    const std::size_t start = forward ? step.changes : step.after;
    const std::size_t end = forward ? step.after : step.changes;
    std::size_t reached = start;
    const std::size_t selectionAt = forward ? step.after : 1u + step.bytes()[0];
    if (runChanges(step, target, forward, reached, end) &&
        target.applySelection(selection(step, selectionAt)))
        return 1;
    // as far as the target can, it gets back what it had; it refused already and is not asked twice
    (void)runChanges(step, target, !forward, reached, start);
    return 0;
}

int EditHistory::runChanges(const Step& step, EditTarget& target, bool forward, std::size_t& at,
                            std::size_t end)
{
    while (at != end) {
        std::size_t next = at;
        if (!target.applyEdit(change(step, next, forward)))
            return 0;
        at = next;
    }
    return 1;
}

EditChange EditHistory::change(const Step& step, std::size_t& at, bool forward)
{
    if (!forward) {
        Length length;
        std::memcpy(&length, step.bytes() + at - sizeof length, sizeof length);
        at -= sizeof length + length;
    }
    const std::uint8_t* from = step.bytes() + at;
    EditChange result;
    result.kind = static_cast<EditKind>(*from++);
    result.index = takeInt(from);
    result.classCode = takeInt(from);
    const auto beforeSize = static_cast<std::size_t>(takeNumber(from));
    const auto afterSize = static_cast<std::size_t>(takeNumber(from));
    const auto prefix = static_cast<std::size_t>(takeNumber(from));
    const auto suffix = static_cast<std::size_t>(takeNumber(from));
    const std::uint8_t* const before = from + prefix;
    const std::uint8_t* const after = before + beforeSize - prefix - suffix;
    const std::uint8_t* const common = after + afterSize - prefix - suffix;
    result.before = {before, beforeSize};
    result.after = {after, afterSize};
    if (prefix || suffix) {
        std::uint8_t* to = scratch_.data();
        const auto restore = [&](const std::uint8_t* middle, std::size_t size) {
            const RecordBytes whole(to, size);
            to = copyBytes(to, from, prefix);
            to = copyBytes(to, middle, size - prefix - suffix);
            to = copyBytes(to, common, suffix);
            return whole;
        };
        result.before = restore(before, beforeSize);
        result.after = restore(after, afterSize);
    }
    if (forward)
        at = static_cast<std::size_t>(common + suffix - step.bytes()) + sizeof(Length);
    return forward ? result : reversed(result);
}

EditSelection EditHistory::selection(const Step& step, std::size_t at)
{
    const std::uint8_t* from = step.bytes() + at;
    const int current = takeInt(from);
    const auto count = static_cast<std::size_t>(takeNumber(from));
    int* const active = active_.data();
    std::int64_t reached = 0;
    for (std::size_t i = 0; i < count;) {
        reached += unzigzag(takeNumber(from));
        for (std::uint64_t left = takeNumber(from); left; --left)
            active[i++] = static_cast<int>(reached++);
    }
    return {current, {active, count}};
}

}  // namespace pavane

#include "pavane/history/edit_step.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace pavane
{

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

/// Appends to a step; one failure is enough, and whoever does not `finish` leaves nothing.
class Writer
{
public:
    explicit Writer(StepBytes& to) : to_(to), start_(to.count()) {}
    void bytes(const void* from, std::size_t n)
    {
        good_ = good_ && to_.append(static_cast<const std::uint8_t*>(from), n);
    }
    void number(std::uint64_t number)
    {
        std::uint8_t digits[10];
        std::size_t n = 0;
        for (; number >= 0x80; number >>= 7)
            digits[n++] = static_cast<std::uint8_t>(number | 0x80);
        digits[n++] = static_cast<std::uint8_t>(number);
        bytes(digits, n);
    }
    void signedNumber(std::int64_t number) { this->number(zigzag(number)); }
    std::size_t written() const { return to_.count() - start_; }
    int finish()
    {
        if (!good_)
            to_.cut(start_);
        return good_;
    }

private:
    StepBytes& to_;
    std::size_t start_;
    bool good_ = true;
};

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

std::size_t takeSize(const std::uint8_t*& from)
{
    return static_cast<std::size_t>(takeNumber(from));
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

}  // namespace

int writeLabel(StepBytes& to, std::string_view label)
{
    constexpr std::size_t longestLabel = 255;
    std::size_t n = std::min(label.size(), longestLabel);
    while (n < label.size() && n > 0 && (static_cast<unsigned char>(label[n]) & 0xC0) == 0x80)
        --n;  // not inside a character
    const auto length = static_cast<std::uint8_t>(n);
    Writer writer(to);
    writer.bytes(&length, 1);
    writer.bytes(label.data(), n);
    return writer.finish();
}

/// The current index, how many are active, and runs of neighbours: distance from the run before and
/// length.
int writeSelection(StepBytes& to, const EditSelection& selection)
{
    const std::span<const int> active = selection.active;
    Writer writer(to);
    writer.signedNumber(selection.current);
    writer.number(active.size());
    std::int64_t reached = 0;
    for (std::size_t i = 0; i < active.size();) {
        std::size_t end = i + 1;
        while (end < active.size() && active[end] == active[end - 1] + 1)
            ++end;
        writer.signedNumber(active[i] - reached);
        writer.number(end - i);
        reached = std::int64_t{active[end - 1]} + 1;
        i = end;
    }
    return writer.finish();
}

int writeChange(StepBytes& to, const EditChange& change)
{
    const RecordBytes before = change.before;
    const RecordBytes after = change.after;
    const auto shorter = std::min(before.size(), after.size());
    const auto differs = std::ranges::mismatch(before, after);
    const auto prefix = static_cast<std::size_t>(differs.in1 - before.begin());
    std::size_t suffix = 0;
    while (suffix < shorter - prefix &&
           before[before.size() - 1 - suffix] == after[after.size() - 1 - suffix])
        ++suffix;
    Writer writer(to);
    const auto kind = static_cast<std::uint8_t>(change.kind);
    writer.bytes(&kind, 1);
    writer.signedNumber(change.index);
    writer.signedNumber(change.classCode);
    for (const std::size_t n : {before.size(), after.size(), prefix, suffix})
        writer.number(n);
    writer.bytes(before.data(), prefix);
    writer.bytes(before.data() + prefix, before.size() - prefix - suffix);
    writer.bytes(after.data() + prefix, after.size() - prefix - suffix);
    writer.bytes(after.data() + after.size() - suffix, suffix);
    const Length length = writer.written();
    writer.bytes(&length, sizeof length);
    return writer.finish();
}

EditStep* makeStep(const StepBytes& bytes, std::size_t changes, std::size_t after)
{
    void* const block = std::malloc(sizeof(EditStep) + bytes.count());
    if (!block)
        return nullptr;
    EditStep* const step = new (block) EditStep{bytes.count(), changes, after};
    std::memcpy(step->bytes(), bytes.data(), bytes.count());
    return step;
}

EditChange readChange(const EditStep& step, std::size_t& at, bool forward, std::uint8_t* room)
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
    const std::size_t beforeSize = takeSize(from);
    const std::size_t afterSize = takeSize(from);
    const std::size_t prefix = takeSize(from);
    const std::size_t suffix = takeSize(from);
    const std::uint8_t* const before = from + prefix;
    const std::uint8_t* const after = before + beforeSize - prefix - suffix;
    const std::uint8_t* const common = after + afterSize - prefix - suffix;
    result.before = {before, beforeSize};
    result.after = {after, afterSize};
    if (prefix || suffix) {
        const auto restored = [&](const std::uint8_t* middle, std::size_t size) {
            const RecordBytes whole(room, size);
            room = copyBytes(room, from, prefix);
            room = copyBytes(room, middle, size - prefix - suffix);
            room = copyBytes(room, common, suffix);
            return whole;
        };
        result.before = restored(before, beforeSize);
        result.after = restored(after, afterSize);
    }
    if (!forward)
        return reversed(result);
    at = static_cast<std::size_t>(common + suffix - step.bytes()) + sizeof(Length);
    return result;
}

EditSelection readSelection(const EditStep& step, std::size_t at, int* room)
{
    const std::uint8_t* from = step.bytes() + at;
    const int current = takeInt(from);
    const std::size_t count = takeSize(from);
    std::int64_t reached = 0;
    for (std::size_t i = 0; i < count;) {
        reached += unzigzag(takeNumber(from));
        for (std::uint64_t left = takeNumber(from); left; --left)
            room[i++] = static_cast<int>(reached++);
    }
    return {current, {room, count}};
}

}  // namespace pavane

#include "pavane/calibration/flags/FlagEdits.h"

#include <new>
#include <string>
#include <utility>

namespace pavane
{

namespace
{

RecordBytes bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

FlagEdits::~FlagEdits() = default;

void FlagEdits::set(VisibilityFlags flags)
{
    flags_ = std::move(flags);
    history_.clear();
    history_.markSaved();
    ++version_;
}

int FlagEdits::add(const std::vector<FlagLine>& lines, std::string_view label)
{
    if (lines.empty())
        return 0;
    const std::size_t before = flags_.lines.size();
    try {
        flags_.lines.insert(flags_.lines.end(), lines.begin(), lines.end());
        history_.begin(label, {});
        for (std::size_t i = before; i < flags_.lines.size(); ++i)
            history_.insert(static_cast<int>(i), 0, bytesOf(flagText(flags_.lines[i])));
    } catch (const std::bad_alloc&) {
        history_.abandon();
        flags_.lines.resize(before);
        return 0;
    }
    (void)history_.commit({});
    ++version_;
    return 1;
}

int FlagEdits::remove(std::size_t line, std::string_view label)
{
    if (line >= flags_.lines.size())
        return 0;
    try {
        const std::string text = flagText(flags_.lines[line]);
        history_.begin(label, {});
        history_.remove(static_cast<int>(line), 0, bytesOf(text));
    } catch (const std::bad_alloc&) {
        history_.abandon();
        return 0;
    }
    flags_.lines.erase(flags_.lines.begin() + static_cast<std::ptrdiff_t>(line));
    (void)history_.commit({});
    ++version_;
    return 1;
}

int FlagEdits::removeAll(std::string_view label)
{
    if (flags_.lines.empty())
        return 0;
    try {
        history_.begin(label, {});
        for (std::size_t i = flags_.lines.size(); i-- > 0;)
            history_.remove(static_cast<int>(i), 0, bytesOf(flagText(flags_.lines[i])));
    } catch (const std::bad_alloc&) {
        history_.abandon();
        return 0;
    }
    flags_.lines.clear();
    (void)history_.commit({});
    ++version_;
    return 1;
}

int FlagEdits::replace(const VisibilityFlags& flags, std::string_view label)
{
    const double later = flags.referenceDay > 0 && flags_.referenceDay > 0
                             ? flags.referenceDay - flags_.referenceDay
                             : 0;
    try {
        std::vector<FlagLine> lines = flags.lines;
        for (FlagLine& line : lines) {
            line.start += later;
            line.end += later;
        }
        if (lines == flags_.lines)
            return 0;
        history_.begin(label, {});
        for (std::size_t i = flags_.lines.size(); i-- > 0;)
            history_.remove(static_cast<int>(i), 0, bytesOf(flagText(flags_.lines[i])));
        for (std::size_t i = 0; i < lines.size(); ++i)
            history_.insert(static_cast<int>(i), 0, bytesOf(flagText(lines[i])));
        flags_.lines.swap(lines);
    } catch (const std::bad_alloc&) {
        history_.abandon();
        return 0;
    }
    (void)history_.commit({});
    ++version_;
    return 1;
}

int FlagEdits::applyEdit(const EditChange& change)
{
    const auto at = static_cast<std::size_t>(change.index);
    if (change.kind == EditKind::remove) {
        if (at >= flags_.lines.size())
            return 0;
        flags_.lines.erase(flags_.lines.begin() + change.index);
    } else {
        FlagLine line;
        std::string wrong;
        if (change.kind != EditKind::insert || at > flags_.lines.size())
            return 0;
        try {
            const std::string text(change.after.begin(), change.after.end());
            if (!readFlagLine(text, line, wrong))
                return 0;
            flags_.lines.insert(flags_.lines.begin() + change.index, std::move(line));
        } catch (const std::bad_alloc&) {
            return 0;
        }
    }
    ++version_;
    return 1;
}

}  // namespace pavane

#include "pavane/tables/components/EditedComponents.h"

#include "pavane/tables/components/component_table.h"

#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace pavane
{

namespace
{

static_assert(std::is_trivially_copyable_v<ACompItem>);

RecordBytes bytesOf(const ACompItem* items, int count)
{
    return {reinterpret_cast<const std::uint8_t*>(items),
            static_cast<std::size_t>(count) * sizeof(ACompItem)};
}

int countOf(RecordBytes bytes) { return static_cast<int>(bytes.size() / sizeof(ACompItem)); }

}  // namespace

EditedComponents::EditedComponents() : list_(std::make_unique<AComponents>()) {}

int EditedComponents::reset(const AComponents& list)
{
    std::unique_ptr<AComponents> copy(new (std::nothrow) AComponents(list));
    if (!copy || copy->count() != list.count())
        return 0;
    list_ = std::move(copy);
    history_.clear();
    history_.markSaved();
    moves_.clear();
    depth_ = 0;
    current_ = list_->count() ? 0 : -1;
    return 1;
}

void EditedComponents::begin(std::string_view label)
{
    if (depth_++ == 0)
        history_.begin(label, {current_, {}});
}

EditRecorded EditedComponents::end()
{
    if (depth_ == 0 || --depth_)
        return editUnchanged;
    return history_.commit({current_, {}});
}

int EditedComponents::isRange(int i, int count) const
{
    return i >= 0 && count >= 0 && i <= list_->count() && count <= list_->count() - i;
}

int EditedComponents::set(int i, const ACompItem& item)
{
    if (depth_ == 0 || !isRange(i, 1))
        return 0;
    const ACompItem before = (*list_)(i);
    (*list_)(i) = item;
    history_.replace(i, 0, bytesOf(&before, 1), bytesOf(&item, 1));
    return 1;
}

int EditedComponents::insert(int i, const ACompItem* items, int count)
{
    if (depth_ == 0 || count < 1 || !putIn(i, bytesOf(items, count)))
        return 0;
    history_.insert(i, 0, bytesOf(list_->lpArray() + i, count));
    return 1;
}

int EditedComponents::remove(int i, int count)
{
    if (depth_ == 0 || count < 1 || !isRange(i, count))
        return 0;
    // one change for all of them: rows that move up move once
    history_.remove(i, 0, bytesOf(list_->lpArray() + i, count));
    takeOut(i, count);
    return 1;
}

void EditedComponents::takeOut(int i, int count)
{
    (void)list_->DeleteItems(i, count);
    moves_.push_back({i, -count});
}

/// Makes a list of its own, so that without memory the old one stays. The bytes stand anywhere.
int EditedComponents::putIn(int i, RecordBytes items)
{
    const int before = list_->count();
    const int count = countOf(items);
    if (i < 0 || i > before || count > std::numeric_limits<int>::max() - before)
        return 0;
    std::unique_ptr<AComponents> longer(new (std::nothrow) AComponents);
    if (!longer)
        return 0;
    longer->GrowBy(before + count);
    if (longer->count() != before + count)
        return 0;
    const auto copy = [&](int to, RecordBytes from) {
        if (!from.empty())
            std::memcpy(static_cast<void*>(longer->lpArray() + to), from.data(), from.size());
    };
    copy(0, bytesOf(list_->lpArray(), i));
    copy(i, items);
    copy(i + count, bytesOf(list_->lpArray() + i, before - i));
    list_ = std::move(longer);
    moves_.push_back({i, count});
    return 1;
}

int EditedComponents::applyEdit(const EditChange& change)
{
    switch (change.kind) {
    case EditKind::insert:
        return putIn(change.index, change.after);
    case EditKind::remove:
        if (!isRange(change.index, countOf(change.before)))
            return 0;
        takeOut(change.index, countOf(change.before));
        return 1;
    case EditKind::replace:
        if (!isRange(change.index, 1))
            return 0;
        std::memcpy(static_cast<void*>(list_->lpArray() + change.index), change.after.data(),
                    sizeof(ACompItem));
        return 1;
    default:
        return 0;
    }
}

int EditedComponents::applySelection(const EditSelection& selection)
{
    current_ = selection.current;
    return 1;
}

std::vector<std::string> lossesOfComponentText(const AComponents& list, int most)
{
    std::vector<std::string> lines;
    long long more = 0;
    for (int i = 0; i < list.count(); ++i) {
        char text[ACompItem::lineSize];
        (void)list(i).Store(text);
        const ACompItem read(text);
        for (int column = componentFluxColumn; column <= componentColumns; ++column) {
            const std::string now = componentText(list(i), column);
            const std::string then = componentText(read, column);
            if (now == then)
                continue;
            if (lines.size() < static_cast<std::size_t>(most))
                lines.emplace_back("component ")
                    .append(std::to_string(i + 1))
                    .append(": ")
                    .append(componentTitle(column))
                    .append(1, ' ')
                    .append(now)
                    .append(" becomes ")
                    .append(then);
            else
                ++more;
        }
    }
    if (more)
        lines.push_back("and " + std::to_string(more) + " more");
    return lines;
}

}  // namespace pavane

#include "pavane/trackers/areas/AreaEdits.h"

#include <algorithm>

namespace pavane
{

namespace
{

RecordBytes bytes(std::string_view record)
{
    return {reinterpret_cast<const std::uint8_t*>(record.data()), record.size()};
}

std::string_view text(RecordBytes record)
{
    return {reinterpret_cast<const char*>(record.data()), record.size()};
}

}  // namespace

void AreaEdits::makeCurrent(int i)
{
    if (current_ != i) {
        setActive(current_, 0);
        history_.endSeries();
    }
    current_ = i;
    setActive(i, 1);
}

void AreaEdits::setActive(int i, int on)
{
    if (i < 0 || i >= items_.count())
        return;
    items_.setActive(i, on);
    active_.note(i, on);
}

int AreaEdits::isMarked(int i, Mark mark) const
{
    const auto at = static_cast<std::size_t>(i);
    return i >= 0 && at < marks_.size() && (marks_[at] & mark) != 0;
}

void AreaEdits::setMark(int i, Mark mark, int on, int& count)
{
    if (i < 0 || i >= items_.count() || isMarked(i, mark) == (on != 0))
        return;
    const auto at = static_cast<std::size_t>(i);
    if (at >= marks_.size())
        marks_.resize(static_cast<std::size_t>(items_.count()));
    marks_[at] = static_cast<std::uint8_t>(marks_[at] ^ mark);
    count += on ? 1 : -1;
}

void AreaEdits::clearMarks(Mark mark, int& count)
{
    if (count > 0)
        for (std::uint8_t& marks : marks_)
            marks = static_cast<std::uint8_t>(marks & ~mark);
    count = 0;
}

int AreaEdits::isSelected(int i) const { return isMarked(i, selectedMark); }

void AreaEdits::select(int i, int on) { setMark(i, selectedMark, on, selectionCount_); }

void AreaEdits::selectAll()
{
    for (int i = 0; i < items_.count(); ++i)
        select(i, 1);
}

void AreaEdits::clearSelection() { clearMarks(selectedMark, selectionCount_); }

std::vector<int> AreaEdits::selected() const
{
    std::vector<int> items;
    if (selectionCount_ == 0) {
        if (current_ >= 0 && current_ < items_.count() && items_.isActive(current_))
            items.push_back(current_);
        return items;
    }
    items.reserve(static_cast<std::size_t>(selectionCount_));
    for (int i = 0; static_cast<int>(items.size()) < selectionCount_; ++i)
        if (isSelected(i))
            items.push_back(i);
    return items;
}

void AreaEdits::inserted(int i, int usuallyActive)
{
    active_.insert(i, usuallyActive);
    active_.note(i, items_.isActive(i));
    if (static_cast<std::size_t>(i) < marks_.size())
        marks_.insert(marks_.begin() + i, std::uint8_t{0});
    if (current_ >= i)
        ++current_;
}

void AreaEdits::removed(int i)
{
    active_.remove(i);
    if (static_cast<std::size_t>(i) < marks_.size()) {
        selectionCount_ -= isMarked(i, selectedMark);
        cameBack_ -= isMarked(i, cameBackMark);
        marks_.erase(marks_.begin() + i);
    }
    if (current_ > i)
        --current_;
    current_ = std::min(current_, items_.count() - 1);
}

void AreaEdits::noteInsert(int i)
{
    history_.insert(i, items_.kindOf(i), bytes(items_.recordOf(i)));
}

void AreaEdits::noteRemove(int i)
{
    history_.remove(i, items_.kindOf(i), bytes(items_.recordOf(i)));
}

void AreaEdits::noteChange(int i, std::string_view before)
{
    history_.replace(i, items_.kindOf(i), bytes(before), bytes(items_.recordOf(i)));
}

void AreaEdits::noteOpen(int kind, std::string_view before, std::string_view after)
{
    history_.working(kind, bytes(before), bytes(after));
}

void AreaEdits::noteState(int which, std::string_view before, std::string_view after)
{
    if (depth_ > 0)
        history_.state(which, bytes(before), bytes(after));
}

void AreaEdits::begin(std::string_view label)
{
    if (depth_++ == 0)
        history_.begin(label, selectionNow());
}

int AreaEdits::end(std::uint64_t mergeKey)
{
    if (depth_ == 0 || --depth_ > 0)
        return 0;
    (void)history_.commit(selectionNow(), mergeKey);
    return 1;
}

int AreaEdits::applyEdit(const EditChange& change)
{
    const int i = change.index;
    const std::string_view after = text(change.after);
    switch (change.kind) {
    case EditKind::insert:
        if (i < 0 || i > items_.count() || !items_.insert(i, change.classCode, after))
            return 0;
        inserted(i, items_.isActive(i));
        setMark(i, cameBackMark, 1, cameBack_);
        return 1;
    case EditKind::remove:
        if (!items_.isOfKind(i, change.classCode))
            return 0;
        wentAway_ = 1;
        items_.remove(i);
        removed(i);
        return 1;
    case EditKind::replace:
        return items_.isOfKind(i, change.classCode) && items_.replace(i, change.classCode, after);
    case EditKind::working:
        return items_.setOpen(change.classCode, after);
    case EditKind::state:
        return items_.setState(i, after);
    }
    return 0;
}

int AreaEdits::applySelection(const EditSelection& selection)
{
    const std::vector<int> before(active_.unusual().begin(), active_.unusual().end());
    for (const int i : before)
        setActive(i, active_.usual(i));
    for (const int i : selection.active)
        setActive(i, !active_.usual(i));
    current_ = selection.current;
    return 1;
}

void AreaEdits::selectCameBack(int fewest)
{
    if (!wentAway_ && cameBack_ >= fewest) {
        const int isCurrent =
            cameBack_ == 1 && isMarked(current_, cameBackMark) && items_.isActive(current_);
        clearSelection();
        if (!isCurrent)
            for (int i = 0; i < static_cast<int>(marks_.size()); ++i)
                if (isMarked(i, cameBackMark))
                    select(i, 1);
    }
    clearMarks(cameBackMark, cameBack_);
}

int AreaEdits::undo()
{
    wentAway_ = 0;
    if (depth_ > 0 || !history_.undo(*this))
        return 0;
    selectCameBack(1);
    return 1;
}

int AreaEdits::redo()
{
    wentAway_ = 0;
    const int done = depth_ == 0 && history_.redo(*this);
    if (done)
        selectCameBack(2);
    else
        clearMarks(cameBackMark, cameBack_);  // what a step that failed brought back went again
    return done;
}

int AreaEdits::dropTrial()
{
    const int done = depth_ == 0 && history_.dropTrial(*this);
    clearMarks(cameBackMark, cameBack_);
    return done;
}

}  // namespace pavane

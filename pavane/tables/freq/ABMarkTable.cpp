#include "pavane/tables/freq/ABMarkTable.h"

#include <algorithm>

namespace pavane
{

ABMarkTable::ABMarkTable() = default;

ABMarkTable::~ABMarkTable() = default;

void ABMarkTable::MarksChanged(int, int) {}

void ABMarkTable::SetMarkCount(int count)
{
    ABitArray marks(count);
    for (int i = 0; i < std::min(marks.count(), marks_.count()); ++i)
        marks.set(i, marks_.get(i));
    marks_ = marks;
}

/// Takes marks of the same number and tells of those that differ.
int ABMarkTable::replace(const ABitArray& marks)
{
    int first = 0;
    int last = marks_.count() - 1;
    while (first <= last && marks.get(first) == marks_.get(first))
        ++first;
    while (last > first && marks.get(last) == marks_.get(last))
        --last;
    if (first > last)
        return 0;
    marks_ = marks;
    MarksChanged(first, last);
    return 1;
}

void ABMarkTable::SetMark(const ABitArray& marks)
{
    if (marks.count() == marks_.count())
        return (void)replace(marks);
    ABitArray taken(marks_.count());
    for (int i = 0; i < taken.count(); ++i)
        taken.set(i, marks.get(i));
    (void)replace(taken);
}

int ABMarkTable::cmMark(int first, int last)
{
    first = std::max(first, 0);
    last = std::min(last, marks_.count() - 1);
    int areAll = 1;
    for (int i = first; i <= last; ++i)
        areAll &= marks_.get(i);
    ABitArray marks = marks_;
    for (int i = first; i <= last; ++i)
        marks.set(i, !areAll);
    return replace(marks);
}

int ABMarkTable::SetItemMark(int item, int value)
{
    if (item < 0 || item >= marks_.count() || isMarked(item) == (value != 0))
        return 0;
    marks_.set(item, value != 0);
    MarksChanged(item, item);
    return 1;
}

int ABMarkTable::cmMarkAll()
{
    ABitArray marks(marks_.count());
    marks.setAll(1);
    return replace(marks);
}

int ABMarkTable::cmMarkNone() { return replace(ABitArray(marks_.count())); }

int ABMarkTable::cmInvertMarks()
{
    ABitArray marks(marks_.count());
    for (int i = 0; i < marks.count(); ++i)
        marks.set(i, !marks_.get(i));
    return replace(marks);
}

}  // namespace pavane

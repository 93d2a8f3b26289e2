#pragma once

#include "tessel/ABitArray.h"
#include "tessel/api.h"

namespace pavane
{

/// The marks of a table without its window: one bit an item, from 0. A table with marks derives
/// from this beside its window and paints when `MarksChanged` says so.
class PAVANE_API ABMarkTable
{
public:
    ABMarkTable();
    virtual ~ABMarkTable();

    /// How many items there are; those that stay keep their marks, new ones have none.
    void SetMarkCount(int count);
    int markCount() const { return marks_.count(); }
    /// Takes the marks of a host, as many as there are items; what is missing is not marked.
    void SetMark(const ABitArray& marks);
    const ABitArray& GetMark() const { return marks_; }
    /// 0 outside.
    int isMarked(int item) const { return marks_.get(item); }
    int markedCount() const { return marks_.ones(); }

    // Each gives non-zero when a mark has changed.

    /// Marks the items first to last, both included, or takes their marks when all of them have
    /// one. Outside nothing happens.
    int cmMark(int first, int last);
    /// Sets or takes one mark.
    int SetItemMark(int item, int value);
    int cmMarkAll();
    int cmMarkNone();
    int cmInvertMarks();

protected:
    /// Called once after the marks of items first to last, or some of them, have changed.
    virtual void MarksChanged(int first, int last);

private:
    int replace(const ABitArray& marks);
    ABitArray marks_;
};

}  // namespace pavane

#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/SortJob.h"

#include <functional>

namespace pavane
{

/// The order in which a table shows its rows, and how it changes.
class ATableWnd::Sorter
{
public:
    explicit Sorter(ATableWnd& table) : table_(table) {}
    const RowOrder& order() const { return order_; }
    RowOrder& order() { return order_; }
    /// What the rows are ordered by, what they will be when the sorting in hand is done.
    const SortedBy& by() const { return by_; }
    const SortedBy& target() const { return sorting() ? target_ : by_; }
    bool canSort(int column);
    /// 0 when that cannot be, or an edited value is refused.
    int sort(const SortedBy& by);
    /// A press of the left button; its release gives the column of the header that was clicked, 0
    /// for none.
    void press(unsigned flags, CPoint point);
    int release(CPoint point);
    /// A click on a header: the next order.
    void click(int column);
    void forgetPress() { pressed_ = 0; }
    /// Whether the pointer drags. As long as it rests where it was pressed it does not: the press
    /// may have scrolled another cell under it.
    int drags(CPoint point);
    /// There are other records or columns: what is being sorted begins anew, or ends.
    void recordsChanged(int rows);
    /// `change` gives records other numbers, which `renumbered` tells; 0 for one that is gone. Open
    /// editors stay on their records.
    void renumber(const std::function<int(int)>& renumbered, const std::function<void()>& change);
    void columnGone(int column);
    void columnsChanged();

private:
    class Task;
    bool sorting() const;
    int headerAt(CPoint point) const;
    void take(RowOrder order, const SortedBy& by);
    void restart();

    ATableWnd& table_;
    RowOrder order_;
    SortedBy by_;
    SortedBy target_;
    unsigned changes_ = 0;        ///< of records and columns so far
    const void* task_ = nullptr;  ///< only to compare with the one in hand
    int pressed_ = 0;             ///< column whose header the button went down on
    CPoint pressedAt_;
    int moved_ = 0;  ///< away from there
};

}  // namespace pavane

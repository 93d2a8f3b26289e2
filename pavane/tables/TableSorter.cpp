#include "pavane/tables/TableSorter.h"

#include "pavane/resources/table_messages.h"
#include "pavane/tables/LiveValues.h"
#include "pavane/tables/table_editors.h"
#include "pavane/tables/TableTasks.h"
#include "platform/accessibility.h"
#include "platform/message.h"

#include <limits>
#include <utility>

namespace pavane
{

class ATableWnd::Sorter::Task : public TableTask
{
public:
    Task(Sorter& sorter, const SortedBy& by)
        : sorter_(sorter), by_(by), changes_(sorter.changes_), values_(sorter.table_),
          job_(static_cast<int>(sorter.table_.rows()), by, sorter.order_)
    {
    }
    WorkState step() override { return job_.step(values_); }
    int percent() const override { return job_.percent(); }
    const char* name() const override { return sortingRows; }
    void finish() override
    {
        if (changes_ != sorter_.changes_)
            return;  // who was told that it is done has changed the table
        RowOrder order;
        if (job_.takeOrder(order))
            sorter_.take(std::move(order), by_);
        else
            (void)AfxMessageBox(noMemoryToSort, MB_OK | MB_ICONERROR);
    }

private:
    Sorter& sorter_;
    SortedBy by_;
    unsigned changes_;
    LiveValues values_;
    SortJob job_;
};

bool ATableWnd::Sorter::sorting() const { return task_ && table_.tasks_->now() == task_; }

bool ATableWnd::Sorter::canSort(int column)
{
    return column >= 1 && column <= table_.columns() && table_.rows() > 0 &&
           table_.rows() <= mostSortedRows && table_.isSortable(column);
}

int ATableWnd::Sorter::sort(const SortedBy& by)
{
    const TableWatch watch(table_);
    const bool stored = by.direction == SortDirection::stored;
    if ((!stored && !canSort(by.column)) || watch.gone() || !table_.hideEditors() || watch.gone())
        return 0;
    if (sorting())
        (void)table_.tasks_->cancel();
    if (watch.gone())
        return 0;
    if (stored) {
        if (!order_.isStored() || by_.column)
            take({}, {});
        return 1;
    }
    auto task = std::make_shared<Task>(*this, by);
    task_ = task.get();
    target_ = by;
    table_.tasks_->start(std::move(task), true);
    return 1;
}

/// Not at once: whoever changes the table may be in the middle of it.
void ATableWnd::Sorter::restart()
{
    auto task = std::make_shared<Task>(*this, target_);
    task_ = task.get();
    table_.tasks_->start(std::move(task), false);
}

/// Shows the rows in another order. The focus, and an editor, stay on their records; of a selection
/// of several rows that of the focus is left.
void ATableWnd::Sorter::take(RowOrder order, const SortedBy& by)
{
    const TableWatch watch(table_);
    table_.endDrag();
    const ASelectRect previous = table_.selection_;
    const TableExtent extent = table_.grid_.extent();
    const bool inside = extent.contains({previous.anchorRow, previous.anchorColumn});
    const CRect focus = table_.cellRect(previous.anchorRow, previous.anchorColumn);
    const bool seen =
        focus.top >= table_.grid_.headerHeight() && focus.top < table_.client().bottom;
    const auto follow = [&](int row) { return order.rowOf(order_.recordOf(row)); };
    if (table_.edit_)
        table_.edit_->setCell({follow(table_.edit_->cell().row), table_.edit_->cell().column});
    if (table_.combo_)
        table_.combo_->setCell({follow(table_.combo_->cell().row), table_.combo_->cell().column});
    ASelectRect next = previous;
    if (inside)
        next.anchorRow = next.endRow = follow(previous.anchorRow);
    order_ = std::move(order);
    by_ = by;
    table_.selection_ = next;
    table_.Invalidate();
    table_.tellAccess(EVENT_OBJECT_REORDER, {});
    if (!watch.gone())
        table_.moveEditors();
    if (watch.gone() || next == previous)
        return;
    ASelectRect before = previous;
    if (seen)
        return table_.setSelectCell(before, next.anchorRow, next.anchorColumn);
    table_.sendSelectionChange(next, before);
}

int ATableWnd::Sorter::headerAt(CPoint point) const
{
    const TableCell cell = table_.grid_.cellAt(point);
    const bool header =
        cell.row == 0 && cell.column >= 1 && table_.cellRect(0, cell.column).PtInRect(point);
    return header ? cell.column : 0;
}

void ATableWnd::Sorter::press(unsigned flags, CPoint point)
{
    pressed_ = flags & (MK_SHIFT | MK_CONTROL) ? 0 : headerAt(point);
    pressedAt_ = point;
    moved_ = 0;
}

int ATableWnd::Sorter::drags(CPoint point)
{
    moved_ = moved_ || !(point == pressedAt_) || !table_.client().PtInRect(point);
    return moved_;
}

int ATableWnd::Sorter::release(CPoint point)
{
    const int column = std::exchange(pressed_, 0);
    return column == headerAt(point) ? column : 0;
}

void ATableWnd::Sorter::click(int column)
{
    const TableWatch watch(table_);
    if (column && canSort(column) && !watch.gone())
        (void)sort(nextOrder(target(), column));
}

void ATableWnd::Sorter::recordsChanged(int rows)
{
    renumber([rows](int r) { return r <= rows ? r : 0; }, [&] { order_.resize(rows); });
    if (order_.isStored())
        by_ = {};
    if (!sorting())
        return;
    if (rows > 0 && rows <= mostSortedRows)
        restart();
    else
        (void)table_.tasks_->cancel();
}

void ATableWnd::Sorter::renumber(const std::function<int(int)>& renumbered,
                                 const std::function<void()>& change)
{
    const auto recordUnder = [&](const auto& editor) {
        return editor ? renumbered(order_.recordOf(editor->cell().row)) : 0;
    };
    const auto put = [&](const auto& editor, int record) {
        if (editor)
            editor->setCell({record ? order_.rowOf(record) : 0, editor->cell().column});
    };
    const int edited = recordUnder(table_.edit_);
    const int chosen = recordUnder(table_.combo_);
    ++changes_;
    change();
    put(table_.edit_, edited);
    put(table_.combo_, chosen);
}

void ATableWnd::Sorter::columnGone(int column)
{
    if (by_.column == column)
        by_ = {};
    if (by_.column > column)
        --by_.column;
    if (sorting())
        (void)table_.tasks_->cancel();
}

void ATableWnd::Sorter::columnsChanged()
{
    ++changes_;
    if (by_.column > table_.columns())
        by_ = {};
    if (sorting())
        (void)table_.tasks_->cancel();
}

// --- what the table says of it

int ATableWnd::recordOf(int row) const { return sorter_->order().recordOf(row); }
int ATableWnd::rowOf(int record) const { return sorter_->order().rowOf(record); }
int ATableWnd::SortRows(const SortedBy& by) { return sorter_->sort(by); }
SortedBy ATableWnd::sortedBy() const { return sorter_->by(); }
int ATableWnd::isSortable(int column) { return isOptSet(optSort) && column >= 1; }

void ATableWnd::recordsInserted(int record, int count)
{
    if (count < 1)
        return;
    if (record <= grid_.rows())
        ForgetHistory();  // which knows records by their numbers
    constexpr int most = std::numeric_limits<int>::max();
    sorter_->renumber([&](int r) { return r < record         ? r
                                          : r > most - count ? most
                                                             : r + count; },
                      [&] { sorter_->order().insert(record, count); });
    setRows(static_cast<long>(grid_.rows()) + count);
}

void ATableWnd::recordsRemoved(int record, int count)
{
    const int first = std::max(record, 1);
    const std::int64_t end = std::min<std::int64_t>(std::int64_t{record} + std::max(count, 0),
                                                    std::int64_t{grid_.rows()} + 1);
    if (first >= end)
        return;
    ForgetHistory();
    const auto gone = static_cast<int>(end - first);
    sorter_->renumber([&](int r) { return r < first ? r
                                          : r < end ? 0
                                                    : r - gone; },
                      [&] { sorter_->order().remove(first, gone); });
    setRows(static_cast<long>(grid_.rows()) - gone);
}

}  // namespace pavane

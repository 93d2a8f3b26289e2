#include "pavane/tables/ColumnSizer.h"

#include "pavane/resources/table_messages.h"
#include "pavane/tables/grid/column_widths.h"
#include "pavane/tables/LiveValues.h"
#include "pavane/tables/table_dialogs.h"
#include "platform/CDC.h"
#include "platform/profile.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr int reach = 3;       // of an edge, pixels to each side
constexpr int leastFit = 8;    // a column that is fitted can still be grasped
constexpr int fitAir = 3;      // the line at the edge, and what parts a text from a mark
constexpr int widest = 32767;  // pixels
constexpr int rowsBeyond = 1000;
constexpr std::size_t longestMeasured = 16384;  // bytes; wider than a column can be
constexpr const char* widthsEntry = "Columns";

}  // namespace

int ATableWnd::Sizer::edgeAt(CPoint point) const
{
    return table_.isOptSet(optSizeColumns) && table_.client().PtInRect(point)
               ? table_.grid_.edgeAt(point, reach)
               : -1;
}

int ATableWnd::Sizer::press(CPoint point)
{
    const int column = edgeAt(point);
    if (column < 0)
        return 0;
    before_ = table_.grid_.columns();
    first_ = {table_.grid_.firstRow(), table_.grid_.firstColumn()};
    column_ = column;
    startX_ = point.x;
    startWidth_ = before_->width(column);
    return 1;
}

void ATableWnd::Sizer::move(CPoint point)
{
    const std::int64_t width = std::int64_t{startWidth_} + point.x - startX_;
    change(column_, static_cast<int>(std::clamp<std::int64_t>(width, 0, widest)));
}

void ATableWnd::Sizer::end()
{
    if (!dragging())
        return;
    const int old = before_->width(column_);
    before_.reset();
    if (table_.grid_.columns().width(column_) != old)
        keep(column_);
}

int ATableWnd::Sizer::cancel()
{
    if (!dragging())
        return 0;
    const TableWatch watch(table_);
    table_.grid_.columns() = *std::exchange(before_, std::nullopt);
    table_.SetUpWindow();
    if (!watch.gone() && table_.grid_.setFirst(first_.row, first_.column)) {
        // a narrow table may have scrolled back
        table_.moveEditors();
        table_.setThumbs();
    }
    return 1;
}

void ATableWnd::Sizer::columnsChanged()
{
    before_.reset();
    keptApplied_ = 0;
}

/// A stretch column that the user sized no longer stretches; the others share what is left.
void ATableWnd::Sizer::change(int column, int width)
{
    if (table_.grid_.columns().width(column) == width)
        return;
    table_.grid_.columns().fix(column, width);
    table_.SetUpWindow();
}

void ATableWnd::Sizer::applyKept()
{
    if (keptApplied_ || !table_.isOptSet(optSizeColumns) || table_.columns() < 0)
        return;
    keptApplied_ = 1;
    const TableWatch watch(table_);
    const CString section = table_.profileSection();
    if (!watch.gone() && !section.empty())
        applyWidths(table_.grid_.columns(), GetProfileString(section, widthsEntry));
}

void ATableWnd::Sizer::keep(int column)
{
    const TableWatch watch(table_);
    const CString section = table_.profileSection();
    if (watch.gone() || section.empty())
        return;
    // a profile that cannot be written loses a width, which nobody need be told
    (void)WriteProfileString(
        section, widthsEntry,
        addWidth(table_.grid_.columns(), GetProfileString(section, widthsEntry), column));
}

void ATableWnd::Sizer::set(int column, int width)
{
    if (!table_.grid_.columns().has(column))
        return;
    const TableWatch watch(table_);
    (void)cancel();
    if (watch.gone())
        return;
    change(column, std::clamp(width, 0, widest));
    if (!watch.gone())
        keep(column);
}

/// The width that shows all texts of a column, of its header, the rows in view and some more; -1
/// when the table went away.
std::int64_t ATableWnd::Sizer::neededBy(int column)
{
    LiveValues values(table_);
    CClientDC dc(&table_);
    dc.SelectObject(&table_.tableFont());
    std::int64_t width = leastFit;
    CString text;
    const auto measure = [&](int row) {
        if (!values.text({row, column}, text))
            return false;
        if (text.size() > longestMeasured)
            text.resize(longestMeasured);
        width = std::max<std::int64_t>(width, dc.GetTextExtent(text).cx +
                                                  table_.textMargins(row, column) + fitAir);
        return true;
    };
    if (table_.grid_.headerRow() && !measure(0))
        return -1;
    const std::int64_t inView = table_.grid_.wholeRows(table_.client()) + 1;
    const std::int64_t last =
        std::min<std::int64_t>(table_.grid_.firstRow() + inView + rowsBeyond - 1, table_.rows());
    const std::int64_t first = std::max<std::int64_t>(last - inView - rowsBeyond + 1, 1);
    for (std::int64_t row = first; row <= std::min<std::int64_t>(last, table_.rows()); ++row)
        if (!measure(static_cast<int>(row)))
            return -1;
    return width;
}

void ATableWnd::Sizer::fit(int column)
{
    const TableWatch watch(table_);
    if (!table_.GetSafeHwnd() || !table_.grid_.columns().has(column) || !table_.hideEditors() ||
        watch.gone())
        return;
    const std::int64_t width = neededBy(column);
    if (width >= 0)
        set(column, static_cast<int>(std::min<std::int64_t>(width, widest)));
}

void ATableWnd::Sizer::askWidth(int column)
{
    const TableWatch watch(table_);
    int width = table_.grid_.columns().width(column);
    if (!table_.hideEditors() || watch.gone())
        return;
    if (askNumber(&table_, columnWidthTitle, columnWidthLabel, 0, widest, width) && !watch.gone())
        set(column, width);
}

void ATableWnd::SetColumnWidth(int column, int pixels) { sizer_->set(column, pixels); }
void ATableWnd::FitColumn(int column) { sizer_->fit(column); }
CString ATableWnd::profileSection() { return {}; }

/// Over an edge that can be dragged the pointer says so.
int ATableWnd::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    if (!sizer_->dragging() && (window != this || sizer_->edgeAt(point) < 0))
        return ABWindow::OnSetCursor(window, hitArea, message);
    return (void)SetCursor(IDC_SIZEWE), 1;
}

}  // namespace pavane

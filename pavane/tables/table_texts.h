#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/table_text.h"
#include "pavane/tables/table_job.h"
#include "pavane/tables/TableWatch.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pavane
{

/// Makes a job that of the table, until the scope ends or the table does.
class ATableWnd::JobScope
{
public:
    JobScope(ATableWnd& table, TableJob& job)
        : table_(table), life_(table.life_), outer_(std::exchange(table.job_, &job))
    {
    }
    JobScope(const JobScope&) = delete;
    JobScope& operator=(const JobScope&) = delete;
    ~JobScope()
    {
        if (life_.alive())
            table_.job_ = outer_;
    }

private:
    ATableWnd& table_;
    LifeWatch life_;
    TableJob* outer_;
};

/// The texts of a table, for as long as it is there and the user does not stop what needs them.
class ATableWnd::TextsOfTable : public TableTexts
{
public:
    /// `cells` are those that will be asked for.
    TextsOfTable(ATableWnd& table, const CellRange& cells)
        : table_(table), watch_(table), cells_(cells)
    {
    }
    TableExtent extent() override { return watch_.gone() ? TableExtent{} : table_.grid_.extent(); }
    int text(TableCell cell, CString& text) override
    {
        if (watch_.gone() || !goesOn(cell))
            return 0;
        const bool header = cell.row == 0 || cell.column == 0;
        text = header ? table_.hdrCellAsStr(cell.row, cell.column, nullptr)
                      : table_.cellAsStr(cell.row, cell.column, nullptr);
        return !watch_.gone();
    }

private:
    int goesOn(TableCell cell)
    {
        if (!table_.job_ || cell.row == 0)
            return 1;
        const double rows = static_cast<double>(std::max<std::int64_t>(cells_.rowCount(), 1));
        return table_.job_->show((cell.row - cells_.firstRow) / rows) && !watch_.gone();
    }

    ATableWnd& table_;
    TableWatch watch_;
    CellRange cells_;
};

}  // namespace pavane

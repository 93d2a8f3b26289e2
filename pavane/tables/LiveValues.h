#pragma once

#include "pavane/tables/grid/table_values.h"
#include "pavane/tables/TableWatch.h"

namespace pavane
{

/// The cells of a table as its hooks tell them, for as long as it is there.
class LiveValues : public TableValues
{
public:
    explicit LiveValues(ATableWnd& table) : table_(table), watch_(table) {}
    bool gone() const { return watch_.gone(); }
    TableExtent extent() override;
    int text(TableCell cell, CString& text) override;
    int number(TableCell cell, double& value, int& isNumber) override;

private:
    ATableWnd& table_;
    TableWatch watch_;
};

}  // namespace pavane

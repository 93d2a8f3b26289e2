#pragma once

#include "pavane/tables/grid/table_text.h"

namespace pavane
{

/// Texts and numbers of the cells of a table, which hooks may make that change or end it.
class TableValues : public TableTexts
{
public:
    /// Sets `isNumber` to non-zero, and `value`, when the cell stands for a number; 0 when the
    /// table is gone.
    virtual int number(TableCell cell, double& value, int& isNumber) = 0;
};

/// What became of a piece of work on a table.
enum class WorkState { goesOn, done, gone };

}  // namespace pavane

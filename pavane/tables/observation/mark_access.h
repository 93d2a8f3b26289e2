#pragma once

#include "pavane/tables/table_access.h"

namespace pavane
{

class AMarkTable;

/// Tells screen readers of marks beside the cells: boxes that are checked, and in words.
class MarkAccess : public TableAccess
{
public:
    explicit MarkAccess(AMarkTable& table);
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    /// Tells of the boxes of items first to last, of the first of many.
    void tellMarks(int first, int last) const;

private:
    AMarkTable* table_;
};

}  // namespace pavane

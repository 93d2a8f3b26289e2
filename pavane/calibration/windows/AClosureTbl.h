#pragma once

#include "pavane/tables/observation/AMarkTable.h"

#include <vector>

namespace pavane
{

/// A line of the list of triangles, or of that of telescopes, which has a name alone.
struct ClosureRow {
    CString name;
    int isKnown = 0;  ///< the numbers are
    double points = 0, mean = 0, scatter = 0;
    int isTrivial = 0;
};

/// A list of triangles with their closure phases in numbers, or one of telescopes, with marks.
class PAVANE_API AClosureTbl : public AMarkTable
{
public:
    /// Of triangles, or with 0 of telescopes.
    explicit AClosureTbl(int ofTriangles);

    /// Other rows, of which none is marked.
    void SetRecords(std::vector<ClosureRow> rows);
    /// The same rows with other numbers.
    void SetNumbers(std::vector<ClosureRow> rows);
    const std::vector<ClosureRow>& records() const { return rows_; }

    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    int isTextRight(int column) override;
    const char* GetWndClassName() override;
    CString profileSection() override;
    CString OnToolTip(CPoint point) override;

private:
    const ClosureRow* rowAt(int row) const;
    double numberOf(const ClosureRow& row, int column) const;

    int ofTriangles_;
    std::vector<ClosureRow> rows_;
};

}  // namespace pavane

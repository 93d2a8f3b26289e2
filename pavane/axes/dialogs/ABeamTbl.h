#pragma once

#include "pavane/tables/ATableWnd.h"

#include <vector>

namespace pavane
{

/// A number of a beam: what it is, the number and its unit.
struct BeamNumber {
    CString name;
    double value = 0;
    CString unit;
};

/// The table of the numbers of a beam.
class PAVANE_API ABeamTbl : public ATableWnd
{
public:
    ABeamTbl();
    void SetNumbers(std::vector<BeamNumber> numbers);
    const std::vector<BeamNumber>& numbers() const { return numbers_; }

    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    const char* GetWndClassName() override { return "ABeamTbl"; }

private:
    const BeamNumber* at(int row) const;
    std::vector<BeamNumber> numbers_;
};

}  // namespace pavane

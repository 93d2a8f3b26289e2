#pragma once

#include "pavane/tables/ATableWnd.h"
#include "tessel/uvfits/UvPlotRows.h"

#include <vector>

namespace pavane
{

/// The visibilities that a rectangle of the plot held: sorted by a click on a title, found in,
/// copied, printed and saved as text.
class UvRowsTbl : public ATableWnd
{
public:
    UvRowsTbl();
    /// Shows visibilities of a file, which is not owned; null, and none, for no file.
    void SetVisibilities(const AUVXFile* file, std::vector<UvPointOrigin> rows);

    const char* GetWndClassName() override { return "UvRowsTbl"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    CString profileSection() override { return "pavane-view list of visibilities"; }
    CString OnToolTip(CPoint point) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;

private:
    const UvPointOrigin& rowAt(int row) const;

    const AUVXFile* file_ = nullptr;
    std::vector<UvPointOrigin> rows_;
};

}  // namespace pavane

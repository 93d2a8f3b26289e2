#pragma once

#include "apps/view/ValuesTbl.h"
#include "tessel/uvfits/UvPlotRows.h"

#include <vector>

namespace pavane
{

/// Visibilities of a file, which is not owned, as a table.
struct UvRowTable {
    const AUVXFile* file = nullptr;
    std::vector<UvPointOrigin> rows;

    static int columns();
    static CString title(int column);
    static CString tip(int column);
    static int width(int column);
    static int isText(int column);
    CString text(int row, int column) const;
    CString shortText(int row, int column) const { return text(row, column); }
    int number(int row, int column, double& value) const;
};

/// The visibilities that a rectangle of the plot held, in a window.
class UvRowsTbl : public ValuesTbl<UvRowTable>
{
public:
    UvRowsTbl();
    /// Shows visibilities of a file, which is not owned; null, and none, for no file.
    void SetVisibilities(const AUVXFile* file, std::vector<UvPointOrigin> rows);

    const char* GetWndClassName() override { return "UvRowsTbl"; }
    CString profileSection() override { return "pavane-view list of visibilities"; }

private:
    UvRowTable shown_;
};

}  // namespace pavane

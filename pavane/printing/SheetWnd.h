#pragma once

#include "pavane/windows/ABWindow.h"

namespace pavane
{

/// A picture of a sheet with its margins, and lines where text would be.
class SheetWnd : public ABWindow
{
public:
    SheetWnd() { SetFlag(windowBuffered, 1); }
    /// Hundredths of a millimetre; the sheet as it lies.
    void show(const CSize& sheet, const CRect& margins);
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override { return "PrintedSheet"; }

protected:
    unsigned OnGetDlgCode() override { return 0; }

private:
    CSize sheet_;
    CRect margins_;
};

}  // namespace pavane

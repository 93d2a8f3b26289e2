#pragma once

#include "pavane/axes/windows/AAreaTableWnd.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/ATrackerToolBar.h"
#include "pavane/axes/windows/ATrackToolBarOwnerWnd.h"
#include "platform/controls.h"

namespace pavane
{

/// An axis window with everything around it: the tools and the list of areas above, a line below
/// that tells what is under the pointer and what the areas hold, and on wish a table of the current
/// area's numbers at the right. Hosts give the axis, the map and the areas to axisWnd().
class PAVANE_API AAxisTrkSelWnd : public ATrackToolBarOwnerWnd
{
public:
    AAxisTrkSelWnd();
    AAxisWnd& axisWnd() { return axis_; }
    ATrackerToolBar& toolBar() { return bar_; }
    AAreaTableWnd& areaTable() { return table_; }
    /// Shows the table of the current area, or takes it away.
    void ShowAreaTable(int on);
    int IsAreaTableShown() const { return showTable_; }
    /// Units of the two directions in the status line and the table; values of 1 until then.
    void SetUnits(const ValueUnit& x, const ValueUnit& y);
    /// Unit of the map's values in the status line, "Jy/beam"; empty for none.
    void SetValueUnit(const CString& unit) { unit_ = unit; }
    /// Sums are divided by `cells`, the area of the beam in cells, and shown in `unit`, "Jy". Until
    /// then they are shown as they are.
    void SetFluxUnit(double cells, const CString& unit);

    /// The text of the status line.
    virtual CString StatusText(const AxisStatus& status) const;
    const char* GetWndClassName() override;
    void SetUpWindow() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;

protected:
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    /// Passes on what the axis window tells.
    class Axis : public AAxisWnd
    {
    public:
        explicit Axis(AAxisTrkSelWnd& owner) : owner_(&owner) {}
        void OnStatus(const AxisStatus& status) override;
        void OnAreasChanged() override;
        void OnNotice(const CString& text) override { owner_->showStatusText(text); }

    private:
        AAxisTrkSelWnd* owner_;
    };
    void layOut();
    void showStatusText(const CString& text);

    // The axis goes first: it asks the others while it lives.
    CComboBox list_;
    CStatic status_;
    ATrackerToolBar bar_;
    AAreaTableWnd table_;
    Axis axis_;
    ValueUnit unitX_, unitY_;
    CString unit_;
    CString fluxUnit_;
    double beamCells_ = 0;
    CString shownStatus_;
    int showTable_ = 0;
};

}  // namespace pavane

#pragma once

#include "apps/clean/DataPlotWindow.h"
#include "pavane/calibration/closure_sets.h"
#include "pavane/calibration/windows/AFlagWnd.h"

#include <functional>
#include <vector>

namespace pavane
{

/// Amplitude and phase of a study's visibilities against time or against distance, in which they
/// are flagged.
class FlagPlotWindow : public DataPlotWindow
{
public:
    FlagPlotWindow(DataPlots& plots, int isDistance);
    ~FlagPlotWindow() override { DestroyWindow(); }

    void Refresh() override;
    AFlagWnd& view() { return view_; }

protected:
    APlotWnd& plot() override { return view_; }
    int createPlot(unsigned id) override;
    int createRow() override;
    const MenuTemplate& menu() const override;
    CString title() const override;
    CRect firstPlace() const override;
    int runOwn(unsigned id) override;
    void chosen(CWnd& control) override;
    const AProgress* running() const override;
    void stop() override;
    void OnInitMenuPopup(CMenu& popup) override;
    void OnDestroy() override;

private:
    /// Tells this window.
    class View : public AFlagWnd
    {
    public:
        std::function<void(const CString&)> told;
        std::function<void()> other;
        std::function<void(int)> left;
        void OnNotice(const CString& text) override { told(text); }
        void OnChoice() override { other(); }
        void OnPanelsLeft(int step) override { left(step); }
        void OnMultiStatus(const MultiStatus& status) override;
    };
    void showChoice();
    CString counts() const;

    int isDistance_;
    View view_;
    CComboBox baselines_, scope_;
    CButton ifs_, hands_;
    std::vector<ClosureTelescope> telescopes_;
};

}  // namespace pavane

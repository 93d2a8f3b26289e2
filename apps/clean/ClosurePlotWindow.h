#pragma once

#include "apps/clean/DataPlotWindow.h"
#include "pavane/calibration/windows/AClosureWnd.h"
#include "tessel/uvfits/AUVXFile.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Closure phases of a study's visibilities as they are corrected and flagged, with those of a
/// round's model.
class ClosurePlotWindow : public DataPlotWindow
{
public:
    explicit ClosurePlotWindow(DataPlots& plots);
    ~ClosurePlotWindow() override { DestroyWindow(); }

    void Refresh() override;
    AClosureWnd& view() { return view_; }

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
    class View : public AClosureWnd
    {
    public:
        std::function<void(const CString&)> told;
        std::function<void()> read;
        std::function<void(int)> left;
        void OnReading() override { read(); }
        void OnPanelsLeft(int step) override { left(step); }
        void OnMultiStatus(const MultiStatus& status) override;
    };
    void readAgain();
    void askTriangles();
    void follow();
    std::string wanted() const;
    CString counts() const;

    AUVXFile file_;
    View view_;
    CButton triangles_;
    std::string shown_;  ///< data and model that are shown
    std::vector<ClosureTriangle> chosen_;
    ClosureAveraging averaging_;
    AProgress progress_;
    std::unique_ptr<AProgressWriter> writer_;
    int told_ = 0;
};

}  // namespace pavane

#pragma once

#include "pavane/calibration/BaselineReader.h"
#include "pavane/calibration/closure_sets.h"
#include "pavane/calibration/windows/AChartWnd.h"

#include <memory>
#include <vector>

namespace pavane
{

/// Amplitude and phase of visibilities against time or channel, a panel a baseline, a model's as
/// lines. N and Shift+N go to the next and the previous baseline when a page has one panel, else to
/// the baselines of the next telescope, after the last to all of them.
class PAVANE_API ABaselineWnd : public AChartWnd
{
public:
    ~ABaselineWnd() override;

    /// Begins to read the baselines of a file, which is not owned and goes after the window or
    /// after another call. Null shows nothing.
    void SetData(AUVXFile* file, std::vector<UvBaseline> baselines = {},
                 BaselinePlot plot = BaselinePlot::time, UvMarks marks = {},
                 const AComponents& model = {}, const BaselineDivision& division = {});
    /// What has been read; null without a file.
    const BaselineReader* GetReader() const { return reader_.get(); }
    /// The telescope whose baselines are shown, from 0 in the order of their numbers; -1: all are.
    int GetTelescope() const { return telescope_; }

    double ReadDone() const override { return reader_ ? reader_->done() : 1; }
    void ShowNext(int step) override;
    /// One panel a page: all baselines one after another.
    void SetPanelsOfPage(int panels) override;

protected:
    int readMore(std::string& error) override;
    PanelChart makeChart() override;

private:
    AUVXFile* file_ = nullptr;
    BaselinePlot plot_ = BaselinePlot::time;
    std::unique_ptr<BaselineReader> reader_;
    std::vector<ClosureTelescope> telescopes_;
    int telescope_ = -1;
};

}  // namespace pavane

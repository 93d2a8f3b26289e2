#pragma once

#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/windows/AChartWnd.h"

#include <memory>
#include <vector>

namespace pavane
{

/// Closure phases against time, a panel a triangle, and closure amplitudes, a panel a quad, with
/// errors; a model's as a line, and its reduced chi-squared in the panels' captions.
class PAVANE_API AClosureWnd : public AChartWnd
{
public:
    ~AClosureWnd() override;

    /// Begins to read triangles and quads of a file, which is not owned and goes after the window
    /// or after another call. Null shows nothing.
    void SetData(AUVXFile* file, ClosureChoice choice = {}, UvMarks marks = {},
                 const ClosureAveraging& averaging = {}, const AComponents& model = {});
    /// What has been read; null without a file.
    const ClosureReader* GetReader() const { return reader_.get(); }

    double ReadDone() const override { return reader_ ? reader_->done() : 1; }

protected:
    int readMore(std::string& error) override;
    PanelChart makeChart() override;

private:
    AUVXFile* file_ = nullptr;
    std::unique_ptr<ClosureReader> reader_;
};

}  // namespace pavane

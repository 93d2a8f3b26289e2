#include "pavane/calibration/windows/ABaselineWnd.h"

#include "pavane/calibration/visibility_charts.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr std::int64_t pieceBytes = std::int64_t{1} << 20;

}  // namespace

ABaselineWnd::~ABaselineWnd() = default;

void ABaselineWnd::SetData(AUVXFile* file, std::vector<UvBaseline> baselines, BaselinePlot plot,
                           UvMarks marks, const AComponents& model,
                           const BaselineDivision& division)
{
    endReading();
    file_ = file;
    plot_ = plot;
    telescope_ = -1;
    telescopes_ = telescopesOf(baselines);
    reader_ =
        file ? std::make_unique<BaselineReader>(*file, std::move(baselines), plot, std::move(marks),
                                                model, BaselineReader::usualSums, division)
             : nullptr;
    if (reader_)
        beginReading();
}

int ABaselineWnd::readMore(std::string& error)
{
    if (!reader_ || reader_->step(pieceBytes))
        return reader_ != nullptr;
    error = reader_->error();
    return 0;
}

PanelChart ABaselineWnd::makeChart()
{
    if (!reader_)
        return {};
    if (IsReading() || IsStopped())
        reader_->refresh();
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < reader_->baselines().size(); ++i) {
        const UvBaseline& b = reader_->baselines()[i];
        if (telescope_ >= 0) {
            const ClosureTelescope& of = telescopes_[static_cast<std::size_t>(telescope_)];
            if (b.subarray != of.subarray || (b.first != of.number && b.second != of.number))
                continue;
        }
        shown.push_back(i);
    }
    return baselineChart(*file_, *reader_, plot_, shown);
}

void ABaselineWnd::ShowNext(int step)
{
    if (GetPanelsOfPage() == 1 || telescopes_.empty() || !reader_)
        return AChartWnd::ShowNext(step);
    const int choices = static_cast<int>(telescopes_.size()) + 1;
    telescope_ = (telescope_ + 1 + step + choices) % choices - 1;
    showOthers();
}

void ABaselineWnd::SetPanelsOfPage(int panels)
{
    if (panels > 1 || telescope_ < 0)
        return AChartWnd::SetPanelsOfPage(panels);
    telescope_ = -1;
    AChartWnd::SetPanelsOfPage(panels);
}

}  // namespace pavane

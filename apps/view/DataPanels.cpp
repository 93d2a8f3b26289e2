#include "apps/view/DataPanels.h"

#include "apps/view/visibility_plot.h"
#include "pavane/calibration/windows/AClosureSelectDlg.h"
#include "platform/message.h"

#include <algorithm>
#include <utility>

namespace pavane
{

int DataPanels::Create(CWnd* parent, unsigned firstId)
{
    constexpr unsigned style = WS_CHILD | WS_TABSTOP;
    return baselines_.Create(baselines_.GetWndClassName(), "Amplitude and phase of baselines",
                             style, CRect(), parent, firstId) &&
           closure_.Create(closure_.GetWndClassName(), "Closure phases", style, CRect(), parent,
                           firstId + 1);
}

AChartWnd* DataPanels::window(DataPlot kind)
{
    return isOfPoints(kind) ? nullptr
           : kind == DataPlot::time || kind == DataPlot::bandpass
               ? static_cast<AChartWnd*>(&baselines_)
               : &closure_;
}

/// The baselines with marks, both of whose telescopes have them too.
std::vector<UvBaseline> DataPanels::markedBaselines(UvObservation& observation,
                                                    const UvMarks& marks) const
{
    const AUVXFile& file = observation.file();
    std::vector<UvBaseline> left;
    const std::vector<UvBaseline>& all = observation.baselines();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const UvBaseline& b = all[i];
        int isMarked = b.first != b.second &&
                       (!marks.baselines.count() || marks.baselines.get(static_cast<int>(i)));
        for (const int number : {b.first, b.second}) {
            const AUVXTlscItem* const item = file.telescope(b.subarray, number);
            if (marks.telescopes.count() && marks.telescopes.ones() < marks.telescopes.count())
                isMarked = isMarked && item &&
                           marks.telescopes.get(static_cast<int>(item - file.telescopes().data()));
        }
        if (isMarked)
            left.push_back(b);
    }
    return left;
}

int DataPanels::Read(DataPlot kind, UvObservation& observation, const UvMarks& marks,
                     const AComponents& model, const BaselineDivision& division, std::string& error)
{
    std::vector<UvBaseline> baselines = markedBaselines(observation, marks);
    AUVXFile& file = observation.file();
    Clear();
    if (kind != listKind_)
        DropList();
    if (kind == DataPlot::closure || kind == DataPlot::amplitudes) {
        ClosureChoice choice;
        if (kind == DataPlot::amplitudes ? !chosenAmplitudes(baselines, choice, error)
            : chosen_.empty()            ? !chosenClosures(file, list_, baselines, choice, error)
                                         : !keepJoined(chosen_, baselines, choice, error))
            return 0;
        ClosureAveraging averaging = averaging_;
        averaging.split.ifs = averaging.split.ifs || division.colour == UvColour::ifs;
        if (!(averaging.seconds > 0))
            averaging.seconds = division.seconds;
        closure_.SetData(&file, std::move(choice), marks, averaging, model);
        return 1;
    }
    if (!chosenBaselines(file, list_, baselines, error))
        return 0;
    const int isTime = kind == DataPlot::time;
    const int isDivided = plotRefusal(kind, division.colour, 0).empty();
    baselines_.SetData(
        &file, std::move(baselines), isTime ? BaselinePlot::time : BaselinePlot::channels, marks,
        model, {isDivided ? division.colour : UvColour::none, isTime ? division.seconds : 0});
    return 1;
}

int DataPanels::AskTriangles(CWnd* parent, UvObservation& observation, const UvMarks& marks)
{
    AClosureSelectDlg dialog(observation.file(), markedBaselines(observation, marks), marks,
                             parent);
    if (!chosen_.empty())
        dialog.SetChosen(chosen_);
    dialog.SetAveraging(averaging_);
    if (dialog.DoModal() != IDOK)
        return 0;
    chosen_ = dialog.GetChosen();
    averaging_ = dialog.GetAveraging();
    DropList();
    return 1;
}

void DataPanels::ForgetFile()
{
    Clear();
    chosen_.clear();
    averaging_ = {};
}

void DataPanels::Clear()
{
    baselines_.SetData(nullptr);
    closure_.SetData(nullptr);
}

void DataPanels::SetPanelsOfPage(int panels)
{
    baselines_.SetPanelsOfPage(panels);
    closure_.SetPanelsOfPage(panels);
}

}  // namespace pavane

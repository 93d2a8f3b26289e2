#include "pavane/calibration/flag_charts.h"

#include "pavane/axes/graph_styles.h"
#include "pavane/calibration/chart_curves.h"
#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/visibility_charts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

namespace pavane
{

namespace
{

constexpr double halfTurn = 180;
constexpr double degreesOfRadian = 57.295779513082320877;
constexpr double roomAbove = 1.02;
constexpr COLORREF flaggedColor = RGB(150, 150, 150);
constexpr COLORREF distanceModelColor = RGB(225, 90, 0);
constexpr int noPart = -1;

/// A point of a plot.
struct Shown {
    double x = 0;
    std::complex<double> value, model;
    double weight = 0;
    std::uint32_t row = 0;
    int part = noPart;  ///< of EditedVisibilities; noPart: the mean of them
};

double shownValue(const std::complex<double>& value, int isPhase)
{
    return isPhase ? degreesOf(value) : std::abs(value);
}

double shownError(const Shown& point, int isPhase)
{
    const double error = 1 / std::sqrt(point.weight);
    const double size = std::abs(point.value);
    return !isPhase   ? error
           : size > 0 ? std::min(error / size * degreesOfRadian, halfTurn)
                      : halfTurn;
}

/// Calls `take` with each point of a baseline that is flagged, or that is not.
template <class Take>
void forPoints(const EditedVisibilities& data, const FlagChartChoice& choice, std::size_t baseline,
               int flagged, Take take)
{
    const int hasModel = choice.model && data.hasModel();
    const auto parts = static_cast<int>(data.parts().size());
    for (const std::uint32_t row : data.rowsOf(baseline)) {
        Shown mean;
        mean.x = data.rows()[row].time * secondsPerDay;
        mean.row = row;
        for (int p = 0; p < parts; ++p) {
            const auto part = static_cast<std::size_t>(p);
            const EditedVisibilities::Cell& cell = data.cell(row, part);
            if (!(cell.weight > 0) || (data.isFlagged(row, part) != 0) != (flagged != 0))
                continue;
            Shown one = mean;
            one.value = cell.value();
            one.weight = double{cell.weight};
            one.model = hasModel ? data.model(row, part) : 0;
            one.part = p;
            if (choice.isDistance)
                one.x = data.distance(row, part);
            if (choice.isDistance || choice.isSplit) {
                take(one);
                continue;
            }
            mean.value += one.weight * one.value;
            mean.model += one.weight * one.model;
            mean.weight += one.weight;
        }
        if (choice.isDistance || choice.isSplit || !(mean.weight > 0))
            continue;
        mean.value /= mean.weight;
        mean.model /= mean.weight;
        take(std::as_const(mean));
    }
}

std::vector<std::size_t> shownBaselines(const EditedVisibilities& data,
                                        const FlagChartChoice& choice)
{
    std::vector<std::size_t> shown;
    for (const std::size_t b : data.order()) {
        const UvBaseline& baseline = data.baselines()[b];
        if (choice.telescope == 0 ||
            (baseline.subarray == choice.subarray &&
             (baseline.first == choice.telescope || baseline.second == choice.telescope)))
            shown.push_back(b);
    }
    return shown;
}

std::vector<std::size_t> baselinesOf(const EditedVisibilities& data, const FlagChartChoice& choice,
                                     const FlagPanel& panel)
{
    if (panel.baseline == FlagPanel::all)
        return shownBaselines(data, choice);
    if (panel.baseline < 0 || static_cast<std::size_t>(panel.baseline) >= data.baselines().size())
        return {};
    return {static_cast<std::size_t>(panel.baseline)};
}

/// The curves of a panel while they are filled.
class PanelCurves
{
public:
    PanelCurves(const EditedVisibilities& data, const FlagChartChoice& choice, int isPhase)
        : data_(data), choice_(choice), isPhase_(isPhase),
          points_(choice.isSplit ? data.parts().size() : 1), models_(points_.size())
    {
        flagged_.color = flaggedColor;
        flagged_.marker = graphPointCross;
        if (choice.isSplit)  // a legend that comes with the first flag would move the panels
            flagged_.name = "flagged";
    }

    /// So many points of each series are likely.
    void reserve(std::size_t count)
    {
        for (ChartCurve& curve : points_) {
            curve.x.reserve(count);
            curve.y.reserve(count);
        }
    }

    void add(const Shown& point, int flagged)
    {
        const double y = shownValue(point.value, isPhase_);
        most_ = std::max(most_, y);
        if (flagged) {
            flagged_.x.push_back(point.x);
            flagged_.y.push_back(y);
            return;
        }
        const std::size_t series =
            choice_.isSplit && point.part >= 0 ? static_cast<std::size_t>(point.part) : 0;
        ChartCurve& curve = points_[series];
        curve.x.push_back(point.x);
        curve.y.push_back(y);
        if (choice_.errors)
            curve.error.push_back(shownError(point, isPhase_));
        if (!choice_.model || !data_.hasModel())
            return;
        const double model = shownValue(point.model, isPhase_);
        most_ = std::max(most_, model);
        models_[series].x.push_back(point.x);
        models_[series].y.push_back(static_cast<float>(model));
    }

    ChartScale scale()
    {
        ChartScale made;
        made.name = isPhase_ ? "Phase [\u00b0]" : "Amplitude [%sJy]";
        if (isPhase_) {
            made.least = -halfTurn;
            made.greatest = halfTurn;
            made.period = 2 * halfTurn;
        } else if (most_ > 0) {
            made.least = 0;
            made.greatest = roundedUp(roomAbove * most_);
        }
        if (!flagged_.x.empty())  // below what counts
            made.curves.push_back(std::move(flagged_));
        for (std::size_t i = 0; i < points_.size(); ++i) {
            points_[i].color = chartColors[i % std::size(chartColors)];
            if (choice_.isSplit)
                points_[i].name = partName(*data_.file(), data_.parts()[i]);
            made.curves.push_back(std::move(points_[i]));
        }
        for (Model& model : models_) {
            if (model.x.empty())
                continue;
            ChartCurve curve;
            if (choice_.isDistance) {
                curve.x = std::move(model.x);
                curve.y.assign(model.y.begin(), model.y.end());
                curve.color = distanceModelColor;
            } else {
                curve = chartLine(model.x, 1, model.y, modelColor);
            }
            if (choice_.isSplit)
                curve.name = "model";
            made.curves.push_back(std::move(curve));
        }
        return made;
    }

private:
    struct Model {
        std::vector<double> x;
        std::vector<float> y;
    };
    const EditedVisibilities& data_;
    const FlagChartChoice& choice_;
    int isPhase_;
    double most_ = 0;
    std::vector<ChartCurve> points_;
    std::vector<Model> models_;
    ChartCurve flagged_;
};

ChartPanel panelOf(const EditedVisibilities& data, const FlagChartChoice& choice,
                   const FlagPanel& panel)
{
    ChartPanel made;
    PanelCurves curves(data, choice, panel.isPhase);
    if (panel.baseline >= 0)
        curves.reserve(data.rowsOf(static_cast<std::size_t>(panel.baseline)).size());
    for (const std::size_t b : baselinesOf(data, choice, panel))
        for (const int flagged : {0, 1})
            if (!flagged || choice.flagged)
                forPoints(data, choice, b, flagged,
                          [&](const Shown& point) { curves.add(point, flagged); });
    if (panel.baseline >= 0)
        made.caption =
            baselineName(*data.file(), data.baselines()[static_cast<std::size_t>(panel.baseline)]);
    made.scales.push_back(curves.scale());
    return made;
}

}  // namespace

int flagColumns(const FlagChartChoice& choice)
{
    return choice.amplitudes && choice.phases && !choice.isDistance ? 2 : 1;
}

int flagRows(const FlagChartChoice& choice, std::size_t panels)
{
    const int rows = static_cast<int>(panels) / flagColumns(choice);
    return choice.isDistance ? std::max(rows, 1)
                             : std::clamp(rows, 1, std::max(choice.rowsOfPage, 1));
}

std::vector<FlagPanel> flagPanels(const EditedVisibilities& data, const FlagChartChoice& choice)
{
    std::vector<FlagPanel> panels;
    const std::vector<std::size_t> shown = shownBaselines(data, choice);
    if (!data.file() || shown.empty())
        return panels;
    if (choice.isDistance) {
        for (const int isPhase : {0, 1})
            if (isPhase ? choice.phases : choice.amplitudes)
                panels.push_back({FlagPanel::all, isPhase});
        return panels;
    }
    const auto rows = static_cast<std::size_t>(std::max(choice.rowsOfPage, 1));
    for (std::size_t first = 0; first < shown.size(); first += rows) {
        const std::size_t left = std::min(rows, shown.size() - first);
        // an only page has no empty places
        const std::size_t places = shown.size() > rows && flagColumns(choice) > 1 ? rows : left;
        for (const int isPhase : {0, 1})
            for (std::size_t i = 0; i < places && (isPhase ? choice.phases : choice.amplitudes);
                 ++i)
                panels.push_back({i < left ? static_cast<int>(shown[first + i])
                                           : static_cast<int>(FlagPanel::none),
                                  isPhase});
    }
    return panels;
}

PanelChart flagChart(const EditedVisibilities& data, const FlagChartChoice& choice)
{
    PanelChart chart;
    if (!data.file())
        return chart;
    chart.header = chartHeader(*data.file());
    chart.nameX = choice.isDistance ? "uv distance [%s\u03bb]" : "Time";
    chart.isTime = !choice.isDistance;
    chart.isLegendAbove = 1;
    for (const FlagPanel& panel : flagPanels(data, choice))
        if (panel.baseline == FlagPanel::none)
            chart.panels.push_back({"", {ChartScale{}}});
        else
            chart.panels.push_back(panelOf(data, choice, panel));
    return chart;
}

std::vector<FlagPoint> flagPointsIn(const EditedVisibilities& data, const FlagChartChoice& choice,
                                    const FlagPanel& panel, const FlagRect& rect, int flagged)
{
    std::vector<FlagPoint> found;
    if (!data.file())
        return found;
    const UvHeader& header = data.file()->header();
    std::set<int> ifs;
    for (const UvCells::Part& part : data.parts())
        ifs.insert(part.ifIndex);
    const int hasAllIfs = ifs.count(-1) || std::ssize(ifs) == header.ifs;
    for (const std::size_t b : baselinesOf(data, choice, panel)) {
        const UvBaseline& baseline = data.baselines()[b];
        forPoints(data, choice, b, flagged, [&](const Shown& point) {
            const double y = shownValue(point.value, panel.isPhase);
            if (point.x < rect.xLeast || point.x > rect.xGreatest || y < rect.yLeast ||
                y > rect.yGreatest)
                return;
            FlagPoint one{baseline.subarray, baseline.first, baseline.second,
                          data.rows()[point.row].time};
            const int isMean = point.part == noPart;
            if (isMean && hasAllIfs) {
                found.push_back(one);
                return;
            }
            for (std::size_t p = 0; p < data.parts().size(); ++p) {
                const UvCells::Part& part = data.parts()[p];
                if (!isMean && static_cast<int>(p) != point.part)
                    continue;
                one.ifIndex = part.ifIndex;
                if (!isMean && part.stokes >= 0)
                    one.stokes = header.stokes[static_cast<std::size_t>(part.stokes)];
                found.push_back(one);
            }
        });
    }
    return found;
}

}  // namespace pavane

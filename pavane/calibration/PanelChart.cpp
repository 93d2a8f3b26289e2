#include "pavane/calibration/PanelChart.h"

#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

/// Pages of more panels than the first number get another column each time.
constexpr int panelsOfColumns[] = {8, 20};
constexpr int linear = 1, timeCode = 2;
constexpr int scaleIntervals = 4;

/// The line over the picture.
class HeaderLine : public AGraph
{
public:
    HeaderLine(ABAxis* axis, CString text) : AGraph(axis, 0), text_(std::move(text)) {}
    int hasHeaderText(int index) const override { return index == 0; }
    CString getHeaderText(int) const override { return text_; }

private:
    CString text_;
};

/// All of x, with room at both ends for what stands there; unset without values.
TMinMax rangeOf(const PanelChart& chart)
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    for (const ChartPanel& panel : chart.panels)
        for (const ChartScale& scale : panel.scales)
            for (const ChartCurve& curve : scale.curves)
                for (const double x : curve.x) {
                    least = std::min(least, x);
                    greatest = std::max(greatest, x);
                }
    TMinMax range;
    constexpr double room = 0.02;
    const double more = least < greatest ? room * (greatest - least) : 1;
    if (least <= greatest) {
        range.xMin = least - more;
        range.xMax = greatest + more;
    }
    return range;
}

AGraph* newGraph(A2DAxisMulti* axis, ChartCurve& curve)
{
    const auto count = static_cast<int>(std::min(curve.x.size(), curve.y.size()));
    double* const x = curve.x.data();
    double* const y = curve.y.data();
    if (curve.isLine)
        return new AGraphXYLine(axis, x, y, count, nullptr, PS_SOLID, 2, curve.color, 0);
    auto* const points =
        new AGraphXYErrors(axis, x, y, count, nullptr, graphPointDot, 1, curve.color, 0);
    if (curve.error.size() >= curve.y.size())
        points->setYErrors(curve.error.data());
    return points;
}

/// An axis that has the arrays of its graphs.
class ChartAxis : public A2DAxisMulti
{
public:
    explicit ChartAxis(PanelChart chart, TMinMax range)
        : A2DAxisMulti(chart.isTime ? timeCode : linear, linear, &range, 0),
          chart_(std::move(chart))
    {
    }
    PanelChart& chart() { return chart_; }

private:
    PanelChart chart_;
};

}  // namespace

A2DAxisMulti* newChartAxis(PanelChart chart, int panelsOfPage)
{
    const TMinMax range = rangeOf(chart);
    auto* const axis = new ChartAxis(std::move(chart), range);
    std::vector<ChartPanel>& panels = axis->chart().panels;
    axis->setNameOX(axis->chart().nameX);
    const auto count = static_cast<int>(panels.size());
    const int onPage = std::clamp(panelsOfPage > 0 ? panelsOfPage : count, 1, std::max(count, 1));
    int columns = 1;
    for (const int most : panelsOfColumns)
        columns += onPage > most;
    const int rows = (onPage + columns - 1) / columns;
    axis->setPanels(columns, panelsOfPage > 0 ? rows : 0);
    if (!axis->chart().header.empty())
        (void)new HeaderLine(axis, axis->chart().header);
    int next = 0;  // scale 0 is always there
    for (int p = 0; p < count; ++p) {
        ChartPanel& panel = panels[static_cast<std::size_t>(p)];
        axis->setPanelCaption(p, panel.caption);
        int side = 1;
        for (ChartScale& scale : panel.scales) {
            AYScale made;
            made.name = scale.name;
            if (scale.least <= scale.greatest)
                made.range = {scale.least, scale.greatest};
            made.panel = p;
            made.side = side++;
            made.period = scale.period;
            made.intervals = scaleIntervals;
            if (!scale.curves.empty())
                made.color = scale.curves.front().color;
            const int index = next ? axis->addScale(made) : 0;
            if (!next++)
                (void)axis->setScale(0, made);
            for (ChartCurve& curve : scale.curves)
                (void)axis->setScaleOf(newGraph(axis, curve), index);
        }
    }
    return axis;
}

}  // namespace pavane

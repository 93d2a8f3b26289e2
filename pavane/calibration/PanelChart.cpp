#include "pavane/calibration/PanelChart.h"

#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"

#include <algorithm>
#include <cmath>
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

/// All of x, with room at both ends for what stands there, of lines only where there is nothing
/// else; unset without values.
TMinMax rangeOf(const PanelChart& chart)
{
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    const auto widen = [&](int byLines) {
        for (const ChartPanel& panel : chart.panels)
            for (const ChartScale& scale : panel.scales)
                for (const ChartCurve& curve : scale.curves)
                    for (const double x : curve.x)
                        if (std::isfinite(x) && (curve.isLine != 0) == byLines) {
                            least = std::min(least, x);
                            greatest = std::max(greatest, x);
                        }
    };
    widen(0);
    if (least > greatest)
        widen(1);
    TMinMax range;
    constexpr double room = 0.02;
    constexpr double half = 0.5;  // of what is counted
    const double span = greatest - least;
    const double more = chart.isWholeX ? std::max(half, room * span) : span > 0 ? room * span : 1;
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
        return new AGraphXYLine(axis, x, y, count, nullptr, PS_SOLID, 1, curve.color, 0);
    if (curve.error.size() < curve.y.size() || curve.error.empty())
        return new AGraphXYPoint(axis, x, y, count, nullptr, curve.marker, 1, curve.color, 0);
    auto* const points =
        new AGraphXYErrors(axis, x, y, count, nullptr, curve.marker, 1, curve.color, 0);
    points->setYErrors(curve.error.data());
    return points;
}

/// An axis that has the arrays of its graphs.
class ChartAxis : public A2DAxisMulti
{
public:
    explicit ChartAxis(PanelChart chart)
        : A2DAxisMulti(chart.isTime ? timeCode : linear, linear, nullptr, 0)
    {
        put(std::move(chart));
    }
    const PanelChart& chart() const { return chart_; }
    /// The scales that are there become those of the chart, which may have more.
    void put(PanelChart chart);
    void setOut(int panelsOfPage);

private:
    void putPanel(int number, ChartPanel& panel, int& next);

    PanelChart chart_;
};

void ChartAxis::put(PanelChart chart)
{
    while (childs().count() > 0)  // whose points are those of the chart before
        (void)deleteGraph(childs()(childs().count() - 1));
    chart_ = std::move(chart);
    setLegend(legendNone);
    setNameOX(chart_.nameX);
    setWholeX(chart_.isWholeX);
    (void)setCurrentScale(0);
    TMinMax range = getMinMax();
    const TMinMax all = rangeOf(chart_);
    range.xMin = all.xMin;
    range.xMax = all.xMax;
    setMinMax(range);
    if (!chart_.header.empty())
        (void)new HeaderLine(this, chart_.header);
    int next = 0;  // scale 0 is always there
    int number = 0;
    for (ChartPanel& panel : chart_.panels)
        putPanel(number++, panel, next);
}

void ChartAxis::putPanel(int number, ChartPanel& panel, int& next)
{
    setPanelCaption(number, panel.caption);
    int side = 1;
    for (ChartScale& scale : panel.scales) {
        AYScale made;
        made.name = scale.name;
        if (scale.least <= scale.greatest)
            made.range = {scale.least, scale.greatest};
        made.panel = number;
        made.side = side++;
        made.period = scale.period;
        made.intervals = scaleIntervals;
        if (!scale.curves.empty() && !scale.isPlain)
            made.color = scale.curves.front().color;
        const int index = next++;
        if (index < getScaleCount())
            (void)setScale(index, made);
        else
            (void)addScale(made);
        for (ChartCurve& curve : scale.curves) {
            AGraph* const graph = newGraph(this, curve);
            (void)setScaleOf(graph, index);
            if (curve.name.empty())
                continue;
            graph->setGraphName(curve.name);
            setLegend(chart_.isLegendAbove ? legendAbove : legendEmptiest);
        }
    }
}

void ChartAxis::setOut(int panelsOfPage)
{
    const auto count = static_cast<int>(chart_.panels.size());
    const int onPage = std::clamp(panelsOfPage > 0 ? panelsOfPage : count, 1, std::max(count, 1));
    int columns = 1;
    for (const int most : panelsOfColumns)
        columns += onPage > most;
    setPanels(columns, panelsOfPage > 0 ? (onPage + columns - 1) / columns : 0, panelsOfPage);
}

/// Whether the scales of two charts have the same numbers and panels.
int isAlike(const PanelChart& a, const PanelChart& b)
{
    return a.isTime == b.isTime &&
           std::equal(a.panels.begin(), a.panels.end(), b.panels.begin(), b.panels.end(),
                      [](const ChartPanel& one, const ChartPanel& other) {
                          return one.scales.size() == other.scales.size();
                      });
}

}  // namespace

A2DAxisMulti* newChartAxis(PanelChart chart, int panelsOfPage)
{
    auto* const axis = new ChartAxis(std::move(chart));
    axis->setOut(panelsOfPage);
    return axis;
}

int fillChartAxis(A2DAxisMulti& axis, PanelChart&& chart, int panelsOfPage)
{
    auto* const known = dynamic_cast<ChartAxis*>(&axis);
    if (!known || !isAlike(known->chart(), chart))
        return 0;
    known->put(std::move(chart));
    known->setOut(panelsOfPage);
    return 1;
}

}  // namespace pavane

#include "pavane/calibration/gain_charts.h"

#include "pavane/axes/graph_styles.h"
#include "pavane/calibration/chart_curves.h"
#include "pavane/calibration/EditedGains.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsOfDay = 86400;
constexpr double halfTurn = 180;
constexpr double degree = std::numbers::pi / halfTurn;
/// Lines go over gaps of at most so many intervals.
constexpr double mostGap = 2;
constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

/// Told apart by those who see few colours, too: Okabe and Ito (2008), then darker ones.
constexpr COLORREF seriesColors[] = {RGB(0, 114, 178),   RGB(213, 94, 0),   RGB(0, 158, 115),
                                     RGB(204, 121, 167), RGB(86, 180, 233), RGB(230, 159, 0),
                                     RGB(120, 94, 240),  RGB(90, 90, 90),   RGB(0, 60, 100),
                                     RGB(120, 50, 0),    RGB(0, 90, 60),    RGB(120, 50, 90)};
constexpr COLORREF failedColor = RGB(200, 0, 0);
constexpr COLORREF flaggedColor = RGB(150, 150, 150);

std::vector<std::size_t> shownAntennas(const AGains& gains, const GainChartChoice& choice)
{
    std::vector<std::size_t> shown;
    for (const std::size_t antenna : choice.antennas)
        if (antenna < gains.antennas().size())
            shown.push_back(antenna);
    if (choice.antennas.empty()) {
        shown.resize(gains.antennas().size());
        std::iota(shown.begin(), shown.end(), std::size_t{0});
    }
    return shown;
}

double shownValue(const Gain& gain, int isPhase)
{
    return isPhase ? gainPhase(gain) : std::abs(gain.value);
}

double shownError(const Gain& gain, int isPhase)
{
    const double size = std::abs(gain.value);
    return !isPhase ? gain.error : size > 0 ? std::min(gain.error / size / degree, halfTurn) : 0;
}

/// What a panel shows of one group and hand.
class Series
{
public:
    Series(const GainChartChoice& choice, int isPhase, COLORREF color)
        : isPhase_(isPhase), withErrors_(choice.errors)
    {
        points_.color = line_.color = color;
        line_.isLine = 1;
    }

    void add(double x, const Gain& gain, ChartCurve& failed, ChartCurve& flagged)
    {
        if (gain.state == GainState::missing)
            return breakLine();
        if (gain.state == GainState::failed) {
            failed.x.push_back(x);
            failed.y.push_back(last_);
            return breakLine();
        }
        const double y = shownValue(gain, isPhase_);
        if (gain.isFlagged) {
            flagged.x.push_back(x);
            flagged.y.push_back(y);
            return breakLine();
        }
        if (isPhase_ && std::abs(y - last_) > halfTurn)
            breakLine();  // through the end of the scale, not across all of it
        points_.x.push_back(x);
        points_.y.push_back(y);
        if (withErrors_)
            points_.error.push_back(shownError(gain, isPhase_));
        line_.x.push_back(x);
        line_.y.push_back(y);
        last_ = y;
    }
    int isEmpty() const { return points_.x.empty(); }
    /// Where a failed solution that comes first is marked.
    void beginAt(double y) { last_ = y; }
    ChartCurve& points() { return points_; }
    ChartCurve& line() { return line_; }

    void breakLine()
    {
        if (line_.x.empty() || std::isnan(line_.y.back()))
            return;
        line_.x.push_back(line_.x.back());
        line_.y.push_back(nothing);
    }

private:
    int isPhase_;
    int withErrors_;
    double last_ = 0;
    ChartCurve points_;
    ChartCurve line_;
};

/// The first solution of an antenna that is shown; where there is none a gain of 1.
double firstValue(const AGains& gains, std::size_t group, std::size_t hand, const GainPanel& panel)
{
    for (std::size_t i = 0; i < gains.intervals().size(); ++i)
        if (const Gain& gain = gains.at(i, group, hand, static_cast<std::size_t>(panel.antenna));
            gain.isUsable())
            return shownValue(gain, panel.isPhase);
    return panel.isPhase ? 0 : 1;
}

/// Half the range of the phases that are shown, one for all antennas.
double phaseReach(const AGains& gains, const GainChartChoice& choice)
{
    double most = 0;
    for (const std::size_t antenna : shownAntennas(gains, choice))
        for (std::size_t i = 0; i < gains.intervals().size(); ++i)
            for (std::size_t group = 0; group < gains.groups().size(); ++group)
                for (std::size_t hand = 0; hand < gains.hands().size(); ++hand)
                    if (const double phase = std::abs(gainPhase(gains.at(i, group, hand, antenna)));
                        phase > most)
                        most = phase;
    return phaseRange(most);
}

ChartPanel panelOf(const AGains& gains, const GainChartChoice& choice, const GainPanel& panel,
                   const std::vector<std::size_t>& byTime, double phases)
{
    ChartPanel made;
    ChartScale scale;
    if (panel.isPhase) {
        scale.name = "Phase [\u00b0]";
        scale.least = -phases;
        scale.greatest = phases;
        scale.period = 2 * halfTurn;
    } else {
        scale.name = "Amplitude";
    }
    const auto antenna = static_cast<std::size_t>(panel.antenna);
    made.caption = gainAntennaName(gains, antenna);
    ChartCurve failed, flagged;
    failed.color = failedColor;
    failed.marker = graphPointCrossInverse;
    flagged.color = flaggedColor;
    flagged.marker = graphPointCross;
    std::vector<ChartCurve> lines, points;
    for (std::size_t group = 0; group < gains.groups().size(); ++group)
        for (std::size_t hand = 0; hand < gains.hands().size(); ++hand) {
            const std::size_t number = group * gains.hands().size() + hand;
            Series series(choice, panel.isPhase, seriesColors[number % std::size(seriesColors)]);
            series.beginAt(firstValue(gains, group, hand, panel));
            double end = -std::numeric_limits<double>::infinity();
            for (const std::size_t i : byTime) {
                const GainInterval& interval = gains.intervals()[i];
                if (interval.start - end > mostGap * (interval.end - interval.start))
                    series.breakLine();  // another scan
                end = interval.end;
                series.add(interval.middle() * secondsOfDay, gains.at(i, group, hand, antenna),
                           failed, flagged);
            }
            if (series.isEmpty())
                continue;
            series.points().name =
                gainGroupName(gains, group) + ' ' + std::string(1, gains.hands()[hand]);
            if (choice.lines)
                lines.push_back(std::move(series.line()));
            points.push_back(std::move(series.points()));
        }
    failed.name = "failed";
    flagged.name = "flagged";
    scale.curves = std::move(lines);
    for (ChartCurve* const curve : {&flagged, &failed})
        if (!curve->x.empty())
            points.push_back(std::move(*curve));
    std::move(points.begin(), points.end(), std::back_inserter(scale.curves));
    made.scales.push_back(std::move(scale));
    return made;
}

}  // namespace

double gainPhase(const Gain& gain) { return std::arg(gain.value) / degree; }

std::string gainAntennaName(const AGains& gains, std::size_t antenna)
{
    const GainAntenna& one = gains.antennas()[antenna];
    const std::string name = one.name.empty() ? std::to_string(one.number) : one.name;
    return one.subarray > 1 ? std::to_string(one.subarray) + ':' + name : name;
}

std::string gainGroupName(const AGains& gains, std::size_t group)
{
    const std::vector<int>& ifs = gains.groups()[group];
    std::string name = "IF ";
    for (std::size_t i = 0; i < ifs.size(); ++i) {
        std::size_t last = i;
        while (last + 1 < ifs.size() && ifs[last + 1] == ifs[last] + 1)
            ++last;
        name.append(i ? "," : "").append(std::to_string(ifs[i] + 1));
        if (last > i)
            name.append("-").append(std::to_string(ifs[last] + 1));
        i = last;
    }
    return name;
}

int gainColumns(const GainChartChoice& choice)
{
    return choice.amplitudes && choice.phases ? 2 : 1;
}

std::vector<GainPanel> gainPanels(const AGains& gains, const GainChartChoice& choice)
{
    const std::vector<std::size_t> shown = shownAntennas(gains, choice);
    const auto rows = static_cast<std::size_t>(std::max(choice.rowsOfPage, 1));
    std::vector<GainPanel> panels;
    for (std::size_t first = 0; first < shown.size(); first += rows) {
        const std::size_t left = std::min(rows, shown.size() - first);
        // an only page has no empty places
        const std::size_t places = shown.size() > rows && gainColumns(choice) > 1 ? rows : left;
        for (const int isPhase : {0, 1})
            for (std::size_t i = 0; i < places && (isPhase ? choice.phases : choice.amplitudes);
                 ++i)
                panels.push_back({i < left ? static_cast<int>(shown[first + i]) : -1, isPhase});
    }
    return panels;
}

PanelChart gainChart(const AGains& gains, const GainChartChoice& choice)
{
    PanelChart chart;
    chart.nameX = "Time";
    chart.isTime = 1;
    chart.isLegendAbove = 1;
    std::vector<std::size_t> byTime(gains.intervals().size());
    std::iota(byTime.begin(), byTime.end(), std::size_t{0});
    std::stable_sort(byTime.begin(), byTime.end(), [&](std::size_t a, std::size_t b) {
        return gains.intervals()[a].start < gains.intervals()[b].start;
    });
    const double phases = choice.phases ? phaseReach(gains, choice) : halfTurn;
    for (const GainPanel& panel : gainPanels(gains, choice)) {
        if (panel.antenna < 0) {
            chart.panels.push_back({"", {ChartScale{}}});
            continue;
        }
        chart.panels.push_back(panelOf(gains, choice, panel, byTime, phases));
    }
    return chart;
}

std::vector<std::size_t> gainsIn(const AGains& gains, const GainPanel& panel, const GainRect& rect,
                                 int flagged)
{
    std::vector<std::size_t> found;
    if (panel.antenna < 0 || static_cast<std::size_t>(panel.antenna) >= gains.antennas().size())
        return found;
    GainIndex at;
    at.antenna = static_cast<std::size_t>(panel.antenna);
    for (at.interval = 0; at.interval < gains.intervals().size(); ++at.interval) {
        const double x = gains.intervals()[at.interval].middle() * secondsOfDay;
        if (x < rect.xLeast || x > rect.xGreatest)
            continue;
        for (at.group = 0; at.group < gains.groups().size(); ++at.group)
            for (at.hand = 0; at.hand < gains.hands().size(); ++at.hand) {
                const Gain& gain = gains.at(at.interval, at.group, at.hand, at.antenna);
                const double y = shownValue(gain, panel.isPhase);
                if (gain.state == GainState::solved && (gain.isFlagged != 0) == (flagged != 0) &&
                    y >= rect.yLeast && y <= rect.yGreatest)
                    found.push_back(cellOf(gains, at));
            }
    }
    return found;
}

}  // namespace pavane

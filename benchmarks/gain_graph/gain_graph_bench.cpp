// A graph of 100 000 solutions, amplitudes and phases, points and lines, drawn anew.
#include "../peers/qcustomplot_gains.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/gain_charts.h"
#include "platform/picture.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>

namespace
{

using namespace pavane;

constexpr int antennas = 10, intervals = 1250, groups = 4, width = 1200, height = 900;

AGains madeGains()
{
    AGains gains;
    std::vector<GainAntenna> names;
    for (int i = 1; i <= antennas; ++i)
        names.push_back({1, i, std::string("A").append(std::to_string(i))});
    std::vector<GainInterval> times;
    for (int i = 0; i < intervals; ++i)
        times.push_back({i * 2e-4, (i + 1) * 2e-4});
    (void)gains.create(names, times, {{0}, {1}, {2}, {3}}, {'R', 'L'});
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 0.03);
    for (std::size_t i = 0; i < gains.cells().size(); ++i) {
        Gain& gain = gains.cells()[i];
        const double turn = std::sin(static_cast<double>(i) * 1e-4) + noise(random);
        gain.value = std::polar(1 + noise(random), turn);
        gain.state = GainState::solved;
        gain.error = 0.03;
    }
    return gains;
}

GainChartChoice choice()
{
    GainChartChoice made;
    made.rowsOfPage = antennas;
    made.errors = 0;
    return made;
}

void ours(benchmark::State& state)
{
    const AGains gains = madeGains();
    const std::unique_ptr<A2DAxisMulti> axis(newChartAxis(gainChart(gains, choice())));
    axis->setPanels(2, antennas, 2 * antennas);
    CPicture picture(width, height);
    const std::unique_ptr<CDC> dc = picture.dc();
    CRect rect(0, 0, width, height);
    for (auto _ : state) {
        dc->FillSolidRect(rect, RGB(255, 255, 255));
        axis->draw(*dc, rect);
        benchmark::DoNotOptimize(picture.row(0));
    }
}

void oursAnew(benchmark::State& state)
{
    const AGains gains = madeGains();
    CPicture picture(width, height);
    const std::unique_ptr<CDC> dc = picture.dc();
    CRect rect(0, 0, width, height);
    const std::unique_ptr<A2DAxisMulti> axis(newChartAxis(gainChart(gains, choice())));
    for (auto _ : state) {  // as after each rectangle that flags
        (void)fillChartAxis(*axis, gainChart(gains, choice()));
        axis->setPanels(2, antennas, 2 * antennas);
        dc->FillSolidRect(rect, RGB(255, 255, 255));
        axis->draw(*dc, rect);
        benchmark::DoNotOptimize(picture.row(0));
    }
}

void peer(benchmark::State& state, int marker)
{
    const AGains gains = madeGains();
    std::vector<QCustomPlotGains::Curve> curves;
    for (int panel = 0; panel < 2 * antennas; ++panel)
        for (std::size_t group = 0; group < groups; ++group)
            for (std::size_t hand = 0; hand < 2; ++hand) {
                QCustomPlotGains::Curve curve{panel, 0x0072B2, {}, {}};
                for (std::size_t i = 0; i < intervals; ++i) {
                    const Gain& gain =
                        gains.at(i, group, hand, static_cast<std::size_t>(panel % antennas));
                    curve.x.push_back(gains.intervals()[i].middle());
                    curve.y.push_back(panel < antennas ? std::abs(gain.value) : gainPhase(gain));
                }
                curves.push_back(std::move(curve));
            }
    std::vector<std::pair<double, double>> ranges(antennas, {0.8, 1.2});
    ranges.insert(ranges.end(), antennas, {-180, 180});
    QCustomPlotGains plot(curves, 2 * antennas, antennas, 0, intervals * 2e-4, ranges, width,
                          height, marker);
    for (auto _ : state)
        plot.draw();
}

}  // namespace

BENCHMARK(ours)->Name("gain-graph/redraw-100000/pavane")->Unit(benchmark::kMillisecond);
// our markers are squares of 3 pixels in such a picture
BENCHMARK_CAPTURE(peer, squares, 3)
    ->Name("gain-graph/redraw-100000/qcustomplot")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(peer, dots, 0)
    ->Name("gain-graph/redraw-100000/qcustomplot-dots")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(oursAnew)->Name("gain-graph/flagged-100000/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();

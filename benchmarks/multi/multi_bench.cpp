#include "../peers/qcustomplot_panels.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "platform/picture.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace pavane;

constexpr int panels = 45, rows = 9, points = 2000, width = 1200, height = 900;

/// Amplitudes of 45 baselines with their noise.
struct PanelData {
    std::vector<double> x;
    std::vector<std::vector<double>> y;

    PanelData()
    {
        std::mt19937 random(7);
        std::normal_distribution<double> noise(0, 0.08);
        for (int i = 0; i < points; ++i)
            x.push_back(i / (points - 1.0));
        for (int k = 0; k < panels; ++k) {
            std::vector<double>& values = y.emplace_back();
            for (const double t : x)
                values.push_back(std::sin((3 + 0.4 * k) * t) + noise(random));
        }
    }
};

struct Plot {
    PanelData data;
    A2DAxisMulti axis{1, 1, nullptr, 0};
    CPicture picture{width, height};
    std::unique_ptr<CDC> dc = picture.dc();
    CRect rect{0, 0, width, height};
    std::vector<AGraph*> graphs;

    explicit Plot(bool smooth)
    {
        dc->SetSmooth(smooth);
        for (int k = 0; k < panels; ++k) {
            AYScale scale;
            scale.name = "Flux";
            scale.panel = k;
            scale.range = {-1.2, 1.2};
            graphs.push_back(new AGraphXYLine(&axis, data.x.data(),
                                              data.y[static_cast<std::size_t>(k)].data(), points,
                                              nullptr, PS_SOLID, 1, RGB(0, 0, 255), 0));
            axis.setScaleOf(graphs.back(), axis.addScale(scale));
        }
        axis.setPanels(panels / rows, rows);
        axis.setMinMax({0, 1, unsetMinimum, unsetMaximum, 0, 1});
    }
    void draw()
    {
        dc->FillSolidRect(rect, RGB(255, 255, 255));
        axis.draw(*dc, rect);
        benchmark::DoNotOptimize(picture.row(0));
    }
};

void whole(benchmark::State& state, bool smooth)
{
    Plot plot(smooth);
    for (auto _ : state)
        plot.draw();
}

void changed(benchmark::State& state, bool smooth)
{
    Plot plot(smooth);
    plot.draw();
    for (auto _ : state) {
        for (double& value : plot.data.y[20])
            value = -value;
        plot.axis.setChanged(plot.graphs[20]);
        if (!plot.axis.drawChanged(*plot.dc, plot.rect))
            state.SkipWithError("everything was drawn");
        benchmark::DoNotOptimize(plot.picture.row(0));
    }
}

void furniture(benchmark::State& state, bool smooth)
{
    Plot plot(smooth);
    for (std::vector<double>& values : plot.data.y)
        for (double& value : values)
            value = NAN;
    for (auto _ : state)
        plot.draw();
}

void qcustomplotWhole(benchmark::State& state, bool smooth)
{
    const PanelData data;
    QCustomPlotPanels plot(data.x, data.y, rows, width, height, smooth);
    for (auto _ : state)
        plot.draw();
}

void qcustomplotChanged(benchmark::State& state, bool smooth)
{
    PanelData data;
    QCustomPlotPanels plot(data.x, data.y, rows, width, height, smooth);
    for (auto _ : state) {
        for (double& value : data.y[20])
            value = -value;
        plot.change(20, data.x, data.y[20]);
        plot.draw();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    for (const bool smooth : {false, true}) {
        const std::string end = smooth ? "-smooth/" : "/";
        const auto add = [&](const std::string& name, auto function) {
            benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
                function(state, smooth);
            })->Unit(benchmark::kMillisecond);
        };
        add("panels/45-whole" + end + "pavane", whole);
        add("panels/45-whole" + end + "qcustomplot", qcustomplotWhole);
        add("panels/one-changed" + end + "pavane", changed);
        add("panels/one-changed" + end + "qcustomplot", qcustomplotChanged);
        add("panels/45-empty" + end + "pavane", furniture);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

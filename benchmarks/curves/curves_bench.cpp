#include "curve_data.h"

#include "../peers/curve_peers.h"
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/curve_raster.h"
#include "platform/picture.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace
{

using namespace pavane;

const FringeData& curve(std::int64_t n, bool ordered)
{
    static FringeData kept(2);
    static std::int64_t keptFor = 0;
    if (keptFor != (ordered ? n : -n)) {
        kept = FringeData(n, ordered);
        keptFor = ordered ? n : -n;
    }
    return kept;
}

void pavaneCurve(benchmark::State& state, std::int64_t n, bool ordered)
{
    const FringeData& data = curve(n, ordered);
    constexpr int right = FringeData::width - 1, bottom = FringeData::height - 1;
    ADIBase dib(CRect(0, 0, right, bottom));
    const CurveScale xScale{0, 1, right, 0, 1, 0}, yScale{-1.2, 2.4, bottom, bottom, -1, 0};
    for (auto _ : state) {
        dib = short{226};
        dib.SetColor(227);
        drawCurve(dib, {data.x.data(), data.y.data(), n}, xScale, yScale);
        benchmark::DoNotOptimize(dib.lpArray());
    }
}

void qpainterCurve(benchmark::State& state, std::int64_t n, bool ordered)
{
    const FringeData& data = curve(n, ordered);
    for (auto _ : state)
        benchmark::DoNotOptimize(drawWithQPainter(data.x.data(), data.y.data(), n,
                                                  FringeData::width, FringeData::height));
}

// Both arrays read once and nothing else: what no way of drawing can be faster than.
void readOnce(benchmark::State& state, std::int64_t n, bool ordered)
{
    const FringeData& data = curve(n, ordered);
    using Vector __attribute__((vector_size(64))) = double;
    for (auto _ : state) {
        Vector sums[4] = {};
        for (const auto* values : {&data.x, &data.y})
            for (std::size_t i = 0; i + 32 <= values->size(); i += 32)
                for (std::size_t k = 0; k < 4; ++k) {
                    Vector v;
                    __builtin_memcpy(&v, values->data() + i + 8 * k, sizeof v);
                    sums[k] += v;
                }
        const Vector sum = sums[0] + sums[1] + sums[2] + sums[3];
        benchmark::DoNotOptimize(sum[0] + sum[7]);
    }
}

void qcustomplotCurve(benchmark::State& state, std::int64_t n, bool ordered)
{
    const FringeData& data = curve(n, ordered);
    QCustomPlotCurve plot(data.x.data(), data.y.data(), n, FringeData::width, FringeData::height);
    for (auto _ : state)
        plot.draw();
}

/// The curve as windows and pictures show it: soft edges, on white.
void smoothCurve(benchmark::State& state, const FringeData& data, int width)
{
    CPicture picture(FringeData::width, FringeData::height);
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    TMinMax range{0, 1, -1.2, 1.2, 0, 1};
    ABAxis axis(1, 1, &range, 0);
    CRect rect(0, 0, FringeData::width, FringeData::height);
    axis.setGraphRect(CRect(0, 0, rect.right - 1, rect.bottom - 1));
    axis.setFHeight(12);
    axis.setDc(dc.get());
    new AGraphXYLine(&axis, const_cast<double*>(data.x.data()), const_cast<double*>(data.y.data()),
                     static_cast<int>(data.x.size()), nullptr, PS_SOLID, width, 0, 0);
    for (auto _ : state) {
        dc->FillSolidRect(rect, RGB(255, 255, 255));
        axis.drawChilds(*dc, rect, range);
        benchmark::DoNotOptimize(picture.row(0));
    }
}

void addSmooth(const std::string& name, std::int64_t n, double sigma, std::int64_t gap, int width)
{
    const auto entry = [&](const char* who, auto function) {
        benchmark::RegisterBenchmark(("curve/smooth-" + name + "/" + who).c_str(),
                                     [=](benchmark::State& state) {
                                         const FringeData data(n, true, sigma, gap);
                                         function(state, data);
                                     })
            ->Unit(benchmark::kMillisecond);
    };
    entry("pavane", [=](benchmark::State& state, const FringeData& data) {
        smoothCurve(state, data, width);
    });
    if (width == 1)
        entry("qcustomplot", [=](benchmark::State& state, const FringeData& data) {
            QCustomPlotCurve plot(data.x.data(), data.y.data(), n, FringeData::width,
                                  FringeData::height, true);
            for (auto _ : state)
                plot.draw();
        });
}

/// Points in any order, as a plot of amplitudes has them; dots of two pixels.
void addPoints(const std::string& name, int n)
{
    const auto entry = [&](const char* who, auto function) {
        benchmark::RegisterBenchmark(
            ("curve/" + name + "/" + who).c_str(),
            [=](benchmark::State& state) { function(state, curve(n, false)); })
            ->Unit(benchmark::kMillisecond);
    };
    entry("pavane", [](benchmark::State& state, const FringeData& data) {
        CPicture picture(FringeData::width, FringeData::height);
        const auto dc = picture.dc();
        TMinMax range{0, 1, -1.2, 1.2, 0, 1};
        ABAxis axis(1, 1, &range, 0);
        CRect rect(0, 0, FringeData::width, FringeData::height);
        axis.setGraphRect(CRect(0, 0, rect.right - 1, rect.bottom - 1));
        axis.setFHeight(12);
        axis.setDc(dc.get());
        new AGraphXYPoint(&axis, const_cast<double*>(data.x.data()),
                          const_cast<double*>(data.y.data()), static_cast<int>(data.x.size()),
                          nullptr, graphPointDot, 0, 0, 0);
        for (auto _ : state) {
            dc->FillSolidRect(rect, RGB(255, 255, 255));
            axis.drawChilds(*dc, rect, range);
            benchmark::DoNotOptimize(picture.row(0));
        }
    });
    entry("read-once",
          [=](benchmark::State& state, const FringeData&) { readOnce(state, n, false); });
    entry("qcustomplot", [=](benchmark::State& state, const FringeData& data) {
        QCustomPlotCurve plot(data.x.data(), data.y.data(), n, FringeData::width,
                              FringeData::height, false, true);
        for (auto _ : state)
            plot.draw();
    });
}

void add(const std::string& name, std::int64_t n, bool ordered)
{
    const auto entry = [&](const char* who, auto function) {
        benchmark::RegisterBenchmark(("curve/" + name + "/" + who).c_str(),
                                     [=](benchmark::State& state) { function(state, n, ordered); })
            ->Unit(benchmark::kMillisecond);
    };
    entry("pavane", pavaneCurve);
    entry("read-once", readOnce);
    entry("qpainter", qpainterCurve);
    if (ordered)
        entry("qcustomplot", qcustomplotCurve);
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    add("rising-1e4", 10'000, true);
    add("rising-1e6", 1'000'000, true);
    add("rising-1e7", 10'000'000, true);
    add("unordered-1e4", 10'000, false);
    add("unordered-1e6", 1'000'000, false);
    const std::pair<const char*, std::int64_t> sizes[] = {
        {"2e3", 2'000}, {"2e4", 20'000}, {"2e5", 200'000}, {"2e6", 2'000'000}};
    for (const auto& [size, n] : sizes) {
        addSmooth(std::string("fringe-") + size, n, 0, 0, 1);
        addSmooth(std::string("noise-") + size, n, 0.1, 0, 1);
    }
    addPoints("points-1e6", 1'000'000);
    addPoints("points-1e7", 10'000'000);
    addSmooth("gaps-2e5", 200'000, 0.1, 1000, 1);
    addSmooth("wide-2e5", 200'000, 0.1, 0, 2);  // the peer takes seconds for a wide pen
    benchmark::RunSpecifiedBenchmarks();
}

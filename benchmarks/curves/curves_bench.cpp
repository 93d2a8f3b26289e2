#include "curve_data.h"

#include "../peers/curve_peers.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/curve_raster.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{

using namespace pavane;

const CurveData& curve(std::int64_t n, bool ordered)
{
    static CurveData kept(2);
    static std::int64_t keptFor = 0;
    if (keptFor != (ordered ? n : -n)) {
        kept = CurveData(n, ordered);
        keptFor = ordered ? n : -n;
    }
    return kept;
}

void pavaneCurve(benchmark::State& state, std::int64_t n, bool ordered)
{
    const CurveData& data = curve(n, ordered);
    constexpr int right = CurveData::width - 1, bottom = CurveData::height - 1;
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
    const CurveData& data = curve(n, ordered);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            drawWithQPainter(data.x.data(), data.y.data(), n, CurveData::width, CurveData::height));
}

// Both arrays read once and nothing else: what no way of drawing can be faster than.
void readOnce(benchmark::State& state, std::int64_t n, bool ordered)
{
    const CurveData& data = curve(n, ordered);
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
    const CurveData& data = curve(n, ordered);
    QCustomPlotCurve plot(data.x.data(), data.y.data(), n, CurveData::width, CurveData::height);
    for (auto _ : state)
        plot.draw();
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
    benchmark::RunSpecifiedBenchmarks();
}

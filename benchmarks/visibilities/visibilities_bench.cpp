// Visibilities of 1000 components at 10 000 points.
#include "benchmarks/peers/sleef_visibilities.h"
#include "pavane/tables/components/AComponents.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <random>

namespace
{

using namespace pavane;

constexpr int components = 1000;
constexpr int points = 10000;

struct Setting {
    AComponents model;
    std::vector<ComponentTerms> terms;
    std::vector<double> u, v;

    /// Components of the given kinds in turn, sizes of 0.01 to 5 mas, as a VLBI model has them.
    explicit Setting(const std::vector<int>& kinds)
    {
        std::mt19937_64 engine(5);
        const auto between = [&](double low, double high) {
            return low + (high - low) * static_cast<double>(engine() >> 11) * 0x1p-53;
        };
        for (int i = 0; i < components; ++i) {
            ACompItem item;
            item.type = kinds[static_cast<std::size_t>(i) % kinds.size()];
            item.PeakFlux() = between(0.01, 1);
            item.LargeAxis() = std::pow(10.0, between(-5, -2.3));
            item.AxisRatio() = between(0.3, 1);
            item.Inclination() = between(-90, 90);
            item.Angle() = between(-180, 180);
            item.Distance() = between(0, 0.05);
            item.Width() = between(0.1, 0.9);
            model.Add(item);
            terms.emplace_back(item);
        }
        for (int i = 0; i < points; ++i) {
            u.push_back(between(-4e8, 4e8));
            v.push_back(between(-4e8, 4e8));
        }
    }
};

void arrays(benchmark::State& state, const Setting& s)
{
    std::vector<std::complex<double>> out(points);
    for (auto _ : state) {
        s.model.VfromUV(s.u.data(), s.v.data(), points, out.data());
        benchmark::DoNotOptimize(out.data());
    }
}

void singlePoints(benchmark::State& state, const Setting& s)
{
    std::vector<std::complex<double>> out(points);
    for (auto _ : state) {
        for (std::size_t i = 0; i < points; ++i)
            out[i] = s.model.VfromUV(s.u[i], s.v[i]);
        benchmark::DoNotOptimize(out.data());
    }
}

void sleef(benchmark::State& state, const Setting& s)
{
    for (auto _ : state) {
        std::vector<double> real(points), imaginary(points);
        sleefVisibilities(s.terms, s.u.data(), s.v.data(), points, real.data(), imaginary.data());
        benchmark::DoNotOptimize(real.data());
    }
}

void add(const std::string& kinds, const Setting& s)
{
    const std::string name = "visibilities/" + kinds + "/";
    const auto time = benchmark::kMillisecond;
    benchmark::RegisterBenchmark((name + "pavane").c_str(), arrays, s)->Unit(time);
    benchmark::RegisterBenchmark((name + "sleef").c_str(), sleef, s)->Unit(time);
    benchmark::RegisterBenchmark((name + "single-points").c_str(), singlePoints, s)
        ->Unit(time)
        ->Iterations(1);
}

}  // namespace

int main(int argc, char** argv)
{
    add("mixed", Setting({1, 2, 3, 4, 5, 6, 7}));
    add("without-bessel", Setting({1, 2, 5, 6}));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}

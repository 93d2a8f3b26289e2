// Phases and amplitudes of 17 antennas every two seconds, from opening a file of 32 608 rows of
// four IFs and two hands to all gains with their errors; visibilities of 67 points at the same
// rows; and the correction of all of them.
#include "apps/simulate/FitsText.h"
#include "pavane/calibration/gains/GainApplier.h"
#include "pavane/calibration/gains/SelfCalibration.h"
#include "tessel/AFile.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <vector>

using namespace pavane;

namespace
{

constexpr int antennas = 17, ifs = 4, rows = 32608, points = 67;
constexpr double frequency = 8.4e9, ifStep = 16e6, secondsOfDay = 86400;
std::string file;

const AComponents& model()
{
    static const AComponents made = [] {
        AComponents list;
        std::mt19937_64 random(3);
        std::uniform_real_distribution<double> uniform(0, 1);
        for (int i = 0; i < points; ++i) {
            ACompItem item;
            item.PeakFlux() = uniform(random) / points;
            item.Distance() = 0.02 * uniform(random);
            item.Angle() = 360 * uniform(random) - 180;
            (void)list.Add(item);
        }
        return list;
    }();
    return made;
}

/// Every `times`-fold of the rows.
void makeFile(const std::string& name, int times)
{
    FitsText text;
    text.card("SIMPLE", true);
    text.card("BITPIX", -32);
    static constexpr int lengths[] = {0, 3, 2, 1, ifs, 1, 1};
    static constexpr const char* axes[] = {"", "COMPLEX", "STOKES", "FREQ", "IF", "RA", "DEC"};
    text.card("NAXIS", 7);
    for (int i = 0; i < 7; ++i)
        text.card("NAXIS" + std::to_string(i + 1), lengths[i]);
    text.card("GROUPS", true);
    static constexpr const char* names[] = {"UU--", "VV--", "WW--", "BASELINE", "DATE", "DATE"};
    text.card("PCOUNT", 6);
    text.card("GCOUNT", rows * times);
    for (int i = 1; i < 7; ++i) {
        text.card("CTYPE" + std::to_string(i + 1), axes[i]);
        text.card("CRVAL" + std::to_string(i + 1), i == 3 ? frequency : i == 2 ? -1.0 : 1.0);
        text.card("CRPIX" + std::to_string(i + 1), 1.0);
        text.card("CDELT" + std::to_string(i + 1), i == 3 ? ifStep : i == 2 ? -1.0 : 1.0);
    }
    for (int i = 0; i < 6; ++i) {
        text.card("PTYPE" + std::to_string(i + 1), names[i]);
        text.card("PSCAL" + std::to_string(i + 1), i == 5 ? 1 / secondsOfDay : 1.0);
        text.card("PZERO" + std::to_string(i + 1), i == 4 ? 2455554.5 : 0.0);
    }
    text.card("DATE-OBS", "2010-12-24");
    const ModelVisibilities sky(model());
    std::string data;
    std::mt19937_64 random(7);
    std::normal_distribution<double> normal;
    constexpr double noise = 0.02;
    for (int row = 0, time = 0; row < rows * times; ++time)
        for (int a = 1; a <= antennas; ++a)
            for (int b = a + 1; b <= antennas && row < rows * times; ++b, ++row) {
                const double turn = 7e-5 * 2 * time;
                const double u = 2e-3 * ((b * b % 11 - a * a % 11) * std::cos(turn) +
                                         (b * 5 % 13 - a * 5 % 13) * std::sin(turn));
                const double v = 2e-3 * ((b * 5 % 13 - a * 5 % 13) * std::cos(turn) -
                                         (b * b % 11 - a * a % 11) * std::sin(turn));
                for (const double value : {u, v, 1e-4, 256.0 * a + b, 0.0, 2.0 * time})
                    put(data, static_cast<float>(value));
                for (int f = 0; f < ifs; ++f) {
                    const double hertz = frequency;
                    const double at[] = {u * hertz, v * hertz};
                    std::complex<double> value;
                    sky.at(at, at + 1, 1, &value);
                    for (int hand = 0; hand < 2; ++hand) {
                        const auto gain = [&](int antenna) {
                            return std::polar(1 + 0.01 * antenna,
                                              antenna * (1.0 + f + hand + 0.01 * time));
                        };
                        const std::complex<double> seen =
                            value * gain(a) * std::conj(gain(b)) +
                            noise * std::complex<double>(normal(random), normal(random));
                        put(data, static_cast<float>(seen.real()));
                        put(data, static_cast<float>(seen.imag()));
                        put(data, static_cast<float>(1 / (noise * noise)));
                    }
                }
            }
    text.data(data);
    AFile out(name, AFile::writeOnly | AFile::create);
    if (!out.write(text.bytes().data(), static_cast<std::int64_t>(text.bytes().size())))
        std::exit(1);
}

SelfCalibrationRules rules()
{
    SelfCalibrationRules made;
    made.gains.interval.kind = GainKind::both;
    made.frame.seconds = 2;
    made.references = {"1"};
    return made;
}

void solve(benchmark::State& state, const std::string& name)
{
    for (auto _ : state) {
        AUVXFile data;
        std::string error;
        if (!data.open(name, error))
            return state.SkipWithError(error.c_str());
        SelfCalibration job(data, model(), rules());
        while (job.step()) {
        }
        if (!job.error().empty() || job.gains().count(GainState::failed) > 2 * ifs * antennas)
            state.SkipWithError("not all gains are there");
    }
}

void predict(benchmark::State& state)
{
    std::vector<double> u, v;
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> uniform(-2e8, 2e8);
    for (int i = 0; i < rows * ifs; ++i) {
        u.push_back(uniform(random));
        v.push_back(uniform(random));
    }
    std::vector<std::complex<double>> values(u.size());
    for (auto _ : state) {
        const ModelVisibilities sky(model());
        sky.at(u.data(), v.data(), u.size(), values.data());
        benchmark::DoNotOptimize(values.data());
    }
}

void correct(benchmark::State& state)
{
    AUVXFile data;
    std::string error;
    if (!data.open(file, error))
        return state.SkipWithError(error.c_str());
    SelfCalibration job(data, model(), rules());
    while (job.step()) {
    }
    GainChain chain;
    (void)chain.add("both", job.gains());
    for (auto _ : state) {
        GainApplier applier(chain, ifs, {-1, -2});
        double sum = 0;
        for (int row = 0, time = 0; row < rows; ++time)
            for (int a = 1; a <= antennas; ++a)
                for (int b = a + 1; b <= antennas && row < rows; ++b, ++row)
                    sum += applier.of(1, a, b, 2.0 * time / secondsOfDay)->weight;
        benchmark::DoNotOptimize(sum);
    }
}

}  // namespace

int main(int count, char** arguments)
{
    const std::string folder = std::filesystem::path(arguments[0]).parent_path().string();
    file = folder + "/gains.uvfits";
    const std::string four = folder + "/gains4.uvfits";
    if (!std::filesystem::exists(file))
        makeFile(file, 1);
    if (!std::filesystem::exists(four))
        makeFile(four, 4);
    const auto unit = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("gains/solve/pavane", solve, file)->Unit(unit)->UseRealTime();
    benchmark::RegisterBenchmark("gains/solve-4-times-the-rows/pavane", solve, four)
        ->Unit(unit)
        ->UseRealTime();
    benchmark::RegisterBenchmark("gains/predict/pavane", predict)->Unit(unit)->UseRealTime();
    benchmark::RegisterBenchmark("gains/correct/pavane", correct)->Unit(unit)->UseRealTime();
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}

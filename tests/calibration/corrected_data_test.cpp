// What plots and closures show of data that a chain corrects and a user flags.
#include "pavane/calibration/BaselineReader.h"
#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/calibration/gains/UvCorrection.h"
#include "pavane/calibration/series_points.h"
#include "tessel/uvfits/UvPlotPoints.h"
#include "tests/calibration/gains/simulated_file.h"

#include <cmath>

namespace pavane
{

namespace
{

struct Corrected {
    AUVXFile file;
    std::shared_ptr<UvCorrection> filter;

    explicit Corrected(const Simulated& data, const VisibilityFlags& flags = {})
    {
        std::string error;
        EXPECT_TRUE(file.open(data.saved("corrected.uvfits"), error)) << error;
        SelfCalibrationRules rules;
        rules.gains.interval.kind = GainKind::both;
        rules.gains.isScaled = 0;
        rules.frame.seconds = 10;
        SelfCalibration job(file, data.model, rules);
        while (job.step()) {
        }
        GainChain chain;
        (void)chain.add("both", job.gains());
        filter = std::make_shared<UvCorrection>(file.header(), chain, flags);
    }
};

std::vector<ClosureSeries> closuresOf(AUVXFile& file, int antennas, int& parts)
{
    std::vector<UvBaseline> baselines;
    for (int a = 1; a <= antennas; ++a)
        for (int b = a + 1; b <= antennas; ++b)
            baselines.push_back({1, a, b, 1});
    ClosureReader reader(file, closureTriangles(telescopesOf(baselines), baselines), {},
                         {{1, 1}, 0});
    while (reader.step()) {
    }
    EXPECT_EQ(reader.error(), "");
    parts = static_cast<int>(reader.parts().size());
    std::vector<ClosureSeries> series;
    for (std::size_t t = 0; t < reader.triangles().size(); ++t)
        for (std::size_t p = 0; p < reader.parts().size(); ++p)
            series.push_back(reader.series(t, p));
    return series;
}

TEST(CorrectedData, KeepTheirClosurePhases)
{
    Simulated data;
    data.channels = 1;
    data.noise = 0.2;
    data.seconds = everySeconds(12, 10);
    Corrected corrected(data);
    int parts = 0;
    const std::vector<ClosureSeries> before = closuresOf(corrected.file, data.antennas, parts);
    EXPECT_EQ(parts, 4);
    corrected.file.setFilter(corrected.filter);
    const std::vector<ClosureSeries> after = closuresOf(corrected.file, data.antennas, parts);
    ASSERT_EQ(before.size(), 20U * 4);
    constexpr double most = 1e-5 * 57.3;
    for (std::size_t t = 0; t < before.size(); ++t) {
        ASSERT_EQ(before[t].count(), 12U);
        ASSERT_EQ(after[t].count(), 12U);
        for (std::size_t i = 0; i < 12; ++i)
            EXPECT_LT(std::abs(wrappedDegrees(double{before[t].phase[i]} - after[t].phase[i])),
                      most);
    }
}

TEST(CorrectedData, AreWhatAllPlotsShow)
{
    Simulated data;
    data.seconds = everySeconds(5, 10);
    VisibilityFlags flags;
    flags.lines = {{0, 1, 1, 2, {}, 0, 1005 / 86400.0, 1025 / 86400.0, 0}};
    Corrected corrected(data, flags);
    for (const int isCorrected : {0, 1}) {
        corrected.file.setFilter(isCorrected ? corrected.filter : nullptr);
        BaselineReader reader(corrected.file, {{1, 1, 2, 1}, {1, 3, 5, 1}}, BaselinePlot::time, {},
                              data.model);
        while (reader.step()) {
        }
        EXPECT_EQ(reader.series(0).count(), isCorrected ? 3U : 5U);
        const BaselineSeries& series = reader.series(1);
        ASSERT_EQ(series.count(), 5U);
        for (std::size_t i = 0; i < 5; ++i) {
            const double off = std::abs(double{series.amplitude[i]} - series.modelAmplitude[i]);
            EXPECT_EQ(off < 1e-5, isCorrected) << off;
        }
        // a rectangle about the first three times takes those that are shown
        const SeriesRectangle rectangle{0, 995 / 86400.0, 1021 / 86400.0, 0, 9};
        EXPECT_EQ(seriesPoints(reader.series(0), {1, 1, 2, 1}, rectangle).size(),
                  isCorrected ? 1U : 3U);
        EXPECT_EQ(seriesPoints(series, {1, 3, 5, 1}, {1, 0, 1, -180, 180}).size(), 5U);
        UvPlotPoints points(corrected.file, {});
        while (points.step()) {
        }
        // 15 baselines of 5 times, 2 IFs, 2 channels and 2 hands; 2 times of one are flagged
        EXPECT_EQ(points.plotted(), 15 * 5 * 8 - (isCorrected ? 16 : 0));
        EXPECT_EQ(points.totals().greatestAmplitude <= 1.7 + 1e-5, isCorrected);
    }
}

}  // namespace

}  // namespace pavane

#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/calibration/gains/UvCorrection.h"
#include "tessel/uvfits/UvRewriter.h"
#include "tests/calibration/gains/simulated_file.h"

#include <cmath>
#include <filesystem>

namespace pavane
{

namespace
{

using Complex = std::complex<double>;

Simulated simulated()
{
    Simulated data;
    data.seconds = everySeconds(4, 10);
    data.noise = 0.05;
    return data;
}

/// A chain of one solution of the file, or of phases and then amplitudes.
GainChain chainOf(const std::string& name, const AComponents& model,
                  const std::vector<GainKind>& kinds)
{
    GainChain chain;
    for (const GainKind kind : kinds) {
        AUVXFile file;
        std::string error;
        EXPECT_TRUE(file.open(name, error)) << error;
        file.setFilter(std::make_shared<UvCorrection>(file.header(), chain));
        SelfCalibrationRules rules;
        rules.gains.interval.kind = kind;
        rules.frame.seconds = 10;
        rules.gains.isScaled = 0;
        rules.references = {"1"};
        SelfCalibration job(file, model, rules);
        while (job.step()) {
        }
        EXPECT_EQ(job.error(), "");
        (void)chain.add("link", job.gains());
    }
    return chain;
}

/// All visibilities of a file, flagged ones with their weights below 0.
std::vector<UvVisibility> cellsOf(AUVXFile& file)
{
    UvGroups groups;
    EXPECT_TRUE(file.readGroups(0, static_cast<int>(file.header().groups),
                                UvGroups::cellValues | UvGroups::storedCells, groups));
    std::vector<UvVisibility> cells;
    for (int i = 0; i < groups.count; ++i)
        for (int f = 0; f < file.header().ifs; ++f)
            for (int c = 0; c < file.header().channels; ++c)
                for (int s = 0; s < static_cast<int>(file.header().stokes.size()); ++s)
                    cells.push_back(file.visibility(groups, i, f, c, s));
    return cells;
}

TEST(UvCorrection, GivesTheModelBackAndWeighsTheData)
{
    Simulated data = simulated();
    data.noise = 0;
    data.weight = [](int, int, int, int, double) { return 2.0F; };
    const std::string name = data.saved("correct.uvfits");
    Simulated ideal = data;
    ideal.gain = [](int, int, char, double) { return 1.0; };
    for (const auto& kinds :
         {std::vector{GainKind::both}, std::vector{GainKind::phase, GainKind::both},
          std::vector{GainKind::phase, GainKind::amplitude}}) {
        AUVXFile file, model;
        std::string error;
        ASSERT_TRUE(file.open(name, error) && model.open(ideal.saved("ideal.uvfits"), error));
        const std::vector<UvVisibility> stored = cellsOf(file);
        const auto filter =
            std::make_shared<UvCorrection>(file.header(), chainOf(name, data.model, kinds));
        file.setFilter(filter);
        const std::vector<UvVisibility> corrected = cellsOf(file), truth = cellsOf(model);
        ASSERT_EQ(corrected.size(), truth.size());
        for (std::size_t i = 0; i < truth.size(); ++i) {
            const auto valueOf = [](const UvVisibility& v) { return Complex(v.real, v.imaginary); };
            EXPECT_LT(std::abs(valueOf(corrected[i]) - valueOf(truth[i])), 2e-6);
            const double power = std::norm(valueOf(stored[i])) / std::norm(valueOf(truth[i]));
            EXPECT_NEAR(corrected[i].weight / (2 * power), 1, 1e-4);
        }
        EXPECT_EQ(filter->counts().lost, 0);
        EXPECT_EQ(filter->counts().rows, file.header().groups);
    }
}

TEST(UvCorrection, FlagsWhatTheUserAndFailedGainsTakeAway)
{
    const Simulated data = simulated();
    const std::string name = data.saved("flag.uvfits");
    GainChain chain = chainOf(name, data.model, {GainKind::both});
    chain.gain(chain.links()[0].id, 1, 1, 0, 2)->isFlagged = 1;  // antenna 3, 10 s, IF 2, R
    VisibilityFlags flags;
    flags.lines = {{0, 1, 2, 0, {0}, -2, 0, 1, 0}, {1, 1, 2, 1, {}, 0, 0, 1, 0}};
    for (const int keeps : {0, 1}) {
        AUVXFile file;
        std::string error;
        ASSERT_TRUE(file.open(name, error)) << error;
        const std::vector<UvVisibility> stored = cellsOf(file);
        file.setFilter(std::make_shared<UvCorrection>(file.header(), chain, flags,
                                                      UvCorrectionRules{keeps, keeps, 0}));
        const std::vector<UvVisibility> now = cellsOf(file);
        int lost = 0, flagged = 0;
        for (std::size_t i = 0; i < now.size(); ++i) {
            lost += now[i].real == stored[i].real;
            flagged += now[i].weight < 0;
            EXPECT_TRUE(!keeps || std::abs(now[i].weight) == stored[i].weight);
        }
        // 5 baselines of 2 channels; 4 baselines of 2 channels at 4 times
        EXPECT_EQ(lost, 10);
        EXPECT_EQ(flagged, keeps ? 32 : 42);
        // all who read the file see it so
        UvGroupScan scan(file, UvGroupScan::totals);
        while (scan.step()) {
        }
        EXPECT_EQ(scan.foundTotals().flagged, flagged);
    }
    // links behind the one that is being solved for do not count
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(name, error)) << error;
    const std::vector<UvVisibility> stored = cellsOf(file);
    file.setFilter(std::make_shared<UvCorrection>(file.header(), chain, VisibilityFlags(),
                                                  UvCorrectionRules{0, 0, chain.links()[0].id}));
    const std::vector<UvVisibility> now = cellsOf(file);
    for (std::size_t i = 0; i < now.size(); ++i)
        EXPECT_EQ(now[i].real, stored[i].real);
}

std::string bytesOf(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(UvRewriter, WritesWhatTheFilterMakesAndNothingElse)
{
    const Simulated data = simulated();
    const std::string name = data.saved("rewrite.uvfits"), out = testing::TempDir() + "out.uvfits";
    // something behind the tables stays as well
    std::ofstream(name, std::ios::binary | std::ios::app) << std::string(1000, 'x');
    const GainChain chain = chainOf(name, data.model, {GainKind::both});
    VisibilityFlags flags;
    flags.lines = {{0, 1, 2, 3, {0}, -2, 0, 1, 0}};
    AUVXFile file, again;
    std::string error;
    ASSERT_TRUE(file.open(name, error)) << error;
    const auto filter = [&] { return std::make_shared<UvCorrection>(file.header(), chain, flags); };
    double before = 0;
    UvRewriter writer(file, out, filter());
    std::filesystem::remove(out);
    while (writer.step(5000)) {
        EXPECT_GE(writer.done(), before);
        before = writer.done();
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    EXPECT_EQ(writer.error(), "");
    EXPECT_EQ(writer.done(), 1);
    EXPECT_EQ(writer.flagged(), 4 * 2);
    ASSERT_TRUE(again.open(out, error)) << error;
    file.setFilter(filter());
    const std::vector<UvVisibility> wanted = cellsOf(file), written = cellsOf(again);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_EQ(written[i].real, wanted[i].real);
        EXPECT_EQ(written[i].imaginary, wanted[i].imaginary);
        EXPECT_EQ(written[i].weight, wanted[i].weight);
    }
    // without anything to correct, the same bytes; a dropped one leaves nothing
    UvRewriter plain(file, out, std::make_shared<UvCorrection>(file.header(), GainChain()));
    while (plain.step()) {
    }
    EXPECT_EQ(bytesOf(out), bytesOf(name));
    const std::string dropped = testing::TempDir() + "dropped.uvfits";
    {
        UvRewriter left(file, dropped, filter());
        EXPECT_TRUE(left.step(5000));
    }
    EXPECT_FALSE(std::filesystem::exists(dropped));
}

TEST(UvRewriter, RefusesItsInput)
{
    const std::string name = simulated().saved("input.uvfits");
    const std::string soft = testing::TempDir() + "soft.uvfits", hard = testing::TempDir() + "hard";
    std::filesystem::remove(soft);
    std::filesystem::remove(hard);
    std::filesystem::create_symlink(name, soft);
    std::filesystem::create_hard_link(name, hard);
    const std::string before = bytesOf(name);
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(name, error)) << error;
    for (const std::string& out : {name, soft, hard, testing::TempDir() + "./input.uvfits"}) {
        UvRewriter writer(file, out, nullptr);
        EXPECT_FALSE(writer.step());
        EXPECT_EQ(writer.error(), "is the file that is read");
    }
    UvRewriter nowhere(file, "/nonexistent/out", nullptr);
    EXPECT_FALSE(nowhere.step());
    EXPECT_NE(nowhere.error(), "");
    EXPECT_EQ(bytesOf(name), before);
}

}  // namespace

}  // namespace pavane

#include "pavane/calibration/gains/GainApplier.h"
#include "pavane/calibration/gains/SelfCalibration.h"
#include "pavane/calibration/gains/UvReach.h"
#include "tests/calibration/gains/simulated_file.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

using Complex = std::complex<double>;

struct Solved {
    AUVXFile file;
    std::unique_ptr<SelfCalibration> job;

    Solved(const Simulated& data, const SelfCalibrationRules& rules, const UvMarks& marks = {},
           const AComponents* model = nullptr)
    {
        std::string error;
        EXPECT_TRUE(file.open(data.saved("gains.uvfits"), error)) << error;
        job = std::make_unique<SelfCalibration>(file, model ? *model : data.model, rules, marks);
        run();
    }
    void run() const
    {
        for (double before = 0; job->step(1 << 14);) {
            EXPECT_GE(job->done(), before);
            before = job->done();
        }
        EXPECT_TRUE(!job->error().empty() || job->done() == 1);
    }
};

SelfCalibrationRules rulesOf(GainKind kind, double seconds)
{
    SelfCalibrationRules rules;
    rules.gains.interval.kind = kind;
    rules.gains.isScaled = 0;
    rules.frame.seconds = seconds;
    rules.references = {"1"};
    return rules;
}

/// The greatest distance of solved gains from the true ones at the middle of their intervals, the
/// phase of the first antenna taken off, and the factor of the scale put back.
double worstOf(const Simulated& data, const SelfCalibration& job)
{
    const AGains& gains = job.gains();
    double worst = gains.intervals().empty() ? 1e9 : 0;
    for (std::size_t t = 0; t < gains.intervals().size(); ++t)
        for (std::size_t g = 0; g < gains.groups().size(); ++g)
            for (std::size_t h = 0; h < gains.hands().size(); ++h)
                for (std::size_t a = 0; a < gains.antennas().size(); ++a) {
                    const Gain& gain = gains.at(t, g, h, a);
                    const bool isHere =
                        gains.antennas()[a].subarray == gains.intervals()[t].subarray;
                    if (gain.state != (isHere ? GainState::solved : GainState::missing))
                        return 1e9;
                    if (!isHere)
                        continue;
                    const auto truth = [&](int antenna) {
                        return data.gain(antenna, gains.groups()[g][0], gains.hands()[h],
                                         gains.intervals()[t].middle() * 86400);
                    };
                    const Complex first = truth(1);
                    const double factor = job.factors()[g * gains.hands().size() + h];
                    worst = std::max(worst, std::abs(gain.value * factor -
                                                     truth(gains.antennas()[a].number) *
                                                         std::conj(first) / std::abs(first)));
                }
    return worst;
}

TEST(SelfCalibration, FindsTheGainsOfDataWithoutNoise)
{
    struct Case {
        const char* what;
        std::function<void(Simulated&, SelfCalibrationRules&)> change;
        std::size_t intervals, hands;
    };
    const Case cases[] = {
        {"a gain each integration", [](Simulated&, SelfCalibrationRules&) {}, 5, 2},
        {"scaled", [](Simulated&, SelfCalibrationRules& r) { r.gains.isScaled = 1; }, 5, 2},
        {"shorter than a point", [](Simulated&, SelfCalibrationRules& r) { r.frame.seconds = 0.1; },
         5, 2},
        {"sorted by baseline", [](Simulated& d, SelfCalibrationRules&) { d.isByBaseline = 1; }, 5,
         2},
        {"sorted by baseline, two intervals at a time",
         [](Simulated& d, SelfCalibrationRules& r) {
             d.isByBaseline = 1;
             r.mostSums = 2 * 2 * 2 * 15;
         },
         5, 2},
        {"three subarrays", [](Simulated& d, SelfCalibrationRules&) { d.subarrays = 3; }, 15, 2},
        {"autocorrelations are not used",
         [](Simulated& d, SelfCalibrationRules&) {
             d.hasAutocorrelations = 1;
             d.weight = [](int a, int b, int, int, double) { return a == b ? 1e9F : 1.0F; };
         },
         5, 2},
        {"one hand", [](Simulated& d, SelfCalibrationRules&) { d.stokes = {-2}; }, 5, 1},
        {"four products of linear hands",
         [](Simulated& d, SelfCalibrationRules&) {
             d.stokes = {-5, -6, -7, -8};
         },
         5, 2},
        {"total intensity", [](Simulated& d, SelfCalibrationRules&) { d.stokes = {1}; }, 5, 1},
        {"without weights", [](Simulated& d, SelfCalibrationRules&) { d.hasWeights = 0; }, 5, 2},
        {"bad data that are flagged, or worth nothing",
         [](Simulated& d, SelfCalibrationRules&) {
             d.weight = [](int a, int b, int f, int, double s) {
                 const int which = (a * 7 + b * 3 + f + static_cast<int>(s)) % 9;
                 return which == 0   ? 0.0F
                        : which == 1 ? -2.0F
                        : which == 2 ? std::numeric_limits<float>::quiet_NaN()
                        : which == 3 ? std::numeric_limits<float>::infinity()
                                     : 3.0F;
             };
         },
         5, 2},
        {"equal weights, one scan without end",
         [](Simulated& d, SelfCalibrationRules& r) {
             r.weightPower = 0;
             r.frame.seconds = 1e9;
             d.gain = [gain = d.gain](int a, int f, char h, double) { return gain(a, f, h, 0); };
         },
         1, 2},
        {"both hands and IFs together, the whole time",
         [](Simulated& d, SelfCalibrationRules& r) {
             r.frame.joinsHands = r.frame.isWhole = 1;
             r.frame.groups = {{0, 1}};
             d.gain = [gain = d.gain](int a, int, char, double) { return gain(a, 0, 'R', 0); };
         },
         1, 1},
    };
    for (const Case& c : cases) {
        Simulated data;
        data.seconds = everySeconds(5, 10);
        SelfCalibrationRules rules = rulesOf(GainKind::both, 10);
        c.change(data, rules);
        const Solved solved(data, rules);
        EXPECT_EQ(solved.job->error(), "") << c.what;
        EXPECT_EQ(solved.job->gains().intervals().size(), c.intervals) << c.what;
        EXPECT_EQ(solved.job->gains().hands().size(), c.hands) << c.what;
        EXPECT_LT(worstOf(data, *solved.job), 1e-6) << c.what;
        const SelfCalibrationCounts& counts = solved.job->counts();
        const std::int64_t all = (counts.rows - counts.autocorrelations) * data.ifs *
                                 data.channels * static_cast<std::int64_t>(c.hands);
        EXPECT_EQ(counts.used + counts.flagged + counts.notFinite,
                  rules.frame.joinsHands ? 2 * all : all)
            << c.what;
        EXPECT_EQ(counts.autocorrelations > 0, data.hasAutocorrelations) << c.what;
    }
}

TEST(SelfCalibration, SaysWhatCannotBeSolved)
{
    struct Case {
        const char* what;
        std::function<void(Simulated&, SelfCalibrationRules&, AComponents&)> change;
        const char* error;
    };
    const Case cases[] = {
        {"an empty model",
         [](Simulated&, SelfCalibrationRules&, AComponents& m) { (void)m.DeleteItems(0, 9); },
         "without components"},
        {"all flagged",
         [](Simulated& d, SelfCalibrationRules&, AComponents&) {
             d.weight = [](int, int, int, int, double) { return 0.0F; };
         },
         "no good visibilities"},
        {"one baseline", [](Simulated& d, SelfCalibrationRules&, AComponents&) { d.antennas = 2; },
         "too few antennas"},
        {"an IF in two groups",
         [](Simulated&, SelfCalibrationRules& r, AComponents&) {
             r.frame.groups = {{0}, {1, 0}};
         },
         "one group only"},
        {"an IF too many",
         [](Simulated&, SelfCalibrationRules& r, AComponents&) {
             r.frame.groups = {{0, 7}};
         },
         "no IF 8"},
        {"no such antenna",
         [](Simulated&, SelfCalibrationRules& r, AComponents&) { r.references = {"PT"}; },
         "no antenna PT"},
        {"crossed hands alone",
         [](Simulated& d, SelfCalibrationRules&, AComponents&) {
             d.stokes = {-3, -4};
         },
         "no parallel hand"},
        {"no distances",
         [](Simulated&, SelfCalibrationRules& r, AComponents&) { r.leastUv = 1e12; },
         "no good visibilities"},
        {"a range upside down",
         [](Simulated&, SelfCalibrationRules& r, AComponents&) { r.greatestUv = -1; }, "empty"},
    };
    for (const Case& c : cases) {
        Simulated data;
        data.seconds = everySeconds(3, 10);
        SelfCalibrationRules rules = rulesOf(GainKind::phase, 10);
        AComponents model = data.model;
        c.change(data, rules, model);
        const Solved solved(data, rules, {}, &model);
        EXPECT_NE(solved.job->error().find(c.error), std::string::npos)
            << c.what << ": " << solved.job->error();
    }
}

TEST(SelfCalibration, LeavesOutAntennasWithoutGoodData)
{
    Simulated data;
    data.seconds = everySeconds(4, 10);
    // antenna 5 is flagged, antenna 6 has one baseline
    data.weight = [](int a, int b, int, int, double) {
        const int is6 = a == 6 || b == 6;
        return a == 5 || b == 5 || (is6 && a != 2 && b != 2) ? 0.0F : 1.0F;
    };
    const Solved solved(data, rulesOf(GainKind::both, 20));
    const AGains& gains = solved.job->gains();
    EXPECT_EQ(gains.at(0, 0, 0, 4).state, GainState::missing);
    EXPECT_EQ(gains.at(0, 0, 0, 5).state, GainState::solved);
    EXPECT_EQ(gains.count(GainState::missing), 2U * 2 * 2);
}

TEST(SelfCalibration, IntervalsBeginWithEachScan)
{
    Simulated data;
    data.seconds = everySeconds(7, 10);
    for (const double s : everySeconds(4, 10, 3000))
        data.seconds.push_back(s);
    const Solved solved(data, rulesOf(GainKind::phase, 30));
    std::vector<double> starts;
    for (const GainInterval& interval : solved.job->gains().intervals())
        starts.push_back(interval.start * 86400);
    ASSERT_EQ(starts.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(starts[i], (std::vector{995.0, 1025.0, 2995.0}[i]), 1e-3);
    EXPECT_NEAR(solved.job->integration() * 86400, 10, 1e-6);
    // 5 ms of light at the highest channel, for the far end of the Gaussian
    const double l = (0.001 + 0.0005 / 2) * 4.84813681109536e-6;
    EXPECT_NEAR(solved.job->wTurns() / (5e-3 * 8.6e9 * l * l / 2), 1, 1e-6);
}

/// Scatter of gains about the true ones in units of their errors.
TEST(SelfCalibration, ScattersAsItsWeightsPredict)
{
    for (const GainKind kind : {GainKind::phase, GainKind::both}) {
        Simulated data;
        data.noise = 0.1;
        data.seconds = everySeconds(150, 10);
        data.gain = [kind](int a, int f, char hand, double) {
            return std::polar(kind == GainKind::phase ? 1.0 : 1 + 0.1 * a,
                              1.3 * a * a + f + (hand == 'L'));
        };
        const Solved solved(data, rulesOf(kind, 10));
        const AGains& gains = solved.job->gains();
        double sum = 0, count = 0;
        for (std::size_t t = 0; t < gains.intervals().size(); ++t)
            for (std::size_t g = 0; g < 2; ++g)
                for (std::size_t h = 0; h < 2; ++h)
                    for (std::size_t a = 1; a < 6; ++a) {
                        const Gain& gain = gains.at(t, g, h, a);
                        ASSERT_EQ(gain.state, GainState::solved);
                        const Complex truth =
                            data.gain(static_cast<int>(a) + 1, static_cast<int>(g),
                                      gains.hands()[h], 0) *
                            std::polar(1.0, -std::arg(data.gain(1, static_cast<int>(g),
                                                                gains.hands()[h], 0)));
                        sum += std::norm(gain.value - truth) / (gain.error * gain.error);
                        count += kind == GainKind::phase ? 1 : 2;
                    }
        EXPECT_NEAR(std::sqrt(sum / count), 1, 0.1);
    }
}

TEST(SelfCalibration, TakesTheModelOfAnotherFile)
{
    Simulated data;
    data.seconds = everySeconds(5, 10);
    Simulated predicted = data;
    predicted.gain = [](int, int, char, double) { return 1.0; };
    predicted.weight = [](int, int, int, int, double) { return 0.0F; };
    AUVXFile file, model, other;
    std::string error;
    ASSERT_TRUE(file.open(data.saved("data.uvfits"), error)) << error;
    ASSERT_TRUE(model.open(predicted.saved("model.uvfits"), error)) << error;
    SelfCalibration job(file, model, rulesOf(GainKind::both, 10));
    while (job.step()) {
    }
    EXPECT_EQ(job.error(), "");
    EXPECT_LT(worstOf(data, job), 1e-6);

    // some of the antennas, times, IFs and hands alone are predicted
    predicted.antennas = 5;
    predicted.seconds.erase(predicted.seconds.begin() + 1);
    predicted.ifs = 1;
    predicted.stokes = {-2};
    ASSERT_TRUE(other.open(predicted.saved("other.uvfits"), error)) << error;
    SelfCalibration part(file, other, rulesOf(GainKind::both, 10));
    while (part.step()) {
    }
    EXPECT_EQ(part.error(), "");
    EXPECT_EQ(part.gains().count(GainState::solved), 4U * 5);
    EXPECT_EQ(part.counts().noModel, 5 * 15 - 4 * 10);
    const Gain& gain = part.gains().at(4, 0, 1, 3);
    const Complex truth = data.gain(4, 0, 'L', 1040) * std::conj(data.gain(1, 0, 'L', 1040));
    EXPECT_LT(std::abs(gain.value - truth / std::abs(data.gain(1, 0, 'L', 1040))), 1e-6);

    predicted = data;
    predicted.isByBaseline = 1;
    ASSERT_TRUE(other.open(predicted.saved("other.uvfits"), error)) << error;
    SelfCalibration refused(file, other, rulesOf(GainKind::both, 10));
    while (refused.step()) {
    }
    EXPECT_NE(refused.error().find("not what the model's"), std::string::npos) << refused.error();
}

TEST(UvReach, TellsHowTheModelIsMade)
{
    Simulated data;
    data.hasAutocorrelations = 1;
    data.seconds = everySeconds(2, 10);
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(data.saved("reach.uvfits"), error)) << error;
    UvReach reach(file);
    while (reach.step(1)) {
    }
    EXPECT_EQ(reach.error(), "");
    EXPECT_EQ(reach.places(), 15 * 2 * 4);
    EXPECT_NEAR(reach.greatestW() / (5e-3 * 8.6e9), 1, 1e-6);
    AComponents model = data.model;
    EXPECT_EQ(modelWay(ModelVisibilities(model), reach), ModelWay::components);
    (void)model.Add(ACompItem("1 1 0 1 0 0 1 0"));
    EXPECT_EQ(modelWay(ModelVisibilities(model), reach), ModelWay::tooWide);
}

TEST(GainApplier, CorrectsAsTheFactorsDo)
{
    Simulated data;
    data.stokes = {-1, -2, -3, -4};
    data.seconds = everySeconds(5, 10);
    const Solved solved(data, rulesOf(GainKind::both, 10));
    GainChain chain;
    (void)chain.add("phase", solved.job->gains());
    AGains second = solved.job->gains();
    for (Gain& gain : second.cells())
        gain.value = std::polar(2 / std::abs(gain.value), 0.3 * std::abs(gain.value));
    second.at(2, 1, 0, 3).state = GainState::failed;
    second.at(1, 0, 1, 2).isFlagged = 1;
    second.referenceDay -= 1;
    const int id = chain.add("amplitude", second);
    int lost = 0;
    for (const int before : {0, id}) {
        GainApplier applier(chain, 2, data.stokes, solved.file.header().referenceDay, before);
        for (int i = 0; i < 5; ++i)
            for (int a = 1; a <= 7; ++a)
                for (int b = 1; b <= 6; ++b) {
                    const double time = (1000 + 10 * i) / 86400.0;
                    const GainCorrection* row = applier.of(1, a, b, time);
                    for (int f = 0; f < 2; ++f)
                        for (const int code : data.stokes) {
                            const auto [first, other] = handsOf(code);
                            const GainPlace place{1, a, b, time, 0, f, first, other};
                            GainPlace later = place;
                            later.time += 1;
                            Complex one, two = 1;
                            const int is = gainFactor(chain.links()[0].gains, place, one) &&
                                           (before == id || gainFactor(second, later, two));
                            EXPECT_EQ(row->isUsable, is);
                            lost += !is;
                            if (is) {
                                EXPECT_LT(std::abs(row->factor * one * two - 1.0), 1e-12);
                                EXPECT_NEAR(row->weight / std::norm(one * two), 1, 1e-12);
                            }
                            ++row;
                        }
                }
    }
    EXPECT_GT(lost, 0);
}

}  // namespace

}  // namespace pavane

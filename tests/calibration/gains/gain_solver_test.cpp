#include "pavane/calibration/gains/GainSolver.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace
{

using namespace pavane;
using Complex = std::complex<double>;

/// An observation of one group and hand with known gains, the same in all intervals unless `turn`
/// says otherwise.
struct Observation {
    std::size_t antennas = 8, intervals = 1, points = 5;
    GainKind kind = GainKind::both;
    double noise = 0;
    unsigned seed = 1;
    std::function<int(std::size_t interval, std::size_t a, std::size_t b)> isThere =
        [](std::size_t, std::size_t, std::size_t) { return 1; };

    std::vector<Complex> truth;
    AGains frame;

    void simulate(GainSolver*& solver, GainRules rules)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> uniform(0, 1);
        std::normal_distribution<double> normal;
        std::vector<GainAntenna> names;
        for (std::size_t i = 0; i < antennas; ++i) {
            names.push_back({1, static_cast<int>(i + 1), "A" + std::to_string(i + 1)});
            const double amplitude = kind == GainKind::phase ? 1 : 0.5 + uniform(random);
            const double phase = kind == GainKind::amplitude ? 0 : 6.28 * uniform(random);
            truth.push_back(std::polar(amplitude, phase));
        }
        std::vector<GainInterval> times;
        for (std::size_t i = 0; i < intervals; ++i)
            times.push_back({1.0 * static_cast<double>(i), 1.0 * static_cast<double>(i + 1), 1, 0});
        ASSERT_TRUE(frame.create(names, times, {{0}}, {'R'}));
        rules.interval.kind = kind;
        solver = new GainSolver(frame, rules);
        const double weight = noise > 0 ? 1 / (noise * noise) : 1;
        for (std::size_t t = 0; t < intervals; ++t)
            for (std::size_t p = 0; p < points; ++p)
                for (std::size_t a = 0; a < antennas; ++a)
                    for (std::size_t b = a + 1; b < antennas; ++b) {
                        const Complex model =
                            std::polar(0.5 + uniform(random), 6.28 * uniform(random));
                        const Complex data = truth[a] * std::conj(truth[b]) * model +
                                             noise * Complex(normal(random), normal(random));
                        if (!isThere(t, a, b))
                            continue;
                        // stored either way
                        if (p % 2)
                            solver->add(t, 0, 0, b, a, std::conj(data), std::conj(model), weight);
                        else
                            solver->add(t, 0, 0, a, b, data, model, weight);
                    }
        solver->finish();
    }
};

std::unique_ptr<GainSolver> solved(Observation& observation, const GainRules& rules = {})
{
    GainSolver* solver = nullptr;
    observation.simulate(solver, rules);
    return std::unique_ptr<GainSolver>(solver);
}

TEST(GainSolver, FindsGainsWithoutNoise)
{
    for (const GainKind kind : {GainKind::phase, GainKind::amplitude, GainKind::both})
        for (const std::size_t antennas : {3U, 4U, 10U, 40U})
            for (unsigned seed = 1; seed <= 5; ++seed) {
                Observation observation;
                observation.antennas = antennas;
                observation.kind = kind;
                observation.seed = seed;
                GainRules rules;
                rules.references = {2};
                rules.isScaled = 0;
                const auto solver = solved(observation, rules);
                for (std::size_t i = 0; i < antennas; ++i) {
                    const Gain& gain = solver->gains().at(0, 0, 0, i);
                    ASSERT_EQ(gain.state, GainState::solved);
                    ASSERT_EQ(gain.reference, 2);
                    const Complex turn =
                        kind == GainKind::amplitude
                            ? 1
                            : std::conj(observation.truth[2]) / std::abs(observation.truth[2]);
                    EXPECT_LT(std::abs(gain.value - observation.truth[i] * turn), 1e-6)
                        << antennas << " antennas, " << static_cast<int>(kind) << ", antenna " << i;
                }
                EXPECT_EQ(solver->gains().at(0, 0, 0, 2).value.imag(), 0);
            }
}

TEST(GainSolver, ErrorsAreThoseOfTheNoise)
{
    for (const GainKind kind : {GainKind::phase, GainKind::amplitude, GainKind::both})
        // errors without and with the scale of the reduced chi-squared
        for (const std::size_t points : {1U, 6U}) {
            Observation observation;
            observation.kind = kind;
            observation.noise = 0.1;
            observation.intervals = 600;
            observation.points = points;
            GainRules rules;
            rules.references = {0};
            rules.isScaled = 0;
            const auto solver = solved(observation, rules);
            const Complex turn = kind == GainKind::amplitude ? 1
                                                             : std::conj(observation.truth[0]) /
                                                                   std::abs(observation.truth[0]);
            double along = 0, across = 0, count = 0;
            for (std::size_t t = 0; t < observation.intervals; ++t)
                for (std::size_t i = 1; i < observation.antennas; ++i) {
                    const Gain& gain = solver->gains().at(t, 0, 0, i);
                    const Complex truth = observation.truth[i] * turn;
                    const Complex off =
                        (gain.value - truth) * std::conj(truth) / std::abs(truth) / gain.error;
                    along += off.real() * off.real();
                    across += off.imag() * off.imag();
                    count += 1;
                }
            const double scatter = kind == GainKind::phase       ? across / count
                                   : kind == GainKind::amplitude ? along / count
                                                                 : (along + across) / 2 / count;
            EXPECT_NEAR(std::sqrt(scatter), 1, 0.1) << static_cast<int>(kind) << ' ' << points;
            double chi = 0, freedom = 0;
            for (const GainFit& fit : solver->fits()) {
                chi += fit.chiSquared;
                freedom += fit.freedom;
            }
            EXPECT_NEAR(chi / freedom, 1, 0.05);
        }
}

TEST(GainSolver, AnotherReferenceMakesNoJump)
{
    // antenna 1 of the list is away in some intervals, first and last ones among them
    Observation observation;
    observation.intervals = 9;
    observation.isThere = [](std::size_t t, std::size_t a, std::size_t b) {
        return !(t == 0 || t == 4 || t == 8) || (a != 1 && b != 1);
    };
    GainRules rules;
    rules.references = {1, 5};
    const auto solver = solved(observation, rules);
    for (std::size_t t = 2; t < observation.intervals; ++t)
        for (std::size_t i = 0; i < observation.antennas; ++i) {
            const Gain& now = solver->gains().at(t, 0, 0, i);
            const Gain& before = solver->gains().at(t - 1, 0, 0, i);
            if (now.state == GainState::solved && before.state == GainState::solved) {
                EXPECT_LT(std::abs(now.value - before.value), 1e-6) << t << ' ' << i;
            }
        }
    EXPECT_EQ(solver->gains().at(4, 0, 0, 1).state, GainState::missing);
    EXPECT_EQ(solver->gains().at(4, 0, 0, 5).reference, 5);
}

TEST(GainSolver, AmplitudesAreScaledTogether)
{
    Observation observation;
    observation.intervals = 3;
    observation.noise = 0.05;
    const auto scaled = solved(observation);
    double sum = 0, weights = 0;
    for (const Gain& gain : scaled->gains().cells()) {
        const double weight = gain.ratio() * gain.ratio();
        sum += weight * std::log(std::abs(gain.value));
        weights += weight;
    }
    EXPECT_NEAR(sum / weights, 0, 1e-12);
    Observation again;
    again.intervals = 3;
    again.noise = 0.05;
    GainRules rules;
    rules.isScaled = 0;
    const auto free = solved(again, rules);
    EXPECT_EQ(free->factors()[0], 1);
    const double ratio = std::abs(free->gains().at(1, 0, 0, 4).value) /
                         std::abs(scaled->gains().at(1, 0, 0, 4).value);
    EXPECT_NEAR(scaled->factors()[0], ratio, 1e-12);
}

TEST(GainSolver, LeavesOutWhatIsNotDetermined)
{
    struct Case {
        const char* what;
        GainKind kind;
        int leastAntennas;
        double leastRatio;
        std::function<int(std::size_t, std::size_t, std::size_t)> isThere;
        std::string states;  ///< of six antennas: s solved, f failed, m missing
    };
    const auto parts = [](std::size_t, std::size_t a, std::size_t b) { return (a < 4) == (b < 4); };
    const auto ring = [](std::size_t, std::size_t a, std::size_t b) { return (a + b) % 2 == 1; };
    const Case cases[] = {
        {"nothing", GainKind::both, 3, 0, [](auto...) { return 0; }, "mmmmmm"},
        {"one baseline", GainKind::phase, 3, 0,
         [](std::size_t, std::size_t a, std::size_t b) { return a == 1 && b == 2; }, "mffmmm"},
        {"one baseline is enough", GainKind::phase, 2, 0,
         [](std::size_t, std::size_t a, std::size_t b) { return a == 1 && b == 2; }, "mssmmm"},
        {"no amplitude of two", GainKind::both, 2, 0,
         [](std::size_t, std::size_t a, std::size_t b) { return a == 1 && b == 2; }, "mffmmm"},
        {"two parts: that of the reference", GainKind::phase, 3, 0, parts, "ssssff"},
        {"even rings alone: no amplitudes", GainKind::both, 3, 0, ring, "ffffff"},
        {"even rings alone: phases", GainKind::phase, 3, 0, ring, "ssssss"},
        {"too few", GainKind::both, 7, 0, [](auto...) { return 1; }, "ffffff"},
        {"too noisy", GainKind::both, 3, 1e9, [](auto...) { return 1; }, "ffffff"},
    };
    for (const Case& c : cases) {
        Observation observation;
        observation.antennas = 6;
        observation.kind = c.kind;
        observation.noise = 0.01;
        observation.isThere = c.isThere;
        GainRules rules;
        rules.interval.leastAntennas = c.leastAntennas;
        rules.interval.leastRatio = c.leastRatio;
        const auto solver = solved(observation, rules);
        std::string states;
        for (const Gain& gain : solver->gains().cells()) {
            states += "msf"[static_cast<int>(gain.state)];
            EXPECT_TRUE(std::isfinite(gain.error) && std::isfinite(std::abs(gain.value)));
        }
        EXPECT_EQ(states, c.states) << c.what;
    }
}

TEST(GainSolver, OneNoisyAntennaDoesNotSpoilTheOthers)
{
    Observation observation;
    observation.antennas = 7;
    GainRules rules;
    rules.interval.leastRatio = 5;
    rules.interval.kind = GainKind::both;
    rules.isScaled = 0;
    GainSolver* made = nullptr;
    observation.simulate(made, rules);
    const std::unique_ptr<GainSolver> solver(made);
    solver->restart();
    std::mt19937 random(3);
    std::normal_distribution<double> normal;
    for (std::size_t a = 0; a < 7; ++a)
        for (std::size_t b = a + 1; b < 7; ++b) {
            Complex data = observation.truth[a] * std::conj(observation.truth[b]);
            double weight = 1e6;
            if (b == 6) {
                data = {normal(random), normal(random)};
                weight = 0.01;
            }
            solver->add(0, 0, 0, a, b, data, 1, weight);
            // what must not count: flagged, not finite, with itself
            solver->add(0, 0, 0, a, b, 1e6, 1, 0);
            solver->add(0, 0, 0, a, b, 1e6, 1, -1);
            solver->add(0, 0, 0, a, b, std::numeric_limits<double>::infinity(), 1, 1);
            solver->add(0, 0, 0, a, b, 1, std::nan(""), 1);
            solver->add(0, 0, 0, a, a, 1e6, 1, 1);
        }
    solver->finish();
    EXPECT_EQ(solver->used(), 21);
    EXPECT_EQ(solver->gains().at(0, 0, 0, 6).state, GainState::failed);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(std::abs(solver->gains().at(0, 0, 0, i).value), std::abs(observation.truth[i]),
                    1e-6);
}

TEST(GainSolver, KeepsSumsOfOpenIntervalsOnly)
{
    Observation observation;
    observation.antennas = 3;
    observation.intervals = 4;
    GainRules rules;
    GainSolver* made = nullptr;
    observation.simulate(made, rules);
    const std::unique_ptr<GainSolver> solver(made);
    const AGains whole = solver->gains();
    solver->restart();
    for (std::size_t t = 0; t < 4; ++t) {
        for (const auto& [a, b] : {std::pair(0, 1), {0, 2}, {1, 2}})
            solver->add(t, 0, 0, static_cast<std::size_t>(a), static_cast<std::size_t>(b), 1, 1, 1);
        solver->close(1, static_cast<double>(t + 1));
        solver->close(2, 100);
    }
    EXPECT_EQ(solver->late(), 0);
    solver->add(2, 0, 0, 0, 1, 1, 1, 1);
    EXPECT_EQ(solver->late(), 1);
    EXPECT_EQ(solver->gains().count(GainState::solved), 12U);
}

}  // namespace

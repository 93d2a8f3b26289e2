#include "pavane/calibration/gains/GainChain.h"

#include <gtest/gtest.h>

namespace
{

using namespace pavane;
using Complex = std::complex<double>;

/// Two intervals, IF 1 alone and IFs 2 and 3 together, hands R and L, antennas 1, 2 and 5.
AGains gainsOf(Complex first)
{
    AGains gains;
    EXPECT_TRUE(gains.create({{1, 1, "A"}, {1, 2, "B"}, {1, 5, "C"}}, {{0, 1, 1, 0}, {1, 3, 1, 0}},
                             {{0}, {1, 2}}, {'R', 'L'}));
    double turn = 0;
    for (Gain& gain : gains.cells()) {
        gain.value = first * std::polar(1 + turn, turn);
        gain.state = GainState::solved;
        turn += 0.1;
    }
    return gains;
}

TEST(GainChain, FactorsAreThoseOfTheTwoHands)
{
    AGains gains = gainsOf(1);
    gains.at(1, 1, 0, 2).isFlagged = 1;
    gains.at(1, 1, 1, 2).state = GainState::failed;
    gains.at(0, 0, 0, 0).value = 0;
    struct Case {
        const char* what;
        GainPlace place;
        int is;
        std::size_t interval, group, hands[2], antennas[2];
    };
    const Case cases[] = {
        {"same hand", {1, 1, 2, 1.5, 0, 2, 'R', 'R'}, 1, 1, 1, {0, 0}, {0, 1}},
        {"crossed hands", {1, 2, 1, 0.5, 3, 1, 'R', 'L'}, 1, 0, 1, {0, 1}, {1, 0}},
        {"start of an interval", {1, 1, 2, 1.0, 0, 0, 'L', 'L'}, 1, 1, 0, {1, 1}, {0, 1}},
        {"flagged", {1, 1, 5, 1.5, 0, 1, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"failed", {1, 5, 1, 1.5, 0, 1, 'L', 'L'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"a gain of 0", {1, 1, 2, 0.5, 0, 0, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"end of the last interval", {1, 1, 2, 3.0, 0, 0, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"not a time", {1, 1, 2, std::nan(""), 0, 0, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"another subarray", {2, 1, 2, 1.5, 0, 0, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"no such antenna", {1, 1, 3, 1.5, 0, 0, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"an IF of no group", {1, 1, 2, 1.5, 0, 3, 'R', 'R'}, 0, 0, 0, {0, 0}, {0, 0}},
        {"no such hand", {1, 1, 2, 1.5, 0, 0, 'X', 'X'}, 0, 0, 0, {0, 0}, {0, 0}},
    };
    for (const Case& c : cases) {
        Complex factor;
        EXPECT_EQ(gainFactor(gains, c.place, factor), c.is) << c.what;
        const Complex expected =
            c.is ? gains.at(c.interval, c.group, c.hands[0], c.antennas[0]).value *
                       std::conj(gains.at(c.interval, c.group, c.hands[1], c.antennas[1]).value)
                 : 1;
        EXPECT_LT(std::abs(factor - expected), 1e-12) << c.what;
    }
}

TEST(GainChain, IsAProductAndKnowsWhatItWasSolvedOn)
{
    GainChain chain;
    const int phases = chain.add("phase", gainsOf(Complex(0, 2)));
    const int amplitudes = chain.add("amplitude", gainsOf(3));
    const int last = chain.add("again", gainsOf(1));
    const GainPlace place{1, 1, 2, 1.5, 0, 0, 'R', 'R'};
    Complex one, two, three, all;
    ASSERT_TRUE(gainFactor(chain.links()[0].gains, place, one));
    ASSERT_TRUE(gainFactor(chain.links()[1].gains, place, two));
    ASSERT_TRUE(gainFactor(chain.links()[2].gains, place, three));
    ASSERT_TRUE(gainFactor(chain, place, all));
    EXPECT_LT(std::abs(all - one * two * three), 1e-12);
    const auto stale = [&](int id) { return chain.isStale(id); };
    EXPECT_FALSE(stale(phases) || stale(amplitudes) || stale(last));

    ASSERT_TRUE(chain.setOn(amplitudes, 0));
    ASSERT_TRUE(gainFactor(chain, place, all));
    EXPECT_LT(std::abs(all - one * three), 1e-12);
    EXPECT_TRUE(!stale(phases) && !stale(amplitudes) && stale(last));
    ASSERT_TRUE(chain.setOn(amplitudes, 1));
    EXPECT_FALSE(stale(last)) << "switched back: the data are the same again";

    const int anew = chain.replace(phases, gainsOf(2));
    EXPECT_TRUE(!stale(anew) && stale(amplitudes) && stale(last));
    ASSERT_TRUE(chain.confirm(amplitudes));
    EXPECT_TRUE(!stale(amplitudes) && stale(last));
    ASSERT_TRUE(chain.remove(amplitudes));
    ASSERT_TRUE(chain.confirm(last));
    EXPECT_FALSE(stale(last));
    EXPECT_FALSE(chain.remove(amplitudes) || chain.setOn(phases, 1) || chain.confirm(-1));
    EXPECT_EQ(chain.gain(last, 9, 0, 0, 0), nullptr);
    chain.gain(last, 1, 0, 0, 0)->isFlagged = 1;
    EXPECT_FALSE(gainFactor(chain, place, all));
}

}  // namespace

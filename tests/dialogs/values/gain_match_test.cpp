#include "pavane/dialogs/values/ACleanSelectionPM.h"
#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "pavane/dialogs/values/gain_match.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tests/tessel/uvfits_text.h"

#include <functional>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

constexpr double day = 2451545.5;

AGains made(const std::function<void(std::vector<GainAntenna>&)>& change = {}, int ifs = 4,
            const std::vector<char>& hands = {'R', 'L'})
{
    std::vector<GainAntenna> antennas = {{1, 1, "EF"}, {1, 2, "LA"}, {1, 3, "PT"}};
    if (change)
        change(antennas);
    AGains gains;
    std::vector<std::vector<int>> groups = {{}};
    for (int i = 0; i < ifs; ++i)
        groups[0].push_back(i);
    EXPECT_TRUE(gains.create(antennas, {{0.25, 0.3}, {0.3, 0.5}}, groups, hands));
    gains.ifs = ifs;
    gains.referenceDay = day;
    for (Gain& gain : gains.cells())
        gain.state = GainState::solved;
    return gains;
}

GainFacts data()
{
    GainFacts facts;
    facts.antennas = {{1, 1, "EF"}, {1, 2, "LA"}, {1, 3, "PT"}};
    facts.ifs = 4;
    facts.hands = {'R', 'L'};
    facts.referenceDay = day;
    facts.start = 0.25;
    facts.end = 0.5;
    return facts;
}

std::string asText(const GainMatch& match)
{
    std::string text;
    for (const std::string& fault : match.faults)
        text += "! " + fault + "\n";
    for (const std::string& note : match.notes)
        text += note + "\n";
    return text;
}

}  // namespace

TEST(GainMatch, TellsWhatDoesNotMeet)
{
    const auto with = [](const std::function<void(GainFacts&)>& change) {
        GainFacts facts = data();
        change(facts);
        return facts;
    };
    const auto named = [](const char* name) {
        return [name](std::vector<GainAntenna>& of) { of[2].name = name; };
    };
    const struct {
        const char* what;
        AGains gains;
        GainFacts facts;
        const char* text;
    } rows[] = {
        {"same", made(), data(), ""},
        {"names are not told apart by case and blanks", made(named(" pt  ")), data(), ""},
        {"without names", made(named("")), data(), ""},
        {"another array", made(named("KP")), data(),
         "! it is of another array: antenna 3 is KP in the file and PT in the data\n"},
        {"another subarray", made([](auto& of) {
             for (GainAntenna& each : of)
                 each.subarray = 2;
         }),
         data(), "! none of its antennas is in the data\n"},
        {"an antenna more and one less", made([](auto& of) {
             of[2] = {1, 9, "KP"};
         }),
         data(),
         "no gain for PT: their data count as failed\n1 of its antennas are not in the data\n"},
        {"other IFs", made({}, 2), data(), "! it is of 2 IFs, the data have 4\n"},
        {"one hand", made({}, 4, {'R'}), data(), "no gains of the hand L\n"},
        {"other hands", made({}, 4, {'X'}), data(),
         "! its hands, X, are not those of the data, R and L\n"},
        {"total intensity", made({}, 4, {'I'}), data(), ""},
        {"later times", made(), with([](GainFacts& f) { f.start = 0.51, f.end = 0.6; }),
         "! its times, 06:00:00 to 12:00:00, do not meet those of the data, 12:14:24 to "
         "14:24:00\n"},
        {"a part", made(), with([](GainFacts& f) { f.end = 0.75; }),
         "it holds for 06:00:00 to 12:00:00 of 06:00:00 to 18:00:00: data outside count as "
         "failed\n"},
        {"another day", made(),
         with([](GainFacts& f) { f.referenceDay = day - 1, f.start += 1, f.end += 1; }), ""},
        {"another day that does not meet", made(),
         with([](GainFacts& f) { f.referenceDay = day - 1; }),
         "! its times, 30:00:00 to 36:00:00, do not meet those of the data, 06:00:00 to "
         "12:00:00\n"},
        {"nothing", AGains(), data(),
         "! none of its antennas is in the data\n! it is of 1 IFs, the data have 4\n"
         "! its hands, , are not those of the data, R and L\n! it has no gains\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(asText(gainMatch(row.gains, row.facts)), row.text) << row.what;
}

TEST(GainMatch, KnowsAFile)
{
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(saved("facts.uvfits", groupsHdu({{100}, {3700}}) + antennaHdu()), error))
        << error;
    const AUVXTIntervalPM times(file, -1, -1);
    const GainFacts facts = gainFactsOf(file, times);
    ASSERT_EQ(facts.antennas.size(), 2u);
    EXPECT_EQ(facts.antennas[1].name, "CD");
    EXPECT_EQ(facts.hands, std::vector<char>{'R'});
    EXPECT_EQ(facts.ifs, 1);
    EXPECT_EQ(facts.referenceDay, 2455554.5);
    EXPECT_NEAR(facts.start * 86400, 100, 0.02);
    EXPECT_NEAR(facts.end * 86400, 3700, 0.02);
    EXPECT_LT(gainFactsOf(file, AUVXTIntervalPM()).end, 0);
    ACleanSelectionPM selection;
    selection.SetData(file, times);
    EXPECT_EQ(selection.forms, (std::vector<std::string>{"mean", "RR"}));
    EXPECT_NEAR(selection.infoStop, 3700, 0.02);
}

TEST(GainMatch, TellsWhatFormsCannotHold)
{
    AGains gains = made();
    EXPECT_TRUE(gainTextLosses(gains).empty());
    gains.at(0, 0, 0, 0).isFlagged = 1;
    gains.at(0, 0, 0, 1).state = GainState::failed;
    for (std::size_t t = 0; t < 2; ++t)
        for (std::size_t h = 0; h < 2; ++h)
            gains.at(t, 0, h, 2).state = GainState::missing;
    EXPECT_EQ(gainTextLosses(gains), std::vector<std::string>{"1 antenna without a gain left out"});
    const std::vector<std::string> losses = gainTableLosses(gains);
    ASSERT_EQ(losses.size(), 5u);
    EXPECT_EQ(losses[1].substr(0, 15), "1 flagged gains");
    EXPECT_EQ(gainSummary(gains), "3 antennas, 2 intervals, 1 group of IFs, hands R and L, 1 "
                                  "failed, 1 flagged");
}

}  // namespace pavane

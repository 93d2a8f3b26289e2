#include "apps/clean/ChainEdits.h"
#include "apps/clean/options.h"
#include "apps/clean/round_lines.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

TEST(CleanOptions, StepsStayInTheOrderOfTheCommandLine)
{
    CleanOptions options;
    std::string error;
    ASSERT_TRUE(parseCleanOptions({"my data.uvfits", "--batch",
                                   "--size",         "256x512",
                                   "--cell",         "0.2",
                                   "--areas",        "core.reg",
                                   "--round",        "iter=100,threshold=0.5mJy",
                                   "--selfcal",      "phase,60s,ref=PT:9,uv=1e6:",
                                   "--areas",        "none",
                                   "--round",        "iter=400,threshold=3sigma,cycles",
                                   "--from",         "1",
                                   "--chain",        "2,1",
                                   "--weighting",    "briggs:-0.5",
                                   "--ifs",          "1-3,5",
                                   "--engine",       "mpirun",
                                   "--engine",       "-np",
                                   "--engine",       "8"},
                                  options, error))
        << error;
    EXPECT_EQ(options.data, "my data.uvfits");
    ASSERT_EQ(options.steps.size(), 7U);
    constexpr CleanStep::Kind kinds[] = {CleanStep::areas, CleanStep::round, CleanStep::selfcal,
                                         CleanStep::areas, CleanStep::round, CleanStep::from,
                                         CleanStep::chain};
    EXPECT_EQ(options.steps[6].gains, (std::vector<int>{2, 1}));
    for (std::size_t i = 0; i < std::size(kinds); ++i)
        EXPECT_EQ(options.steps[i].kind, kinds[i]) << i;
    EXPECT_EQ(options.steps[3].file, "");
    const CleanParameters first = options.steps[1].round_.over(options.parameters);
    EXPECT_EQ(first.width, 256);
    EXPECT_EQ(first.height, 512);
    EXPECT_EQ(first.iterations, 100);
    EXPECT_EQ(first.threshold, 0.5);
    EXPECT_EQ(first.unit, ThresholdUnit::millijansky);
    EXPECT_EQ(first.robust, -0.5);
    EXPECT_EQ(first.ifs, (std::vector<int>{0, 1, 2, 4}));
    const CleanParameters second = options.steps[4].round_.over(options.parameters);
    EXPECT_EQ(second.unit, ThresholdUnit::sigma);
    EXPECT_TRUE(second.stopsEachCycle);
    EXPECT_EQ(options.steps[2].selfcal_.references, (std::vector<std::string>{"PT", "9"}));
    EXPECT_EQ(options.steps[2].selfcal_.uvLow, 1e6);
    EXPECT_EQ(options.engine, (std::vector<std::string>{"mpirun", "-np", "8"}));
}

TEST(CleanOptions, WhatIsNoUseIsNamed)
{
    const struct {
        std::vector<std::string> arguments;
        const char* named;
    } cases[] = {
        {{"a", "b"}, "one set"},
        {{"--batch"}, "--batch wants"},
        {{"a", "--round", "iter=1"}, "goes with --batch"},
        {{"a", "--out", "x"}, "goes with --batch"},
        {{"a", "--size", "511"}, "--size"},
        {{"a", "--size", "512x"}, "--size"},
        {{"a", "--size", "99999999999"}, "--size"},
        {{"a", "--cell", "nan"}, "--cell"},
        {{"a", "--cell", "0"}, "--cell"},
        {{"a", "--weighting", "briggs:9"}, "briggs"},
        {{"a", "--weighting", "natural:1"}, "--weighting"},
        {{"a", "--ifs", "3-1"}, "--ifs"},
        {{"a", "--ifs", "0"}, "--ifs"},
        {{"a", "--ifs", "1-999999"}, "--ifs"},
        {{"a", "--times", "0.5,0.4"}, "--times"},
        {{"a", "--hands", "RL"}, "--hands"},
        {{"a", "--batch", "--round", "iter=1.5"}, "iter"},
        {{"a", "--batch", "--round", "iter=-1"}, "iter"},
        {{"a", "--batch", "--round", "threshold=1Jy"}, "threshold"},
        {{"a", "--batch", "--round", "gain=0"}, "gain"},
        {{"a", "--batch", "--round", "iterations=5"}, "iterations"},
        {{"a", "--batch", "--selfcal", "60s"}, "60s"},
        {{"a", "--batch", "--selfcal", "phase,0s"}, "interval"},
        {{"a", "--batch", "--selfcal", "phase,uv=5:4"}, "uv"},
        {{"a", "--batch", "--selfcal", "phase,antennas=1"}, "antennas"},
        {{"a", "--batch", "--from", "-1"}, "--from"},
    };
    for (const auto& each : cases) {
        CleanOptions options;
        std::string error;
        EXPECT_FALSE(parseCleanOptions(each.arguments, options, error)) << each.named;
        EXPECT_NE(error.find(each.named), std::string::npos) << each.named << ": " << error;
    }
}

TEST(CleanOptions, TextsOfStepsReadBackToTheSame)
{
    std::string error;
    for (const char* text :
         {"iter=100", "iter=0,threshold=0.25mJy,gain=0.05,mgain=0.7,automask=5,multiscale,cycles",
          "threshold=3sigma"}) {
        RoundWish round;
        ASSERT_TRUE(readRound(text, round, error)) << error;
        EXPECT_EQ(roundText(round), text);
    }
    for (const char* text :
         {"phase,scan", "amplitude,whole",
          "both,90s,ratio=3,antennas=4,unscaled,"
          "ref=PT:BR,uv=1000000:5000000",
          "phase,2.5s,uv=10:", "phase,60s,keepfailed,keepweights,equal,predicted,groups=1-2:4"}) {
        SelfCalWish selfcal;
        ASSERT_TRUE(readSelfCal(text, selfcal, error)) << error;
        EXPECT_EQ(selfCalText(selfcal), text);
    }
}

TEST(ChainEdits, LaterLinksAreStaleUntilTheyAreConfirmedOrSolvedAgain)
{
    ChainEdits edits;
    EXPECT_TRUE(edits.add(1, "phase"));
    EXPECT_TRUE(edits.add(2, "amplitude"));
    EXPECT_TRUE(edits.add(3, "whole"));
    const auto stale = [&] {
        std::string text;
        for (std::size_t i = 0; i < edits.chain().size(); ++i)
            text += isStale(edits.chain(), i) ? 's' : '-';
        return text;
    };
    EXPECT_EQ(stale(), "---");
    EXPECT_TRUE(edits.setOn(0, 0));
    EXPECT_EQ(stale(), "-ss");
    EXPECT_TRUE(edits.confirm(1));
    EXPECT_EQ(stale(), "--s");
    EXPECT_TRUE(edits.setOn(0, 1));
    EXPECT_EQ(stale(), "-s-") << "the last one was solved on both";
    EXPECT_TRUE(edits.undo() && edits.undo() && edits.undo());
    EXPECT_EQ(stale(), "---");
    EXPECT_EQ(edits.redoLabel(), "Switching off \"phase\"");
    EXPECT_TRUE(edits.remove(1));
    EXPECT_EQ(stale(), "-s");
    EXPECT_EQ(linkLineOf(edits.chain(), 1).solvedOn, "1, a removed one");
    EXPECT_FALSE(edits.redo());

    std::vector<StudyLink> chain = edits.chain();
    replaceLink(chain, 0, 4, "phase again");
    edits.follow(chain, "solved");
    EXPECT_EQ(stale(), "-s");
    EXPECT_TRUE(edits.confirm(1));
    EXPECT_EQ(stale(), "--");
    // the chain of a round: links of an earlier step are what they were
    EXPECT_TRUE(edits.take({1, 2, 9}));
    EXPECT_EQ(edits.chain()[1].name, "amplitude");
    EXPECT_EQ(stale(), "---");
    EXPECT_FALSE(edits.take({1, 2, 9}));
}

TEST(RoundLines, BranchesLieDeeperThanTheLineTheyLeave)
{
    EXPECT_EQ(branchDepths({-1, 0, 1, 1, 3, 0, 5}), (std::vector<int>{0, 0, 0, 1, 1, 1, 1}));
}

TEST(RoundLines, WhatIsNotKnownIsEmpty)
{
    RoundLine line;
    line.depth = 1;
    line.name = "wider";
    line.cells = 1234567;
    line.flux = 0.0395;
    line.noiseOut = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(roundCell(line, roundName), "  +- wider");
    EXPECT_EQ(roundCell(line, roundCells), "1\u202f234\u202f567");
    EXPECT_EQ(roundCell(line, roundFlux), "39.5 mJy");
    EXPECT_EQ(roundCell(line, roundNoiseOut), "");
    line.cells = -1;
    EXPECT_EQ(roundCell(line, roundCells), "all");
    EXPECT_EQ(roundCell(line, roundRange), "");
}

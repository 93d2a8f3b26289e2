#include "pavane/imaging/clean_parameters.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace pavane
{
namespace
{

CleanParameters good()
{
    CleanParameters parameters;
    parameters.cell = 0.2;
    return parameters;
}

TEST(CleanParameters, FaultsAreTold)
{
    using P = CleanParameters;
    const struct {
        std::function<void(P&)> change;
        const char* part;  // of the fault; "" for none
    } cases[] = {
        {[](P&) {}, ""},
        {[](P& p) { p.width = 511; }, "even"},
        {[](P& p) { p.height = 1 << 20; }, "even"},
        {[](P& p) { p.cell = 0; }, "cell"},
        {[](P& p) { p.cell = std::nan(""); }, "cell"},
        {[](P& p) { p.cell = 1e6; }, "27 degrees"},
        {[](P& p) { p.robust = 6; }, "robustness"},
        {[](P& p) { p.taper = -1; }, "taper"},
        {[](P& p) { p.form = "RL"; }, "form"},
        {[](P& p) {
             p.ifs = {1, 1};
         },
         "rising"},
        {[](P& p) { p.ifs = {-1}; }, "rising"},
        {[](P& p) { p.end = -1; }, "times"},
        {[](P& p) { p.gain = 0; }, "gain"},
        {[](P& p) { p.majorGain = 1.5; }, "major gain"},
        {[](P& p) { p.iterations = -1; }, "iterations"},
        {[](P& p) { p.threshold = std::nan(""); }, "threshold"},
        {[](P& p) { p.stopsEachCycle = p.isAutoMask = 1; }, "each cycle"},
        {[](P& p) { p.stopsEachCycle = p.isMultiscale = 1; }, "each cycle"},
        {[](P& p) { p.stopsEachCycle = 1; }, ""},
    };
    for (const auto& c : cases) {
        P parameters = good();
        c.change(parameters);
        const std::string fault = faultOf(parameters);
        EXPECT_EQ(fault.empty(), *c.part == 0) << fault;
        EXPECT_NE(fault.find(c.part), std::string::npos) << fault << " for " << c.part;
    }
}

TEST(CleanParameters, WhatAsksForAnotherBeam)
{
    using P = CleanParameters;
    const struct {
        std::function<void(P&)> change;
        int other;
    } cases[] = {
        {[](P& p) {
             p.iterations = 7;
             p.gain = 0.5;
             p.threshold = 3;
             p.isMultiscale = 1;
         },
         0},
        {[](P& p) { p.width = 256; }, 1},
        {[](P& p) { p.cell = 0.1; }, 1},
        {[](P& p) { p.robust = 1; }, 1},
        {[](P& p) { p.taper = 1; }, 1},
        {[](P& p) { p.form = "strict"; }, 1},
        {[](P& p) { p.ifs = {0}; }, 1},
        {[](P& p) { p.start = p.end = 3; }, 0},  // all times, as before
        {[](P& p) { p.end = 1; }, 1},
        {[](P& p) { p.shiftY = 1; }, 1},
    };
    for (const auto& c : cases) {
        P other = good();
        c.change(other);
        EXPECT_EQ(isOtherBeam(good(), other), c.other) << &c - cases;
    }
    P natural = good(), same = good();
    natural.weighting = same.weighting = ImageWeighting::natural;
    same.robust = 2;
    EXPECT_FALSE(isOtherBeam(natural, same)) << "robustness of Briggs alone";
}

TEST(CleanParameters, ProposedCells)
{
    const double mas = 206264806.24709636;
    const struct {
        double baseline, cell;
    } cases[] = {{mas / 1.0, 0.2}, {mas / 0.99, 0.1},     {mas / 2.6, 0.5}, {mas / 5, 1},
                 {mas / 400, 50},  {mas / 0.0126, 0.002}, {0, 0},           {std::nan(""), 0}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(proposedCell(c.baseline), c.cell) << c.baseline;
}

}  // namespace
}  // namespace pavane

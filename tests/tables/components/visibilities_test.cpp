#include "pavane/tables/components/AComponents.h"
#include "pavane/tables/components/ModelVisibilities.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace pavane
{

namespace
{

struct Case {
    int type;
    double axis, ratio, inclination, angle, distance, width, u, v, re, im;
};

constexpr double flux = 1.5;

// The formulas in 50 digits, the fields taken as doubles.
const Case cases[] = {
    {1, 0, 1, 0, 35, 0.9, 0.5, 1e3, -2e3, 1.4993609983465203, -0.043778951989807357},
    {1, 0, 1, 0, 35, 0.9, 0.5, 2.5e7, 1e7, -0.54985430083678269, 1.395585987265311},
    {1, 0, 1, 0, 35, 0.9, 0.5, -1.2e8, 9e7, -0.9292756731072005, 1.1774747230285495},
    {1, 0, 1, 0, 35, 0.9, 0.5, 7.1e8, -3.3e8, -1.3245663749425167, 0.70393459807828765},
    {2, 2e-4, 0.6, 25, -120, 0.02, 0.5, 1e3, -2e3, 1.499999994988144, 1.2243298731126242e-4},
    {2, 2e-4, 0.6, 25, -120, 0.02, 0.5, 2.5e7, 1e7, -1.2931237473161702, 0.75511562366980895},
    {2, 2e-4, 0.6, 25, -120, 0.02, 0.5, -1.2e8, 9e7, -0.33262709393279156, -1.4184302886896184},
    {2, 2e-4, 0.6, 25, -120, 0.02, 0.5, 7.1e8, -3.3e8, -0.5180986222913561, 0.49520866105334934},
    {2, 2e-4, 0.6, 25, -120, 0.02, 0.5, 9e9, 4e9, -5.498244259846426e-103, 1.0825788075260869e-102},
    {3, 1.1e-3, 0.7, -40, 80, 0.004, 0.5, 1e3, -2e3, 1.4999999952185926, 1.1651824609018078e-4},
    {3, 1.1e-3, 0.7, -40, 80, 0.004, 0.5, 2.5e7, 1e7, -1.4758872610901137, -0.10331559536735571},
    {3, 1.1e-3, 0.7, -40, 80, 0.004, 0.5, -1.2e8, 9e7, 0.605796313835585, 0.043166353648246598},
    {3, 1.1e-3, 0.7, -40, 80, 0.004, 0.5, 7.1e8, -3.3e8, 0.037543316619813766,
     -0.012653362622088661},
    {3, 1.1e-3, 0.7, -40, 80, 0.004, 0.5, 9e9, 4e9, 1.6978687464030929e-4, -2.2972246216016372e-4},
    {4, 8e-4, 0.5, 110, 10, 0.003, 0.5, 1e3, -2e3, 1.4999999796175832, -2.4618731897872086e-4},
    {4, 8e-4, 0.5, 110, 10, 0.003, 0.5, 2.5e7, 1e7, 0.39877632823952773, 1.4182080050653269},
    {4, 8e-4, 0.5, 110, 10, 0.003, 0.5, -1.2e8, 9e7, 0.5349026629753093, -0.04704861000153971},
    {4, 8e-4, 0.5, 110, 10, 0.003, 0.5, 7.1e8, -3.3e8, -0.26886338875443023, -0.11925822268960754},
    {4, 8e-4, 0.5, 110, 10, 0.003, 0.5, 9e9, 4e9, 0.078528520641907121, 0.012076784521220358},
    {5, 1.7e-3, 0.9, 15, 200, 0.002, 0.5, 1e3, -2e3, 1.4999999929598615, 1.40492456600797e-4},
    {5, 1.7e-3, 0.9, 15, 200, 0.002, 0.5, 2.5e7, 1e7, 0.66020349383160501, -1.2762964828093591},
    {5, 1.7e-3, 0.9, 15, 200, 0.002, 0.5, -1.2e8, 9e7, -0.25330229833519695, -0.13497778812299835},
    {5, 1.7e-3, 0.9, 15, 200, 0.002, 0.5, 7.1e8, -3.3e8, 6.8517410797219479e-3,
     9.7117285155005014e-3},
    {5, 1.7e-3, 0.9, 15, 200, 0.002, 0.5, 9e9, 4e9, 8.3087667013740998e-6, 3.0034021031857805e-5},
    {6, 2.2e-3, 1, 66, -77, 0.001, 0.5, 1e3, -2e3, 1.499999997187589, -6.507871710241576e-5},
    {6, 2.2e-3, 1, 66, -77, 0.001, 0.5, 2.5e7, 1e7, 1.1722298875579505, -0.93540297263184759},
    {6, 2.2e-3, 1, 66, -77, 0.001, 0.5, -1.2e8, 9e7, 0.16494618794422346, 0.27898453674114508},
    {6, 2.2e-3, 1, 66, -77, 0.001, 0.5, 7.1e8, -3.3e8, -0.013676110793381414, 0.059172131386719296},
    {6, 2.2e-3, 1, 66, -77, 0.001, 0.5, 9e9, 4e9, 0.85550350040803585, -1.217916367933846},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, 0, 0, 2.475, 0.0},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, 1e3, -2e3, 2.4749999783788014, -3.1986460813667821e-4},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, 2.5e7, 1e7, -0.4470393305738605, -2.3364100270429609},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, -1.2e8, 9e7, -0.023838126900914298, 0.021572787174607383},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, 7.1e8, -3.3e8, 8.8208434967340678e-3,
     -0.019975106317342981},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0.35, 9e9, 4e9, -3.3499509050273221e-3, 2.5738851007019583e-3},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 0, -1.2e8, 9e7, 0.46620234470242779, -0.42189908646650769},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 1e-9, -1.2e8, 9e7, 0.46620234323165727, -0.42189908513550465},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 1e-4, -1.2e8, 9e7, 0.46605526541490491, -0.42176598413926895},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 1, -1.2e8, 9e7, -0.30231146994720939, 0.27358277891220253},
    {7, 1.4e-3, 0.8, -5, 45, 0.006, 1.7, -1.2e8, 9e7, 6.7084528566172596e-3,
     -6.0709478705367754e-3},
    {5, 1e-5, 1, 0, 0, 0, 0.5, 1e6, 2e6, 1.4999999826015427, 0.0},
    {3, 0, 1, 0, 0, 0, 0.5, 1e6, 2e6, 1.5, 0.0},
    {7, 0, 1, 0, 0, 0, 0, 1e6, 2e6, 3.0, 0.0},
};

ACompItem itemOf(const Case& c)
{
    ACompItem item;
    item.type = c.type;
    item.PeakFlux() = flux;
    item.LargeAxis() = c.axis;
    item.AxisRatio() = c.ratio;
    item.Inclination() = c.inclination;
    item.Angle() = c.angle;
    item.Distance() = c.distance;
    item.Width() = c.width;
    return item;
}

double toleranceOf(int type) { return flux * (type <= gaussianComponent ? 1e-12 : 1e-9); }

}  // namespace

TEST(Visibility, AgreesWithFiftyDigits)
{
    for (const Case& c : cases) {
        AComponents model;
        model.Add(itemOf(c));
        const std::complex<double> expected(c.re, c.im);
        EXPECT_LE(std::abs(model.VfromUV(c.u, c.v) - expected), toleranceOf(c.type))
            << "kind " << c.type << " width " << c.width << " at " << c.u << ", " << c.v;
    }
}

TEST(Visibility, IsTheFluxAtTheOrigin)
{
    for (int type = 0; type <= 8; ++type)
        for (const double axis : {0.0, 0.01}) {
            const ACompItem item = itemOf({type, axis, 0.5, 30, 40, 0.1, 0.4, 0, 0, 0, 0});
            const double expected = flux * (type == wideRingComponent ? 1.6 : 1);
            EXPECT_NEAR(item.VfromUV(0, 0).real(), expected, 1e-15) << type;
            EXPECT_EQ(item.VfromUV(0, 0).imag(), 0) << type;
        }
}

TEST(Visibility, OfManyPointsIsThatOfEach)
{
    std::mt19937_64 random(17);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> power(3, 9.5);
    for (int type = 1; type <= 7; ++type) {
        AComponents model;
        for (int i = 0; i < 20; ++i)
            model.Add(itemOf({type, std::exp2(-8 - i), 0.1 * i, 20.0 * i, 50.0 * i, 0.001 * i,
                              0.11 * i, 0, 0, 0, 0}));
        std::vector<double> u(1299), v(1299);
        for (std::size_t i = 0; i < u.size(); ++i) {
            const double scale = i % 7 ? std::pow(10, power(random)) : 0;
            u[i] = scale * normal(random);
            v[i] = scale * normal(random);
        }
        std::vector<std::complex<double>> many(u.size());
        model.VfromUV(u.data(), v.data(), 1299, many.data());
        std::vector<std::complex<double>> prepared(u.size());
        ModelVisibilities(model).at(u.data(), v.data(), u.size(), prepared.data());
        double worst = 0;
        for (std::size_t i = 0; i < u.size(); ++i)
            for (const std::complex<double> value : {many[i], prepared[i]})
                worst = std::max(worst, std::abs(value - model.VfromUV(u[i], v[i])));
        EXPECT_LE(worst, 20 * toleranceOf(type)) << type;
    }
}

TEST(Visibility, ErrsByTheCurvatureOfTheSky)
{
    AComponents model;
    EXPECT_EQ(ModelVisibilities(model).wTurns(1e12), 0);
    const double arcsecond = 4.84813681109536e-6;
    struct Item {
        const char* text;
        double radians;
    };
    // the farthest end counts, so each is farther than those before
    for (const Item& item :
         {Item{"1 1 9 1 0 0 3 0", 3 * arcsecond}, Item{"2 1 4 0.5 0 0 3 0", 5 * arcsecond},
          Item{"3 1 4 2 0 0 3 0", 7 * arcsecond}}) {
        model.Add(ACompItem(item.text));
        const double turns = 1e8 * (1 - std::cos(std::asin(item.radians)));
        EXPECT_NEAR(ModelVisibilities(model).wTurns(-1e8), turns, 1e-7) << item.text;
    }
    model.Add(ACompItem("1 1 0 1 0 0 300000 0"));
    EXPECT_EQ(ModelVisibilities(model).wTurns(1), std::numeric_limits<double>::infinity());
}

}  // namespace pavane

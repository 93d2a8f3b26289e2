#include "pavane/axes/AStatHistGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/normality.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace pavane;

namespace
{

AArray<double> binsOf(std::initializer_list<double> heights)
{
    AArray<double> bins;
    for (const double height : heights)
        bins.Add(height);
    return bins;
}

}  // namespace

TEST(Normality, ComparesTheTwoStatisticsWithOneStandardError)
{
    const struct {
        std::initializer_list<double> bins;
        double mean, variance;
        int gaussian;
    } cases[] = {
        // n = 6, all at the mean: k = 0, e / x^2 = 3 / (1/2 * 2/3) = 9, bound sqrt(3600 / 1188)
        {{2, 2, 2, 2, 2, 2}, 2, 1, 0},
        // q = 1: k = 1 / (5/7 * 2/3 * 1/2) = 4.2, |4.2 - 9| = 4.8 is too far ...
        {{1, 3, 1, 3, 1, 3}, 2, 1, 0},
        // ... with x = 0.5 it is |4.2 - 2.25| / 0.25 = 7.8, with x = 0.7 |4.2 - 4.41| / 0.49 = 0.43
        {{1, 3, 1, 3, 1, 3}, 2, 0.5, 0},
        {{1, 3, 1, 3, 1, 3}, 2, 0.7, 1},
        {{0, 0, 0, 0, 0, 12}, 2, 0.7, 0},  // skew
        {{1, 3, 1}, 2, 0.7, 0},            // fewer than four bins
        {{}, 2, 0.7, 0},
        {{1, 3, 1, 3, 1, 3}, 2, 0, 0},
        {{1, 3, 1, 3, 1, 3}, 2, -1, 0},
    };
    for (const auto& c : cases) {
        const AArray<double> bins = binsOf(c.bins);
        EXPECT_EQ(looksGaussian(bins.lpArray(), bins.count(), c.mean, c.variance), c.gaussian)
            << c.variance;
    }
}

TEST(Histogram, TellsItsMomentsAndTheVerdictInTheHeader)
{
    AStatHistGraph graph(nullptr, 0);
    AArray<double> bins = binsOf({1, 3, 1, 3, 1, 3});
    TMnMx range{-2, 4};
    graph.SetParameters(&bins, range, 2, 0.7, 0, 0);
    EXPECT_EQ(graph.getHeaderText(0), "Mean = 2, RMS = 0.837, Distribution is Gaussian");
    graph.SetParameters(&bins, range, 1.23456e-7, 4, 0, 0);
    EXPECT_EQ(graph.getHeaderText(0), "Mean = 1.23e-07, RMS = 2, Distribution is  not Gaussian");
    TMinMax own;
    graph.getMinMax(own);
    EXPECT_EQ(own, (TMinMax{-2, 4, 1, 3}));
}

TEST(Histogram, DrawsBarsThatTouchAndAPeakAtTheTop)
{
    TMinMax range{0, 4, 0, 10};
    ABAxis axis(1, 1, &range, 0);
    axis.setGraphRect(CRect(0, 0, 40, 40));
    axis.setFHeight(4);  // a curve of one pixel
    AArray<double> bins = binsOf({5, 10, std::nan(""), 2.5});
    TMnMx spread{0, 4};
    auto* const graph = new AStatHistGraph(&axis, 0);
    graph->SetParameters(&bins, spread, 2, 1e-3, 0x00FF00, 0x0000FF);
    CPicture canvas(41, 41);
    const auto dc = canvas.dc();
    axis.setDc(dc.get());
    axis.setLineWidth(9);
    CRect rect(0, 0, 41, 41);
    axis.drawChilds(*dc, rect, range);
    EXPECT_EQ(canvas.row(30)[5], 0x00FF00U);   // inside the first bar
    EXPECT_EQ(canvas.row(10)[5], 0xFFFFFFU);   // above it
    EXPECT_EQ(canvas.row(30)[9], 0x000000U);   // its edge ...
    EXPECT_EQ(canvas.row(30)[10], 0x000000U);  // ... touches the next one's
    EXPECT_EQ(canvas.row(20)[25], 0xFFFFFFU);  // no bar without a height
    EXPECT_EQ(canvas.row(0)[20], 0xFF0000U);   // the peak
    EXPECT_EQ(axis.getLineWidth(), 9);
    EXPECT_EQ(axis.getColor(), 0x0000FFU);
}

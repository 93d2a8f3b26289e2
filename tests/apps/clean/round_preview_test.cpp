#include "apps/clean/RoundPreview.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

namespace
{

/// 3 rows of 4: the peak of all is blank's neighbour, that of the mask is negative.
AMatrix<float> residual()
{
    AMatrix<float> cells(3, 4);
    constexpr float values[] = {1, -1, 1, -1, 3, -4, 9, -9, 1, 1, -1, 1};
    for (int i = 0; i < 12; ++i)
        cells(i / 4, i % 4) = values[i];
    cells(2, 3) = std::numeric_limits<float>::quiet_NaN();
    return cells;
}

NextRound looked(ABitMatrix mask, const NextRound& next, const AMatrix<float>& cells)
{
    RoundPreview preview;
    preview.begin(std::move(mask), next);
    while (preview.step(cells))
        continue;
    EXPECT_FALSE(preview.isRunning());
    return preview.result();
}

}  // namespace

TEST(RoundPreview, TellsPeakAndNoiseOnBothSidesOfTheMask)
{
    const AMatrix<float> cells = residual();
    ABitMatrix mask(3, 4);
    mask.setSpan(1, 0, 1);
    mask.set(2, 3);  // blank
    NextRound next;
    next.areas = 2;
    next.cells = 3110;
    next.beams = 12.4;
    next = looked(mask, next, cells);
    EXPECT_EQ(next.peak.value, -4);
    EXPECT_EQ(next.peak.x, 1);
    EXPECT_EQ(next.peak.y, 1);
    EXPECT_DOUBLE_EQ(next.noiseInside, std::sqrt((9.0 + 16) / 2));
    EXPECT_DOUBLE_EQ(next.noiseOutside, std::sqrt((4.0 + 81 + 81 + 3) / 9));
    next.noiseInside = 0.000385;
    EXPECT_EQ(nextRoundText(next), "Next round: 2 areas, 3\u202f110 cells, 12.4 beam areas;   "
                                   "residual's peak inside -4 Jy at 1, 1;   noise out 4.33 Jy, in "
                                   "385 \u00b5Jy");
}

TEST(RoundPreview, SaysWhatNoAreaAndAnEmptyMaskMean)
{
    NextRound next;
    next.isWhole = 1;
    next.cells = 12;
    EXPECT_EQ(nextRoundText(looked({}, next, residual())),
              "Next round: no area, so the whole map is cleaned, 12 cells;   residual's peak 9 Jy "
              "at 2, 1");
    next = {};
    next.areas = 1;
    EXPECT_EQ(nextRoundText(looked(ABitMatrix(3, 4), next, residual())),
              "Next round: 1 area without a cell of the map");
    next.cells = 5;  // a residual of another size is not looked at
    EXPECT_EQ(nextRoundText(looked(ABitMatrix(4, 4), next, residual())),
              "Next round: 1 area, 5 cells");
}

TEST(RoundPreview, CountsTheCellsOfABeam)
{
    EXPECT_NEAR(cellsOfBeam({0.002, 0.001, 30}, 0.5), 9.0647, 1e-3);  // 1.1331 * 4 * 2
    EXPECT_EQ(cellsOfBeam({}, 0.5), 0);
    EXPECT_EQ(cellsOfBeam({0.002, 0.001, 0}, 0), 0);
}

#include "pavane/axes/maps/cells/beam_shape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

using namespace pavane;

namespace
{

/// A main lobe and a side lobe, both Gaussians, on cells of the given steps about the peak.
struct MadeBeam {
    double major, minor, angle;
    double side, sideX, sideY;  ///< height and cells from the peak
    double stepX = -1, stepY = 1;
};

constexpr int cells = 101, middle = 50;
constexpr float notNumber = std::numeric_limits<float>::quiet_NaN();

TMinMax centresOf(const MadeBeam& made)
{
    return {-middle * made.stepX, middle * made.stepX, -middle * made.stepY, middle * made.stepY};
}

AMatrix<float> mapOf(const MadeBeam& made)
{
    AMatrix<float> map(cells, cells);
    const double turn = made.angle * std::numbers::pi / 180;
    for (int r = 0; r < cells; ++r)
        for (int c = 0; c < cells; ++c) {
            const double e = (c - middle) * made.stepX, n = (r - middle) * made.stepY;
            const double along = (e * std::sin(turn) + n * std::cos(turn)) / made.major;
            const double across = (e * std::cos(turn) - n * std::sin(turn)) / made.minor;
            const double square = along * along + across * across;
            const double off = std::hypot(c - middle - made.sideX, r - middle - made.sideY) / 4;
            map(r, c) =
                static_cast<float>(2 * std::exp(-4 * std::numbers::ln2 * square) +
                                   made.side * std::exp(-4 * std::numbers::ln2 * off * off));
        }
    return map;
}

}  // namespace

TEST(BeamShape, FindsSideLobesAndHalfPowerWidths)
{
    const MadeBeam beams[] = {
        {12, 8, 0, 0.4, 30, 0},
        {12, 8, 0, -0.7, 30, 10},  // a trough is a side lobe, too
        {14, 7, 35, 0.2, -30, -25},
        {14, 7, -60, 0.2, 20, -30, 1, 1},  // x rises with the column
        {6, 4, 20, 0.3, 30, 25, -0.5, 0.5},
        {24, 14, 80, 0.3, 0, 35, -2, 1.5},  // cells are not square
    };
    for (const MadeBeam& made : beams) {
        const AMatrix<float> map = mapOf(made);
        const AFloatMatrixAccess access(map);
        const TMinMax centres = centresOf(made);
        BeamShape shape;
        ASSERT_TRUE(beamShape(access, centres, shape)) << made.angle;
        EXPECT_NEAR(shape.peak.value, 2, 1e-3);
        EXPECT_EQ(shape.peak.x, 0);
        EXPECT_EQ(shape.peak.y, 0);
        EXPECT_NEAR(shape.fitted.major, made.major, 0.05) << made.angle;
        ASSERT_TRUE(shape.hasSideLobe) << made.angle;
        EXPECT_NEAR(shape.sideLobe.value, made.side, 0.01) << made.angle;
        EXPECT_NEAR(shape.sideLobe.x, made.sideX * made.stepX, 1e-9) << made.angle;
        EXPECT_NEAR(shape.sideLobe.y, made.sideY * made.stepY, 1e-9) << made.angle;
        const double widths[] = {made.major, made.minor};
        for (int i = 0; i < 2; ++i) {
            const BeamCut cut = cutBeam(access, centres, shape.peak, made.angle + 90 * i);
            // between cells the value is a little below that of the Gaussian
            EXPECT_NEAR(cut.halfWidth(), widths[i], 0.05 * widths[i]) << made.angle << ' ' << i;
            EXPECT_NEAR(cut.halfBefore, -cut.halfAfter, 0.02 * widths[i]);
            ASSERT_EQ(cut.distance.size(), cut.value.size());
            EXPECT_TRUE(std::is_sorted(cut.distance.begin(), cut.distance.end()));
        }
    }
}

TEST(BeamShape, TellsWhatIsMissing)
{
    AMatrix<float> map(5, 7);
    const AFloatMatrixAccess access(map);
    const TMinMax centres{3, -3, -2, 2};
    BeamShape shape;
    const struct {
        const char* what;
        float all, peak, beside;
        int good, side;
    } rows[] = {
        {"nothing", 0, 0, 0, 0, 0},
        {"all below 0", -1, -1, -1, 0, 0},
        {"blank", notNumber, notNumber, notNumber, 0, 0},
        {"a peak alone", 0, 1, 0, 1, 0},
        {"a peak among blanks", notNumber, 1, notNumber, 1, 0},
        {"flat", 1, 1, 1, 1, 0},
        {"one that goes down", 0, 1, 0.5F, 1, 0},
        {"a trough", 0, 1, -0.5F, 1, 1},
    };
    for (const auto& row : rows) {
        map.fill(row.all);
        map(2, 3) = row.peak;
        map(2, 4) = row.beside;
        ASSERT_EQ(beamShape(access, centres, shape), row.good) << row.what;
        EXPECT_EQ(row.good && shape.hasSideLobe, row.side != 0) << row.what;
    }
    EXPECT_FALSE(beamShape(access, {1, 1, -2, 2}, shape));  // columns that are not apart
    map.fill(1);
    const BeamCut flat = cutBeam(access, centres, {1, 0, 0}, 90);
    EXPECT_TRUE(std::isnan(flat.halfWidth()));
    EXPECT_EQ(flat.distance.front(), -3);
    EXPECT_EQ(flat.distance.back(), 3);
    EXPECT_TRUE(cutBeam(access, centres, {1, 0, 0}, std::nan("")).value.empty());
}

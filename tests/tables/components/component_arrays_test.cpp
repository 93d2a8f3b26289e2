#include "pavane/tables/components/component_arrays.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

constexpr std::size_t count = 3;
const double rows[count][componentFields] = {{1, 2, 0, 1, 0, 30, 0.01, 0.5},
                                             {2, -1, 0.02, 0.5, 40, 50, 0.02, 0.5},
                                             {-7, 1, 0.01, 0.25, 10, 80, 0, 0.1}};

/// A column for each field of an array of rows, as a table has them, last row first if `backwards`.
ComponentColumns columnsOf(const void* first, std::int64_t rowBytes, int backwards)
{
    ComponentColumns columns;
    const auto* const start = static_cast<const unsigned char*>(first);
    for (int f = 0; f < componentFields; ++f)
        columns.field[f] = {start + f * 8 + (backwards ? (count - 1) * rowBytes : 0),
                            backwards ? -rowBytes : rowBytes};
    return columns;
}

}  // namespace

TEST(ComponentArrays, HoldWhatTheListHolds)
{
    AComponents model;
    CString error;
    std::vector<unsigned char> odd(sizeof rows + 64);
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(odd.data() + 1 + i * 71, rows[i], sizeof rows[i]);
    for (const int backwards : {0, 1})
        for (const ComponentColumns& columns : {columnsOf(rows, sizeof rows[0], backwards),
                                                columnsOf(odd.data() + 1, 71, backwards)}) {
            ASSERT_TRUE(componentsFrom(columns, count, model, error)) << error;
            double back[count][componentFields] = {};
            ComponentTargets targets;
            for (int f = 0; f < componentFields; ++f)
                targets.field[f] = {&back[0][f], sizeof back[0]};
            componentsTo(model, targets);
            for (std::size_t i = 0; i < count; ++i)
                for (int f = 0; f < componentFields; ++f)
                    EXPECT_EQ(back[i][f], rows[backwards ? count - 1 - i : i][f]);
        }
    ComponentColumns fluxOnly;
    fluxOnly.field[1] = {rows[0], 0};
    ASSERT_TRUE(componentsFrom(fluxOnly, 2, model, error));
    EXPECT_EQ(model(1).PeakFlux(), 1);
    EXPECT_EQ(model(1).type, pointComponent);
    EXPECT_EQ(model(1).AxisRatio(), 1);
    for (int f = 0; f < componentFields; ++f)
        for (const double bad : {std::nan(""), HUGE_VAL, f ? -HUGE_VAL : 1.5, f ? HUGE_VAL : 3e9}) {
            double damaged[count][componentFields];
            std::memcpy(damaged, rows, sizeof rows);
            damaged[2][f] = bad;
            EXPECT_FALSE(
                componentsFrom(columnsOf(damaged, sizeof damaged[0], 0), count, model, error));
            EXPECT_EQ(error.find("component 3: its "), 0u) << error;
        }
    EXPECT_FALSE(componentsFrom(fluxOnly, -1, model, error));
    EXPECT_FALSE(componentsFrom(fluxOnly, std::int64_t{1} << 32, model, error));
    EXPECT_EQ(model.count(), 2);
    EXPECT_TRUE(componentsFrom({}, 0, model, error));
    EXPECT_EQ(model.count(), 0);
}

TEST(ComponentArrays, GiveVisibilitiesAndMapsInOneCall)
{
    AComponents model;
    CString error;
    ASSERT_TRUE(componentsFrom(columnsOf(rows, sizeof rows[0], 0), count, model, error));
    constexpr int n = 1500;
    std::vector<double> uv(2 * n);
    for (int i = 0; i < 2 * n; ++i)
        uv[static_cast<std::size_t>(i)] = 1e6 * i * std::sin(0.1 * i);
    std::vector<std::complex<double>> sums(n), same(n);
    // u and v taken in turn, backwards
    const DoubleColumn u{uv.data() + 2 * n - 2, -16}, v{uv.data() + 2 * n - 1, -16};
    ASSERT_TRUE(modelVisibilities(model, u, v, n, sums.data(), error));
    ASSERT_TRUE(modelVisibilities(model, {uv.data()}, {uv.data() + n}, n, same.data(), error));
    for (std::size_t i = 0; i < n; ++i) {
        EXPECT_LT(std::abs(sums[i] - model.VfromUV(uv[2 * (n - 1 - i)], uv[2 * (n - 1 - i) + 1])),
                  4e-9);
        EXPECT_LT(std::abs(same[i] - model.VfromUV(uv[i], uv[n + i])), 4e-9);
    }
    const TMinMax range{0.1, -0.1, -0.1, 0.1};
    AMatrix<float> map, plain(101, 101);
    ASSERT_TRUE(modelMap(model, 101, 101, range, map, error)) << error;
    plain.fill(0);
    model.ToMap(plain, range);
    EXPECT_EQ(std::memcmp(map.data(), plain.data(), 101 * 101 * sizeof(float)), 0);
    StopFlag stop;
    stop.stop();
    EXPECT_FALSE(modelMap(model, 5, 5, range, map, error, &stop));
    EXPECT_EQ(error, "stopped");
    EXPECT_FALSE(modelVisibilities(model, u, v, n, sums.data(), error, &stop));
    EXPECT_FALSE(modelMap(model, 0, 5, range, map, error));
    EXPECT_FALSE(modelMap(model, 5, 5, {1, 1, 0, 1}, map, error));
    EXPECT_EQ(map.rows(), 101);
}

}  // namespace pavane

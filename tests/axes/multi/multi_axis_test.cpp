#include "pavane/axes/multi/A2DAxisMulti.h"

#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/AGraphYLine.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

using namespace pavane;

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

bool areEqual(const CPicture& a, const CPicture& b)
{
    for (int y = 0; y < a.height(); ++y)
        if (std::memcmp(a.row(y), b.row(y), sizeof(std::uint32_t) * a.width()) != 0)
            return false;
    return true;
}

struct Data {
    std::vector<double> x, y;
    explicit Data(int n = 200, double factor = 1)
    {
        for (int i = 0; i < n; ++i) {
            x.push_back(1 + i);
            y.push_back(factor * (2 + std::sin(i * 0.1)));
        }
    }
    int count() const { return static_cast<int>(x.size()); }
    AGraphXYLine* line(ABAxis& axis, COLORREF color = 0, int asItem = 0)
    {
        return new AGraphXYLine(&axis, x.data(), y.data(), count(), nullptr, PS_SOLID, 1, color,
                                asItem);
    }
};

void drawInto(CPicture& picture, A2DAxis& axis, int smooth = 0)
{
    const auto dc = picture.dc();
    dc->SetSmooth(smooth);
    CRect rect(0, 0, picture.width(), picture.height());
    axis.draw(*dc, rect);
}

}  // namespace

TEST(Multi, WithoutScalesItIsTheOrdinaryPlot)
{
    Data data;
    const TMinMax ranges[] = {{}, {3, 70, -1, 5, 0, 1}, {5, 5, 2, 2, 0, 1}, {0, notANumber, 1, 4}};
    for (const TMinMax& given : ranges)
        for (const int direct : {1, -1, 0})
            for (const int options :
                 {0, axisGridX | axisGridY, axisBitmapMode | axisTicksInside, int{axisNoXLabels}}) {
                TMinMax range = given;
                A2DAxis plain(direct, direct, &range, options);
                A2DAxisMulti multi(direct, direct, &range, options);
                CPicture pictures[] = {{400, 300}, {400, 300}};
                for (A2DAxis* const axis : {&plain, static_cast<A2DAxis*>(&multi)}) {
                    axis->setNameOX("Time~");
                    axis->setNameOY("Flux [%sJy]");
                    data.line(*axis);
                    drawInto(pictures[axis == &multi], *axis, 1);
                }
                EXPECT_TRUE(areEqual(pictures[0], pictures[1])) << direct << ' ' << options;
                EXPECT_EQ(plain.getGraphRect(), multi.getPanelRect(0));
            }
}

TEST(Multi, GraphsFindTheirScales)
{
    Data data;
    A2DAxisMulti axis(1, 1, nullptr, 0);
    EXPECT_EQ(axis.GetAxisType(), 13);
    axis.setNameOY("Flux");
    AGraph* const first = data.line(axis);
    AGraph* const unnamed = data.line(axis, 0, 1);
    std::vector<AGraph*> items;
    for (const char* name : {"Rate", "Flux", "Rate"}) {
        auto* const graph =
            new AGraphYLine(&axis, data.y.data(), data.count(), nullptr, PS_SOLID, 0, 1, 1, 0, 1);
        graph->setName(name);
        items.push_back(graph);
    }
    EXPECT_EQ(axis.childs().count(), 5);
    EXPECT_EQ(axis.getScaleCount(), 1);
    EXPECT_EQ(axis.getScaleOf(unnamed), -1);
    CPicture picture(400, 300);
    drawInto(picture, axis);
    EXPECT_EQ(axis.getScaleCount(), 3);
    const int expected[] = {2, 0, 2};
    for (std::size_t i = 0; i < items.size(); ++i)
        EXPECT_EQ(axis.getScaleOf(items[i]), expected[i]);
    EXPECT_EQ(axis.getScaleOf(first), 0);
    EXPECT_EQ(axis.getScaleOf(unnamed), 1);
    EXPECT_EQ(axis.getScale(2).name, "Rate");

    EXPECT_FALSE(axis.deleteScale(0));
    EXPECT_FALSE(axis.deleteScale(1));
    EXPECT_FALSE(axis.setScaleOf(unnamed, 3));
    EXPECT_TRUE(axis.setScaleOf(unnamed, 0));
    EXPECT_TRUE(axis.deleteScale(1));
    EXPECT_EQ(axis.getScaleOf(items[0]), 1);
    EXPECT_TRUE(axis.deleteGraph(items[0]));
    EXPECT_FALSE(axis.deleteGraph(items[0]));
    EXPECT_EQ(axis.getScaleOf(items[0]), -1);
    drawInto(picture, axis);
}

TEST(Multi, BadRangesHarmNoOtherScale)
{
    Data data;
    const TMnMx ranges[] = {{}, {2, 2}, {5, -5}, {0, infinity}, {notANumber, 1}, {0, 3}, {-1, 1}};
    for (const TMnMx& range : ranges)
        for (const int direct : {0, 1, -1}) {
            A2DAxisMulti axis(1, 1, nullptr, 0);
            AYScale scale;
            scale.range = range;
            scale.direct = direct;
            const int bad = axis.addScale(scale);
            scale.range = {1, 10};
            const int good = axis.addScale(scale);
            axis.setScaleOf(data.line(axis), bad);
            axis.setScaleOf(data.line(axis), good);
            CPicture picture(400, 300);
            drawInto(picture, axis);
            const TMnMx repaired = axis.getScale(bad).range;
            EXPECT_LT(repaired.min, repaired.max);
            EXPECT_TRUE(std::isfinite(repaired.min) && std::isfinite(repaired.max));
            EXPECT_EQ(axis.getScale(good).range, (TMnMx{1, 10}));
            EXPECT_EQ(axis.getScale(good).direct, direct);
            EXPECT_EQ(axis.getScale(bad).direct == 0, direct == 0 && repaired.min > 0);
        }
}

TEST(Multi, NumbersOfScalesAndPanelsThatLeaveNoRoom)
{
    struct Case {
        int scales, panels, width, height;
        double weight;
    };
    const Case cases[] = {{0, 1, 400, 300, 1},        {1000, 1, 400, 300, 1},
                          {1000, 1000, 400, 300, 1},  {3, 3, 400, 300, 0},
                          {3, 3, 30, 12, notANumber}, {90, 90, 300, 400, 1}};
    Data data;
    for (const Case& c : cases) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        for (int i = 0; i < c.scales; ++i) {
            AYScale scale;
            scale.panel = i % c.panels;
            scale.weight = c.weight;
            scale.name = "Scale";
            axis.setScaleOf(data.line(axis), axis.addScale(scale));
        }
        CPicture picture(c.width, c.height);
        drawInto(picture, axis);
        const bool isCrowded = c.scales == 1000 && c.panels == 1;
        EXPECT_GE(axis.getPanelRect(0).Width() * 2, isCrowded ? c.width : 0);
    }
}

TEST(Multi, AChangedPanelIsDrawnAloneAndLooksAsInAWholePicture)
{
    for (const int options : {0, int{axisBitmapMode}})
        for (const double gap : {0.5, 0.0}) {
            std::vector<Data> data(6);
            A2DAxisMulti axis(1, 1, nullptr, options);
            axis.setPanelGap(gap);
            AGraph* graphs[6];
            for (int i = 0; i < 6; ++i) {
                AYScale scale;
                scale.panel = i;
                scale.range = {0, 4};
                Data& d = data[static_cast<std::size_t>(i)];
                graphs[i] = new AGraphXYPoint(&axis, d.x.data(), d.y.data(), d.count(), nullptr,
                                              graphPointCross, 1, RGB(200, 0, 0), 0);
                axis.setScaleOf(graphs[i], axis.addScale(scale));
                axis.setPanelCaption(i, "caption");
                graphs[i]->setGraphName(i == 3 ? "name" : "");
            }
            axis.setLegend(legendEmptiest);
            axis.setPanels(2, 0);
            CPicture picture(500, 400);
            CRect rect(0, 0, 500, 400);
            const auto dc = picture.dc();
            EXPECT_FALSE(axis.drawChanged(*dc, rect));
            axis.draw(*dc, rect);
            for (double& y : data[1].y)
                y = 4 - y;
            for (double& y : data[3].y)
                y = 0.1;
            axis.setChanged(graphs[1]);
            EXPECT_TRUE(axis.drawChanged(*dc, rect));
            CPicture whole(500, 400);
            EXPECT_FALSE(areEqual(picture, whole));  // panel 3 has not been told of
            axis.setChanged(graphs[3]);
            EXPECT_TRUE(axis.drawChanged(*dc, rect));
            drawInto(whole, axis);
            EXPECT_TRUE(areEqual(picture, whole)) << options << ' ' << gap;
            axis.setScale(2, axis.getScale(2));
            EXPECT_FALSE(axis.drawChanged(*dc, rect));
        }
}

TEST(Multi, ACopyDrawsTheSame)
{
    Data data;
    A2DAxisMulti axis(1, 1, nullptr, 0);
    AYScale scale;
    scale.panel = 1;
    axis.setScaleOf(data.line(axis), axis.addScale(scale));
    data.line(axis);
    CPicture pictures[] = {{400, 300}, {400, 300}};
    drawInto(pictures[0], axis);
    A2DAxisMulti copy(1, 1, nullptr, 0);
    copy = axis;
    drawInto(pictures[1], copy);
    EXPECT_TRUE(areEqual(pictures[0], pictures[1]));
}

TEST(Multi, ErrorBarsReachAsFarAsTheyAreAndWidenTheRange)
{
    double x[] = {1, 2, 3};
    double y[] = {10, notANumber, 30};
    double below[] = {20, 5, infinity};
    double above[] = {1, 5, -3};
    for (const int direct : {1, 0})
        for (const int options : {0, int{axisBitmapMode}}) {
            A2DAxisMulti axis(1, direct, nullptr, options);
            auto* const points =
                new AGraphXYErrors(&axis, x, y, 3, nullptr, graphPointDot, 0, RGB(255, 0, 0), 0);
            points->setYErrors(below, above);
            points->setXErrors(below);
            TMinMax range;
            points->getMinMax(range);
            EXPECT_EQ(range, (TMinMax{-19, 21, direct ? -10.0 : 10.0, 30}));
            axis.setMinMax({0, 4, 1, 40, 0, 1});
            CPicture picture(300, 200);
            drawInto(picture, axis);
            const int left = axis.RPXtoGPX(1);
            for (const auto& [value, isBar] : {std::pair{8.0, true}, {10.7, true}, {14.0, false}})
                EXPECT_EQ(picture.row(axis.RPYtoGPY(value))[left] != 0xFFFFFF, isBar) << value;
            EXPECT_EQ(picture.row(axis.RPYtoGPY(20))[axis.RPXtoGPX(3)], 0xFFFFFFU);
        }
}

TEST(Multi, ErrorsLeaveALogarithmicScaleAsItIs)
{
    double x[] = {1, 2, 3}, y[] = {1, 10, 100}, error[] = {1.5, 3, 20};
    for (const int scale : {0, 1}) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        axis.addScale({});
        AYScale log;
        log.direct = 0;
        axis.setScale(scale, log);
        auto* const points =
            new AGraphXYErrors(&axis, x, y, 3, nullptr, graphPointDot, 1, RGB(0, 0, 255), 0);
        points->setYErrors(error);
        axis.setScaleOf(points, scale);
        CPicture picture(300, 200);
        drawInto(picture, axis);
        EXPECT_EQ(axis.getScale(scale).direct, 0);
        EXPECT_EQ(axis.getScale(scale).range, (TMnMx{1, 120}));
    }
}

TEST(Multi, BarsAreLighterThanPointsAndHideNone)
{
    double x[] = {2}, lower[] = {2}, upper[] = {3}, error[] = {1.5};
    for (const int options : {0, int{axisBitmapMode}}) {
        A2DAxisMulti axis(1, 1, nullptr, options);
        axis.setScale(0, {"", {0, 5}});
        axis.setMinMax({0, 4, 0, 5, 0, 1});
        axis.setScaleOf(
            new AGraphXYErrors(&axis, x, lower, 1, nullptr, graphPointDot, 1, RGB(255, 0, 0), 0),
            0);
        auto* const above =
            new AGraphXYErrors(&axis, x, upper, 1, nullptr, graphPointDot, 1, RGB(0, 0, 255), 0);
        above->setYErrors(error);
        CPicture picture(300, 200);
        drawInto(picture, axis);
        const int column = axis.RPXtoGPX(2);
        const std::uint32_t bar = picture.row(axis.RPYtoGPY(2.5))[column];
        EXPECT_EQ(picture.row(axis.RPYtoGPY(2))[column], 0xFF0000U) << "under a bar";
        EXPECT_EQ(picture.row(axis.RPYtoGPY(3))[column], 0x0000FFU);
        EXPECT_TRUE(bar != 0xFFFFFF && bar != 0x0000FF) << std::hex << bar;
    }
}

TEST(Multi, TheLegendStandsInTheEmptiestCornerUnlessOneIsChosen)
{
    Data data;
    for (double& value : data.y)
        value = -value;
    data.y[0] = 10;  // all lies at the bottom
    double barX[] = {190}, barY[] = {9}, error[] = {0.5}, across[] = {60};  // and at the right
    for (const int corner : {int{legendEmptiest}, int{legendBottomLeft}, int{legendTopRight}, 7}) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        for (int i = 0; i < 3; ++i) {
            AYScale scale;
            scale.panel = i;
            AGraph* const graph = data.line(axis);
            graph->setGraphName(i == 1 ? "" : "model");
            auto* const bar =
                new AGraphXYErrors(&axis, barX, barY, 1, nullptr, graphPointDot, 1, 0, 0);
            bar->setYErrors(error);
            bar->setXErrors(across);
            const int index = axis.addScale(scale);
            axis.setScaleOf(graph, index);
            axis.setScaleOf(bar, index);
        }
        axis.setLegend(corner);
        CPicture picture(400, 600);
        drawInto(picture, axis);
        const auto& legends = axis.getLayout().legends;
        ASSERT_EQ(legends.size(), corner == 7 ? 0U : 1U);
        if (corner == 7)
            continue;
        const CPoint middle = axis.getPanelRect(0).CenterPoint();
        const CPoint at = legends[0].box.CenterPoint();
        EXPECT_EQ(at.x > middle.x, corner == legendTopRight);
        EXPECT_EQ(at.y > middle.y, corner == legendBottomLeft);
    }
}

TEST(Multi, TheNearestPointIsTheOneThatLookingAtAllFinds)
{
    const std::vector<std::vector<double>> xs = {
        {1, 2, 2, 2, 5, 9}, {5, 1, 9, 2, 2, 3}, {1, notANumber, 3, 4, 4, 7}, {3, 3, 3, 3, 3, 3}};
    for (std::vector<double> x : xs)
        for (unsigned gaps = 0; gaps < 64; ++gaps) {
            std::vector<double> y;
            for (unsigned i = 0; i < 6; ++i)
                y.push_back(gaps >> i & 1 ? notANumber : 1);
            AGraphXYLine graph(nullptr, x.data(), y.data(), 6, nullptr, PS_SOLID, 1, 0, 0);
            for (double at = -1; at < 11; at += 0.5) {
                int best = -1;
                for (int i = 0; i < 6; ++i) {
                    const auto k = static_cast<std::size_t>(i);
                    const double far =
                        best < 0 ? infinity : std::fabs(x[static_cast<std::size_t>(best)] - at);
                    if (!std::isnan(y[k]) && std::fabs(x[k] - at) < far)
                        best = i;
                }
                EXPECT_EQ(graph.nearestPoint(at), best) << at << ' ' << gaps;
            }
        }
}

TEST(Multi, PhasesAreNotJoinedAcrossTheirEnds)
{
    double x[] = {0, 1};
    double y[] = {170, -170};
    for (const double period : {0.0, 360.0}) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        AYScale scale;
        scale.range = {-180, 180};
        scale.period = period;
        axis.setScale(0, scale);
        axis.setMinMax({0, 1, -180, 180, 0, 1});
        new AGraphXYLine(&axis, x, y, 2, nullptr, PS_SOLID, 1, RGB(255, 0, 0), 0);
        CPicture picture(300, 200);
        drawInto(picture, axis);
        int red = 0;
        const CRect plot = axis.getPanelRect(0);
        for (int row = plot.top + 20; row < plot.bottom - 20; ++row)
            for (int column = plot.left + 2; column < plot.right - 2; ++column)
                red += picture.row(row)[column] == 0xFF0000;
        EXPECT_EQ(red > 0, period == 0);
        CString labels;
        for (const TickSet::Tick& tick : axis.getLayout().axes[0].ticks.major)
            labels += tick.label + " ";
        EXPECT_EQ(labels.find("90") != CString::npos, period > 0) << labels;
    }
}

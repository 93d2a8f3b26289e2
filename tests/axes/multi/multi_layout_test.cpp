#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "pavane/axes/multi/period_ticks.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <string>

using namespace pavane;

namespace
{

/// An axis of random scales, panels and codes in a picture of random size.
struct RandomPlot {
    std::mt19937 random;
    A2DAxisMulti axis;
    CRect rect;

    explicit RandomPlot(unsigned seed)
        : random(seed), axis(of(-1, 2), of(-1, 1), nullptr, optionsOf()),
          rect(0, 0, of(250, 1200), of(200, 900))
    {
        const double x = std::pow(10.0, of(-3, 6));
        axis.setMinMax({x, x * of(2, 400), 1, 1.0 * of(2, 500), 0, 1});
        axis.setNameOX(of(0, 1) ? "Time since the first scan of the day" : "");
        axis.setNameOY("Flux [%sJy]");
        const int count = of(1, 12);
        for (int i = 0; i < count; ++i) {
            AYScale scale;
            scale.name = CString(static_cast<std::size_t>(of(0, 40)), 'W');
            scale.panel = of(0, 5);
            scale.side = of(0, 2);
            scale.direct = of(-1, 1);
            const double low = std::pow(10.0, of(-8, 8)) * of(scale.direct ? -9 : 1, 9);
            scale.range = {low, low + std::fabs(low) * std::pow(10.0, of(-3, 3)) + 1e-9};
            scale.weight = of(0, 3);
            scale.period = of(0, 3) ? 0 : 360;
            scale.intervals = of(1, 9);
            axis.addScale(scale);
            axis.setPanelCaption(scale.panel, "EF-WB");
        }
        axis.setPanels(of(1, 3), of(0, 4));
        axis.setPanelGap(of(0, 2) * 0.5);
        axis.setPage(of(0, 2));
    }
    int of(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    int optionsOf()
    {
        const int bits = of(0, 15);
        return (bits & 3 ? 0 : axisNoXLabels) | (bits & 12 ? 0 : axisNoYLabels) |
               (bits & 5 ? axisTicksInside : 0);
    }
};

CRect common(const CRect& a, const CRect& b)
{
    CRect both;
    both.IntersectRect(a, b);
    return both;
}

}  // namespace

TEST(MultiLayout, NoTextTouchesAnotherOrIsCut)
{
    int texts = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        RandomPlot plot(seed);
        CPicture picture(1, 1);
        CPageFile page(CPageFile::Format::svg, 1200, 900, "");
        const bool isPage = seed % 4 == 0;
        if (isPage)
            plot.rect = CRect(600, 60, 600 + plot.rect.right * 12, 60 + plot.rect.bottom * 12);
        if (!plot.axis.layOut(isPage ? page.dc() : *picture.dc(), plot.rect))
            continue;
        const auto& all = plot.axis.getLayout().texts;
        texts += static_cast<int>(all.size());
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_EQ(common(all[i].box, plot.rect), all[i].box) << seed << ' ' << all[i].text;
            for (std::size_t k = 0; k < i; ++k)
                EXPECT_TRUE(common(all[i].box, all[k].box).IsRectEmpty())
                    << seed << ' ' << all[i].text << ' ' << all[k].text;
        }
    }
    EXPECT_GT(texts, 4000);
}

TEST(MultiLayout, LongTitlesGiveWayToOneForTheColumnWhenTheyAreEqual)
{
    const CString title = "Amplitude of the visibilities";
    for (const bool areEqual : {true, false}) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        for (int i = 0; i < 6; ++i) {
            AYScale scale;
            scale.name = areEqual || i != 3 ? title : title + " in 3";
            scale.range = {0, 1};
            scale.panel = i;
            axis.addScale(scale);
        }
        axis.setMinMax({0, 1});
        CPicture picture(1, 1);
        ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 600, 500)));
        int whole = 0, cut = 0;
        for (const MultiLayout::Text& text : axis.getLayout().texts) {
            whole += text.text == title;
            cut += text.text.find("...") != CString::npos;
        }
        EXPECT_EQ(whole, areEqual ? 1 : 0);
        EXPECT_EQ(cut, areEqual ? 0 : 6);
    }
}

TEST(MultiLayout, ScalesOfANameHaveOnePrefixAndCutTitlesTheirUnit)
{
    const struct {
        double greatest[3];
        const char *unit, *label;  ///< of all; a label, or else the unit, of the middle panel
        double odd;                ///< of a scale of another name
    } cases[] = {{{0.2, 0.04, 0.15}, "[Jy]", "0.02", 0},
                 {{2e-3, 4e-4, 1e-3}, "[mJy]", "0.2", 0},
                 {{0.2, 0.04, 0.15}, "[Jy]", "0.02", 5e-5},
                 {{1, 1e-9, 1}, "", "[nJy]", 0},  // too far apart: each its own
                 {{3000, 1.5, 3000}, "", "[Jy]", 0}};
    for (const auto& c : cases) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        AYScale scale;
        for (const double greatest : c.greatest) {
            scale.name = "Amplitude of what was measured [%sJy]";
            scale.range = {0, greatest};
            axis.addScale(scale);
            ++scale.panel;
        }
        scale.name = "Deviation of what was measured [%sK]";
        scale.range = {0, c.odd > 0 ? c.odd : 1};
        if (c.odd > 0)
            axis.addScale(scale);
        axis.setMinMax({0, 1});
        CPicture picture(1, 1);
        ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 400, 300)));
        std::map<CString, int> units;
        int labels = 0;
        for (const MultiLayout::Text& text : axis.getLayout().texts) {
            labels += text.part == MultiPart::yAxis && text.scale == 2 && text.text == c.label;
            if (text.part == MultiPart::title)
                ++units[text.text.substr(std::min(text.text.find('['), text.text.size()))];
        }
        if (!*c.unit) {
            EXPECT_EQ(units[c.label], 1);
            continue;
        }
        EXPECT_EQ(units[c.unit], c.odd > 0 ? 3 : 1) << c.unit;
        EXPECT_EQ(units["[\u00b5K]"], c.odd > 0);
        EXPECT_EQ(labels, 1);
    }
}

TEST(MultiLayout, WholeNumbersHaveTicksThatAreWhole)
{
    const struct {
        double low, high;
        const char* labels;
    } cases[] = {{0.4, 2.6, "1 2 "},
                 {-0.2, 0.3, "0 "},
                 {1, 20000, "0 5000 10000 15000 20000 "},
                 {0, 130, "0 50 100 "},
                 {-1e300, 1e300, ""}};
    for (const auto& c : cases) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        axis.setMinMax({c.low, c.high, 0, 1, 0, 1});
        axis.setNameOX("Channel");
        axis.setWholeX(1);
        axis.setXIntervals(5);
        CPicture picture(1, 1);
        ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 400, 300)));
        CString labels;
        for (const TickSet::Tick& tick : axis.getLayout().x.major)
            labels += tick.label + ' ';
        EXPECT_EQ(labels, c.labels);
        EXPECT_EQ(axis.getLayout().x.title, "Channel");
    }
}

TEST(MultiLayout, FlatPanelsHaveTwoLabelsAtLeast)
{
    for (const double half : {10.0, 30.0, 60.0, 90.0, 180.0, 0.07})
        for (const int height : {150, 190, 240, 300}) {
            A2DAxisMulti axis(1, 1, nullptr, 0);
            for (int i = 0; i < 4; ++i) {
                AYScale scale{"", {-half, half}, 1, i};
                scale.period = half < 1 ? 0 : 360;
                axis.addScale(scale);
            }
            axis.setMinMax({0, 1, 0, 1, 0, 1});
            CPicture picture(1, 1);
            ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 500, height)));
            std::map<int, int> labels;
            for (const MultiLayout::Text& text : axis.getLayout().texts)
                labels[text.panel] += text.part == MultiPart::yAxis;
            for (int panel = 0; panel < 4; ++panel)
                EXPECT_GE(labels[panel], 2) << half << ' ' << height << ' ' << panel;
        }
}

TEST(MultiLayout, NarrowColumnsHaveTwoLabelsEachWayAndTheirTitleWhole)
{
    const struct {
        int xDirect, width, height;
        TMnMx x, y;
    } cases[] = {{2, 740, 500, {16200, 63000}, {0, 1.5}},
                 {1, 400, 500, {0, 1.5}, {0, 2.5}},
                 {2, 700, 450, {16200, 63000}, {0, 1.2}},
                 {1, 600, 480, {-7, 130}, {0, 0.15}}};
    for (const auto& c : cases) {
        A2DAxisMulti axis(c.xDirect, 1, nullptr, 0);
        axis.setNameOX("Observation");
        axis.setMinMax({c.x.min, c.x.max});
        axis.setPanels(3, 8);
        for (int i = 0; i < 20; ++i) {
            axis.setPanelCaption(i, "BR-FD");
            axis.addScale({"Amplitude", c.y, 1, i, 1});
            axis.addScale({"Phase", {-180, 180}, 1, i, 2});
        }
        CPicture picture(1, 1);
        ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, c.width, c.height)));
        const MultiLayout& layout = axis.getLayout();
        std::map<std::pair<int, int>, int> labels;
        for (const MultiLayout::Text& text : layout.texts) {
            labels[{text.panel, text.scale}] +=
                text.part == MultiPart::yAxis || text.part == MultiPart::xAxis;
            EXPECT_TRUE(text.part != MultiPart::title || text.text.find("...") == CString::npos)
                << text.text;
        }
        for (const MultiLayout::Panel& panel : layout.panels) {
            EXPECT_GE((labels[{panel.number, 2 * panel.number + 1}]), 2) << c.width;
            if (panel.isLowest) {
                EXPECT_GE((labels[{panel.number, -1}]), 2) << c.width;
            }
        }
    }
}

TEST(MultiLayout, CaptionsHideNothing)
{
    constexpr int count = 40;
    double x[count], y[count], below[count];
    for (const double gap : {0.5, 0.0})
        for (const double reach : {0.0, 0.7}) {  // of bars, over all but the bottom right
            A2DAxisMulti axis(1, 1, nullptr, 0);
            axis.setPanelGap(gap);
            for (int i = 0; i < count; ++i) {
                x[i] = i;
                y[i] = 0.9;
                below[i] = i < count / 2 ? reach : 0.01;
            }
            for (int i = 0; i < 3; ++i) {
                axis.addScale({"", {0, 1}, 1, i});
                auto* const graph =
                    new AGraphXYErrors(&axis, x, y, count, nullptr, graphPointDot, 1, 0, 0);
                graph->setYErrors(below);
                axis.setScaleOf(graph, i + 1);
                axis.setPanelCaption(i, "BR-FD");
            }
            CPicture picture(500, 300);
            ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 500, 300)));
            const MultiLayout& layout = axis.getLayout();
            int captions = 0;
            for (const MultiLayout::Text& text : layout.texts) {
                if (text.text != "BR-FD")
                    continue;
                ++captions;
                EXPECT_FALSE(text.hasGround);
                for (const MultiLayout::Panel& panel : layout.panels) {
                    const CRect both = common(text.box, panel.plot);
                    EXPECT_EQ(both.IsRectEmpty(), gap > 0 || panel.number != text.panel);
                    for (int i = 0; i < count && !both.IsRectEmpty(); ++i) {
                        const int at = layout.xMap.xPixel(x[i], panel.plot.left, panel.plot.right);
                        const int low = axis.RPYtoGPY(panel.number + 1, y[i] - below[i]);
                        EXPECT_FALSE(at >= both.left && at < both.right && low >= both.top) << i;
                    }
                }
            }
            EXPECT_EQ(captions, 3);
        }
}

TEST(MultiLayout, PanelsWithoutAPointSaySo)
{
    double gaps[] = {NAN, NAN}, some[] = {1, 2};
    const struct {
        double *x, *y;
        TMnMx range;
        int says;
    } cases[] = {{gaps, gaps, {}, 1},
                 {gaps, some, {0, 3}, 1},
                 {some, gaps, {0, 3}, 1},
                 {some, some, {0, 3}, 0},
                 {some, some, {5, 6}, 0}};
    for (const auto& c : cases) {
        A2DAxisMulti axis(2, 1, nullptr, 0);
        axis.setNameOX("Time");
        axis.addScale({"", c.range, 1, 0});
        axis.setScaleOf(new AGraphXYLine(&axis, c.x, c.y, 2, nullptr, PS_SOLID, 1, 0, 0), 1);
        CPicture picture(500, 300);
        CRect rect(0, 0, 500, 300);
        axis.draw(*picture.dc(), rect);
        int says = 0;
        for (const MultiLayout::Text& text : axis.getLayout().texts) {
            says += text.text == "no data";
            EXPECT_EQ(text.text.find("e+"), CString::npos) << text.text;
            EXPECT_EQ(common(text.box, rect), text.box) << text.text;
        }
        EXPECT_EQ(says, c.says);
        EXPECT_EQ(axis.getLayout().x.major.empty(), c.says);
    }
}

TEST(MultiLayout, PagesHaveThePanelsThatWereAskedFor)
{
    const struct {
        int panels, columns, rows, ofPage, pages;
    } cases[] = {{200, 2, 5, 9, 23}, {50, 3, 17, 50, 1}, {51, 3, 17, 50, 2}, {12, 2, 6, 11, 2},
                 {7, 1, 3, 0, 3},    {7, 2, 3, 100, 2},  {1, 2, 5, 9, 1}};
    for (const auto& c : cases) {
        A2DAxisMulti axis(1, 1, nullptr, 0);
        for (int i = 0; i < c.panels; ++i)
            axis.addScale({"", {0, 1}, 1, i});
        axis.setMinMax({0, 1, 0, 1, 0, 1});
        axis.setPanels(c.columns, c.rows, c.ofPage);
        ASSERT_EQ(axis.getPages(), c.pages);
        int next = 0;
        for (int page = 0; page < c.pages; ++page) {
            axis.setPage(page);
            CPicture picture(1, 1);
            ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 900, 1200)));
            for (const MultiLayout::Panel& panel : axis.getLayout().panels)
                EXPECT_EQ(panel.number, next++);
        }
        EXPECT_EQ(next, c.panels);
    }
}

TEST(MultiLayout, ATitleOfAColumnIsThatOfTheAxisBesideThePoint)
{
    A2DAxisMulti axis(1, 1, nullptr, 0);
    for (int i = 0; i < 4; ++i)
        axis.addScale({"Amplitude of the visibilities", {0, 1}, 1, i});
    axis.setMinMax({0, 1, 0, 1, 0, 1});
    CPicture picture(1, 1);
    ASSERT_TRUE(axis.layOut(*picture.dc(), CRect(0, 0, 500, 300)));
    int shared = 0;
    for (const MultiLayout::Text& text : axis.getLayout().texts)
        for (int y = text.box.top; text.isTurned && y < text.box.bottom; ++y, ++shared) {
            const MultiHit hit = axis.hitTest({text.box.CenterPoint().x, y});
            EXPECT_EQ(hit.part, MultiPart::title);
            EXPECT_EQ(hit.scale, hit.panel + 1);
            EXPECT_GE(hit.panel, 0);
        }
    EXPECT_GT(shared, 0);
}

TEST(MultiLayout, TicksOfAPeriodAreWholePartsOfIt)
{
    struct Case {
        double low, high, period;
        int intervals;
        const char* labels;
    };
    const Case cases[] = {
        {-180, 180, 360, 5, "-180 -90 0 90 180 "}, {0, 100, 360, 5, "0 30 60 90 "},
        {-20, 50, 360, 5, "-15 0 15 30 45 "},      {0, 720, 360, 3, "0 360 720 "},
        {0, 24, 24, 4, "0 6 12 18 24 "},           {1, 3, 360, 4, "1.0 1.5 2.0 2.5 3.0 "}};
    for (const Case& c : cases) {
        CString labels;
        for (const auto& tick :
             periodTicks({"", {c.low, c.high}, c.intervals, 1, 2, true}, c.period).major)
            labels += tick.label + " ";
        EXPECT_EQ(labels, c.labels) << c.low;
    }
    for (const double far : {1e20, 1e300, -1e15})  // ends, and soon
        EXPECT_LT(periodTicks({"", {far, far + std::fabs(far) * 1e-15}, 5}, 1).major.size(), 100U);
}

TEST(MultiLayout, PlotsOfAColumnAreAlignedAndApart)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        RandomPlot plot(seed);
        CPicture picture(1, 1);
        if (!plot.axis.layOut(*picture.dc(), plot.rect))
            continue;
        const MultiLayout& layout = plot.axis.getLayout();
        std::map<int, const MultiLayout::Panel*> above;
        long long width = 0;
        for (const MultiLayout::Panel& panel : layout.panels) {
            const MultiLayout::Panel*& before = above[panel.column];
            if (before) {
                EXPECT_EQ(before->plot.left, panel.plot.left) << seed;
                EXPECT_EQ(before->plot.right, panel.plot.right) << seed;
                EXPECT_LE(before->plot.bottom, panel.plot.top) << seed;
            } else {
                width += panel.plot.Width();
            }
            before = &panel;
            const MultiHit hit = plot.axis.hitTest(panel.plot.CenterPoint());
            EXPECT_EQ(hit.panel, panel.number);
            EXPECT_EQ(hit.part, MultiPart::plot);
        }
        EXPECT_GT(width, 0) << seed;
    }
}

TEST(MultiLayout, ValuesAndPixelsOfEveryScaleGoBackAndForth)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        RandomPlot plot(seed);
        CPicture picture(1, 1);
        if (!plot.axis.layOut(*picture.dc(), plot.rect))
            continue;
        for (int i = 0; i < plot.axis.getScaleCount(); ++i) {
            const CRect panel = plot.axis.getPanelRect(plot.axis.getScale(i).panel);
            for (int y = panel.top; y <= panel.bottom && !panel.IsRectEmpty(); ++y)
                ASSERT_NEAR(plot.axis.RPYtoGPY(i, plot.axis.GPYtoRPY(i, y)), y, 1) << seed;
        }
    }
}

#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
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

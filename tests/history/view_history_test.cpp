// Views back and forward, beside the same kept as whole views.
#include "pavane/history/ViewHistory.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace pavane;

namespace
{

View viewOf(double range, double colours, double turn = 0)
{
    View view;
    view[0] = {range};
    view[2] = {turn};
    view[4] = {colours, std::numeric_limits<double>::quiet_NaN()};
    return view;
}

int same(const View& a, const View& b)
{
    for (std::size_t i = 0; i < viewParts; ++i)
        if (!sameValues(a[i], b[i]))
            return 0;
    return 1;
}

}  // namespace

TEST(ViewHistory, GoesWhereWholeViewsGo)
{
    std::mt19937 random(7);
    const auto any = [&](unsigned n) { return static_cast<int>(random() % n); };
    ViewHistory history;
    std::vector<View> views{viewOf(0, 0)};
    std::size_t at = 0;
    View shown = views[0];
    for (int i = 0; i < 20000; ++i) {
        const int kind = any(5);
        int walked = 1;
        if (kind < 2) {
            const View next = viewOf(any(9), any(2) ? shown[4][0] : any(9));
            EXPECT_EQ(history.record(shown, next, 0), !same(shown, next));
            if (!same(shown, next))
                views.resize(++at), views.push_back(next);
            shown = next;
        } else if (kind < 4 && at > 0) {
            --at, walked = history.back(shown);
        } else if (kind == 4 && at + 1 < views.size()) {
            ++at, walked = history.forward(shown);
        }
        ASSERT_TRUE(walked && same(shown, views[at])) << i;
        ASSERT_EQ(history.canGoBack(), at > 0);
        ASSERT_EQ(history.canGoForward(), at + 1 < views.size());
    }
}

TEST(ViewHistory, KeepsManySteps)
{
    ViewHistory history;
    const int last = 10000;
    for (int i = 0; i < last; ++i)
        history.record(viewOf(i, 1), viewOf(i + 1, 1), 1);
    EXPECT_EQ(history.zooms(), last);  // the other history holds those that went here
    View shown = viewOf(last, 1);
    int walked = 0;
    while (history.back(shown))
        ++walked;
    EXPECT_EQ(walked, static_cast<int>(ViewHistory::mostSteps));
    EXPECT_EQ(shown[0][0], last - walked);
    history.setZooms(0);
    EXPECT_FALSE(history.canGoBack());
}

TEST(ViewHistory, TakesZoomStepsOffWhereverTheyStand)
{
    const View first = viewOf(0, 0), zoomed = viewOf(1, 0), coloured = viewOf(1, 5);
    for (const int isLast : {0, 1}) {
        ViewHistory history;
        history.record(first, zoomed, 1);
        if (!isLast)
            history.record(zoomed, coloured);
        history.zoomTakenBack(isLast ? zoomed : coloured);
        EXPECT_EQ(history.zooms(), 0);
        EXPECT_EQ(history.canGoForward(), isLast);
        View shown = viewOf(0, isLast ? 0 : 5);
        EXPECT_EQ(isLast ? history.forward(shown) : history.back(shown), 1);
        EXPECT_TRUE(same(shown, isLast ? zoomed : first));
        EXPECT_EQ(history.zooms(), isLast);
        history.forgetRanges();
        EXPECT_EQ(history.steps(), isLast ? 0u : 1u);
    }
}

TEST(ViewHistory, MakesOneStepOfAllThatIsEnclosed)
{
    ViewHistory history;
    history.begin(viewOf(0, 0));
    history.begin(View());
    EXPECT_FALSE(history.end(viewOf(3, 3)));
    View shown = viewOf(1, 2);
    EXPECT_FALSE(history.back(shown));
    EXPECT_TRUE(history.end(shown));
    EXPECT_FALSE(history.end(viewOf(9, 9)));
    View other = shown;
    other[4].clear();  // nobody has colours now
    EXPECT_TRUE(history.back(other));
    EXPECT_EQ(other[0][0], 0);
    EXPECT_TRUE(other[4].empty());
    history.begin(other);
    history.clear();
    EXPECT_FALSE(history.end(shown));
}

TEST(ViewHistory, WhatWasAllIsAllWhenThereIsMore)
{
    const auto view = [](double min, double max, double other) {
        View shown;
        shown[0] = {min, max, min, max};
        shown[1] = {other, max};
        return shown;
    };
    ViewHistory history;
    history.record(view(0, 10, 1), view(2, 3, 1), 1);
    history.record(view(2, 3, 1), view(0, 10, 5));
    history.begin(view(0, 10, 5));
    history.replacePair(ViewPart::range, 1, {0, 10}, {-1, 99});
    history.replacePair(ViewPart::scales, 7, {1, 10}, {0, 0});
    history.replacePair(ViewPart::turn, 0, {0, 10}, {0, 0});
    View shown = view(4, 5, 5);
    EXPECT_TRUE(history.end(shown));
    const ViewValues steps[] = {{0, 10, -1, 99}, {2, 3, 2, 3}, {0, 10, -1, 99}};
    for (const ViewValues& range : steps) {
        EXPECT_TRUE(history.back(shown));
        EXPECT_EQ(shown[0], range);
    }
    EXPECT_EQ(shown[1], (ViewValues{1, 10}));
}

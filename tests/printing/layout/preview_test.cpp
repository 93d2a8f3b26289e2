#include "pavane/printing/layout/PreviewView.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>

namespace pavane
{

TEST(PreviewView, FitsZoomsAndScrolls)
{
    PreviewView view;
    view.setSheet({800, 1100});
    view.setWindow({416, 1016});
    EXPECT_EQ(view.percent(), 50);  // the width is what is scarce
    EXPECT_EQ(view.sheet(), CRect(8, 233, 408, 783));
    view.setWindow({416, 291});
    EXPECT_EQ(view.percent(), 25);
    EXPECT_EQ(view.wheel(1), 1);  // nothing to scroll: the next page
    view.setFit(PreviewView::Fit::width);
    EXPECT_EQ(view.sheet(), CRect(8, 0, 408, 550));
    EXPECT_EQ(view.farthest(), CPoint(0, 259));
    for (int n = 0; n < 6; ++n)
        EXPECT_EQ(view.wheel(1), 0);
    EXPECT_EQ(view.sheet().bottom, 291);
    EXPECT_TRUE(view.wheel(1) == 1 && view.scrolled().y == 0);
    EXPECT_TRUE(view.wheel(-1) == -1 && view.scrolled().y == 259);
    view.zoom(1, {0, 0});
    EXPECT_EQ(view.percent(), 67);
    view.zoom(-2, {0, 0});
    EXPECT_EQ(view.percent(), 33);
    view.zoom(99, {200, 100});
    EXPECT_TRUE(view.percent() == 800 && !view.canZoomIn());
    view.setPercent(-5, {0, 0});
    EXPECT_TRUE(view.percent() == 25 && !view.canZoomOut());
}

TEST(PreviewView, KeepsThePointUnderThePointer)
{
    PreviewView view;
    view.setSheet({800, 1100});
    view.setWindow({400, 300});
    view.setPercent(200, {200, 150});
    (void)view.scrollTo({300, 400});
    std::mt19937 random(1);
    const CPoint pointer(120, 70);
    for (int turn = 0; turn < 200; ++turn) {
        const auto at = [&] { return 100.0 * (pointer.x - view.sheet().left) / view.percent(); };
        const double before = at();
        const bool hadRoom = view.scrolled().x > 0 && view.scrolled().x < view.farthest().x;
        view.zoom(random() % 2 ? 1 : -1, pointer);
        if (hadRoom && view.scrolled().x > 0 && view.scrolled().x < view.farthest().x) {
            EXPECT_NEAR(at(), before, 2);
        }
        CRect seen;
        EXPECT_TRUE(seen.IntersectRect(view.sheet(), {0, 0, 400, 300}));
    }
    for (const CSize size : {CSize{0, 0}, CSize{-5, 7}, CSize{INT_MAX, INT_MAX}}) {
        view.setSheet(size);
        view.setFit(PreviewView::Fit::page);
        view.zoom(3, {INT_MAX, INT_MIN});
        (void)view.wheel(INT_MAX);
        view.setWindow(size);
    }
}

TEST(PreviewView, ListsPages)
{
    EXPECT_EQ(listedPages(2, 4, 2), (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(listedPages(4, 2, 2), (std::vector<int>{4, 3, 2}));
    const struct {
        int first, last, current, begins, ends;
    } rows[] = {{1, 1000, 700, 1, 1000},
                {1, 1001, 1, 1, 1000},
                {1, 30000000, 5000, 4500, 5499},
                {30000000, 1, 1, 1000, 1},
                {INT_MIN, INT_MAX, INT_MAX, INT_MAX - 999, INT_MAX}};
    for (const auto& row : rows) {
        const std::vector<int> pages = listedPages(row.first, row.last, row.current);
        EXPECT_TRUE(pages.size() == 1000 && pages.front() == row.begins &&
                    pages.back() == row.ends);
    }
    EXPECT_EQ(previewStatus(2, 5, 99.6), "Page 2 of 5, 100 %");
}

}  // namespace pavane

#include "pavane/windows/selection_edges.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

TEST(SelectionEdges, AreTakenWithinTwoPixelsAcrossAndThreeDown)
{
    const CRect selection(20, 30, 80, 90);
    const CRect bounds(0, 0, 100, 120);
    struct Case {
        CPoint pointer;
        int upright, level;
        int edges;
        HCURSOR cursor;
    };
    for (const Case& c : {
             Case{{22, 60}, 1, 1, edgeLeft, IDC_SIZEWE},
             {{23, 60}, 1, 1, 0, 0},
             {{78, 60}, 1, 1, edgeRight, IDC_SIZEWE},
             {{50, 33}, 1, 1, edgeTop, IDC_SIZENS},
             {{50, 34}, 1, 1, 0, 0},
             {{50, 87}, 1, 1, edgeBottom, IDC_SIZENS},
             {{19, 31}, 1, 1, edgeLeft | edgeTop, IDC_SIZENWSE},
             {{81, 91}, 1, 1, edgeRight | edgeBottom, IDC_SIZENWSE},
             {{81, 31}, 1, 1, edgeRight | edgeTop, IDC_SIZENESW},
             {{19, 91}, 1, 1, edgeLeft | edgeBottom, IDC_SIZENESW},
             {{20, 30}, 0, 1, edgeTop, IDC_SIZENS},
             {{20, 30}, 1, 0, edgeLeft, IDC_SIZEWE},
             {{20, 120}, 1, 1, 0, 0},
         }) {
        SCOPED_TRACE(testing::Message() << c.pointer.x << ", " << c.pointer.y);
        const int edges = edgesUnder(c.pointer, selection, bounds, c.upright, c.level);
        EXPECT_EQ(edges, c.edges);
        EXPECT_EQ(edgeCursor(edges), c.cursor);
    }
}

TEST(SelectionEdges, StayApartInsideTheBoundsAndMovesKeepTheSize)
{
    const CRect bounds(0, 0, 100, 100);
    const CRect selection(20, 30, 60, 70);
    EXPECT_EQ(resizedInside({95, 30, 60, 70}, selection, bounds), CRect(59, 30, 60, 70));
    EXPECT_EQ(resizedInside({20, 30, -5, 200}, selection, bounds), CRect(20, 30, 21, 100));
    EXPECT_EQ(resizedInside({-5, 99, 60, 70}, selection, bounds), CRect(0, 69, 60, 70));
    EXPECT_EQ(movedInside({90, -20, 130, 20}, selection, bounds), CRect(60, 0, 100, 40));
    EXPECT_EQ(movedInside({-7, 65, 33, 105}, selection, bounds), CRect(0, 60, 40, 100));
    EXPECT_EQ(bandInside({50, 50, 20, 80}, bounds), CRect(50, 50, 20, 80));
    EXPECT_EQ(bandInside({50, 50, -20, 180}, bounds), CRect(50, 50, 0, 100));
    EXPECT_EQ(bandInside({150, 50, 180, 40}, bounds), CRect(100, 50, 100, 40));
}

TEST(SelectionEdges, LeaveAStripToDrawAfterAShift)
{
    const CRect rect(10, 20, 50, 60);
    EXPECT_EQ(uncoveredStrip(rect, 0, -5), CRect(10, 55, 50, 60));
    EXPECT_EQ(uncoveredStrip(rect, -4, 0), CRect(46, 20, 50, 60));
    EXPECT_EQ(uncoveredStrip(rect, 3, 5), CRect(10, 20, 13, 25));
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(uncoveredStrip(rect, most, 0), CRect(10, 20, most, 60));
}

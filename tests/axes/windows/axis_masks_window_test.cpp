// Areas that are made of cells in a window, and those that are never cleaned.
#include "axes/windows/axis_window_fixture.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/masks/cell_regions.h"
#include "platform/controls.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

struct MasksWindow : AxisWindow {
    CComboBox list;
    MasksWindow()
    {
        for (int r = 0; r < map.rows(); ++r)
            for (int c = 0; c < map.columns(); ++c)
                map.row(r)[c] = 0;
        // a ring of 7 x 9 cells about a hole of 1 x 3, and a spot at the edge
        for (int r = 20; r < 27; ++r)
            for (int c = 30; c < 39; ++c)
                map.row(r)[c] = r == 23 && c > 32 && c < 36 ? 1 : 8;
        map.row(24)[36] = 9;
        map.row(0)[70] = map.row(0)[71] = 7;
        showMap();
        (void)list.Create(WS_CHILD | CBS_DROPDOWNLIST, CRect(0, 0, 90, 90), &top, 5);
        SetComboBox(&list);
        (void)SetContourLevel({4, 0});
        UpdateWindow();
    }
    ~MasksWindow() override { SetComboBox(nullptr); }
    std::int64_t cells() { return mask().count(); }
};

}  // namespace

TEST(NeverClean, IsToggledByItsKeyListedAndUndoneInOneStep)
{
    MasksWindow w;
    for (const auto& [from, to] :
         {std::pair(w.at(5, 5), w.at(15, 25)), std::pair(w.at(10, 10), w.at(12, 20))}) {
        w.ChooseTool(toolRect);
        w.drag({from, to});
    }
    ASSERT_EQ(w.cells(), 11 * 21);
    w.SetCellOverlay(1);
    w.key('N');
    EXPECT_EQ(w.cells(), 11 * 21 - 3 * 11);
    EXPECT_EQ(w.StatusAt({1, 1}).cells, 11 * 21 - 3 * 11);
    EXPECT_EQ(w.list.GetLBText(1), "Area 2 (never)");
    EXPECT_EQ(w.areas().history().undoLabel(), "Never clean of Area 2");
    const std::vector<std::uint32_t> never = w.pixels();
    w.key('Z', MK_CONTROL);
    EXPECT_EQ(w.cells(), 11 * 21);
    EXPECT_EQ(w.list.GetLBText(1), "Area 2");
    EXPECT_NE(w.pixels(), never);
    w.key('A', MK_CONTROL);
    w.key('N');
    EXPECT_TRUE(w.areas().IsNeverClean());
    EXPECT_EQ(w.cells(), 60 * 80 - 11 * 21);
    w.key('N');
    EXPECT_EQ(w.cells(), 11 * 21);
    ABitMatrix own(60, 80);
    w.areas()(1)->SetNeverClean(1);
    w.areas().FillMatrixForItem(1, own, 80, 60, w.centres);
    EXPECT_EQ(own.count(), 33);
}

TEST(ContourAreas, HoldTheCellsOfTheContourAndLeaveOutItsHoles)
{
    MasksWindow w;
    w.key('C');
    w.click(w.at(21, 31));
    ABitMatrix wanted;
    ASSERT_EQ(contourMask(w.access, 4, 21, 31, wanted), ContourPlace::closed);
    EXPECT_TRUE(w.mask() == wanted);
    ASSERT_EQ(w.areas().count(), 2);
    EXPECT_FALSE(w.areas()(0)->IsNeverClean());
    EXPECT_TRUE(w.areas()(0)->IsActive());
    EXPECT_TRUE(w.areas()(1)->IsNeverClean());
    EXPECT_EQ(w.notices.back(), "Contour of 4: 60 cells, with 1 of holes never cleaned.");
    w.click(w.at(21, 32));
    EXPECT_EQ(w.notices.back(), "The areas hold all cells of this contour already.");
    w.click(w.at(23, 34));  // in the hole
    EXPECT_EQ(w.notices.back(), "This cell is not inside a contour of 4.");
    w.key('Z', MK_CONTROL);
    EXPECT_EQ(w.areas().count(), 0);
    w.key(VK_RETURN);  // about the peak
    EXPECT_TRUE(w.mask() == wanted);
    (void)w.AddAreaOfContour(0, 70);
    EXPECT_EQ(w.notices.back(), "Contour of 4: 2 cells; the contour leaves the map, the area ends "
                                "at its edge.");
    EXPECT_EQ(w.cells(), 62);
    (void)w.SetContourLevel({5, 1});
    EXPECT_FALSE(w.AddAreaOfContour(21, 31));  // most cells are 0: there is no noise
    w.key(VK_ESCAPE);
    EXPECT_EQ(w.areas().mode(), toolArrow);
}

TEST(MaskAreas, OfAnyMaskAreThatMaskAndGrowAndShrink)
{
    MasksWindow w;
    ABitMatrix mask(60, 80);
    for (int r = 0; r < 60; ++r)
        for (int c = 0; c < 80; ++c)
            mask.set(r, c, (r * 7 + c * 3) % 11 < 5 || r == 30);
    ASSERT_GT(w.AddAreasOfMask(mask, "Areas from mask"), 10);
    EXPECT_TRUE(w.mask() == mask);
    w.key('Z', MK_CONTROL);
    EXPECT_EQ(w.areas().count(), 0);
    EXPECT_EQ(w.AddAreasOfMask(ABitMatrix(3, 3), "x"), -1);

    w.ChooseTool(toolRect);
    w.drag({w.at(10, 10), w.at(20, 30)});
    ASSERT_EQ(w.cells(), 11 * 21);
    EXPECT_EQ(w.GrowAreas(1), 1);
    EXPECT_EQ(w.cells(), 13 * 23);
    EXPECT_EQ(w.GrowAreas(-3), 1);
    EXPECT_EQ(w.cells(), 7 * 17);
    EXPECT_EQ(w.areas().history().undoLabel(), "Shrinking of Area 1");
    EXPECT_EQ(w.GrowAreas(-9), 0);  // nothing would be left
    EXPECT_EQ(w.cells(), 7 * 17);
    w.key('N');
    EXPECT_EQ(w.GrowAreas(2), 1);
    EXPECT_TRUE(w.areas()(0)->IsNeverClean());
    w.key('Z', MK_CONTROL);
    w.key('Z', MK_CONTROL);
    w.key('Z', MK_CONTROL);
    w.key('Z', MK_CONTROL);
    EXPECT_EQ(w.cells(), 11 * 21);
}

TEST(MaskAreas, GrowWithoutASelectionButForHoles)
{
    MasksWindow w;
    ASSERT_TRUE(w.AddAreaOfContour(21, 31));  // 60 cells of 7 x 9, and a hole of 3
    w.areas().ClearSelection(&w);
    EXPECT_EQ(w.GrowAreas(1), 1);
    EXPECT_EQ(w.cells(), 9 * 11 - 3);
    w.areas().SelectItem(&w, 1, 1);
    EXPECT_EQ(w.GrowAreas(1), 1);
    EXPECT_EQ(w.cells(), 9 * 11 - 15);
}

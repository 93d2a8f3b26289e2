#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_cursors.h"
#include "platform/CWnd.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace pavane;

namespace
{

const CRect box(100, 100, 200, 160);

PixelMapping mapping(const CRect& rect, double x0, double x1, double y0, double y1, int modeX = 1)
{
    return {rect, {x0, x1, y0, y1, 0, 1}, modeX, 1};
}

}  // namespace

TEST(TrackerHits, AreTheCodesOfEachShape)
{
    ARotateRectTracker turned;
    AEllipseTracker ellipse;
    AAreaTracker area;
    for (ARotateRectTracker* const t : {&turned, static_cast<ARotateRectTracker*>(&ellipse)})
        t->SetRect(box);
    for (const CPoint p : {CPoint(100, 100), CPoint(200, 100), CPoint(200, 160), CPoint(100, 160)})
        area.points().Add(p);
    const struct {
        CPoint p;
        int turned, ellipse, area;
    } cases[] = {{{101, 101}, 2, -1, 2},  {{200, 99}, 3, -1, 3}, {{202, 162}, 4, -1, 4},
                 {{98, 158}, 5, -1, 5},   {{150, 99}, 6, 6, -1}, {{202, 130}, 7, 7, -1},
                 {{150, 161}, 8, 8, -1},  {{99, 130}, 9, 9, -1}, {{175, 130}, 10, 10, 1},
                 {{108, 108}, 1, -1, 1},  {{140, 140}, 1, 1, 1}, {{96, 130}, -1, -1, -1},
                 {{203, 130}, -1, -1, -1}};
    for (const auto& c : cases) {
        EXPECT_EQ(turned.HitTestHandles(c.p), c.turned) << c.p.x << ' ' << c.p.y;
        EXPECT_EQ(ellipse.HitTestHandles(c.p), c.ellipse) << c.p.x << ' ' << c.p.y;
        EXPECT_EQ(area.HitTestHandles(c.p), c.area) << c.p.x << ' ' << c.p.y;
        EXPECT_EQ(area.HitTest(c.p, nullptr), 0);  // still open
    }
    CRect all;
    turned.GetTrueRect(&all);
    EXPECT_EQ(all, CRect(95, 95, 205, 165));
    area.GetTrueRect(&all);
    EXPECT_EQ(all, CRect(96, 96, 204, 164));
    ARectTracker rect(box, trackerNew);
    rect.GetTrueRect(&all);
    EXPECT_EQ(all, CRect(98, 98, 202, 162));
    EXPECT_EQ(rect.HitTest({99, 99}, nullptr), 0);
    rect.SetStyle(trackerNew & ~unsigned{trackerHandles});
    EXPECT_EQ(rect.HitTest({99, 99}, nullptr), 8);
}

TEST(TrackerScale, KeepsShapesOnTheirPartOfTheMap)
{
    const PixelMapping from = mapping({0, 0, 400, 300}, 0, 4, 0, 3);
    const PixelMapping zoomed = mapping({0, 0, 400, 300}, 1, 3, 1, 2.5);
    ARectTracker rect(box, trackerNew);
    rect.Scale(from, zoomed);
    EXPECT_EQ(rect.rect(), CRect(0, 100, 200, 220));
    rect.Scale(zoomed, from);
    AEllipseTracker ellipse;
    ellipse.SetRect(box);
    ellipse.SetAngle(0.4);
    ellipse.Scale(from, zoomed);
    EXPECT_EQ(ellipse.rect(), CRect(0, 100, 200, 220));
    EXPECT_EQ(ellipse.angle(), 0.4);
    ellipse.Scale(zoomed, mapping({0, 0, 400, 300}, 1, 3, 1, 2.5, -1));  // the other way round
    EXPECT_EQ(ellipse.rect(), CRect(200, 100, 400, 220));
    EXPECT_NEAR(ellipse.angle(), pi - 0.4, 1e-12);
    AAreaTracker area;
    area.points().Add({100, 200});
    area.Scale(from, zoomed);
    EXPECT_EQ(area.points()(0), CPoint(0, 300));
    for (const PixelMapping& bad : {PixelMapping(), mapping({5, 0, 5, 300}, 0, 4, 0, 3),
                                    mapping({0, 0, 400, 300}, 2, 2, 0, 3)}) {
        rect.Scale(from, bad);
        rect.Scale(bad, from);
        EXPECT_EQ(rect.rect(), box);
    }
}

TEST(DataTracker, TellsItsPlaceAndOutline)
{
    ARPRectTracker rect;
    EXPECT_EQ(rect.RPtoGP(APoint<double>{2.9, -2.9}), (APoint<int>{2, -2}));
    EXPECT_EQ(rect.GPtoRP(ARect<int>{1, 2, 3, 4}), (ARect<double>{1, 2, 3, 4}));
    rect.SetRect({1, 2, 4, 6});
    EXPECT_EQ(rect.GetCenter(), (APoint<double>{2.5, 4}));
    rect.SetRect({1, std::nan(""), 4, 6});
    EXPECT_EQ(rect.rect().top, 2);
    ARPAreaTracker area;
    EXPECT_EQ(area.GetCenter(), APoint<double>());
    for (const double x : {1.0, 2.0, 6.0})
        area.points().Add({x, -x});
    EXPECT_EQ(area.GetCenter(), (APoint<double>{3, -3}));
    ARPEllipseTracker ellipse;
    ellipse.SetRect({-2, -1, 2, 1});
    ellipse.SetAngle(pi / 2);
    AArray<APoint<double>> points;
    for (const int count : {0, 16, 100000}) {
        ellipse.GetAreaPoints(points, count);
        ASSERT_EQ(points.count(), count == 0 ? 720 : std::min(count, 65536));
        EXPECT_NEAR(points(0).x, 0, 1e-12);
        EXPECT_NEAR(points(0).y, 2, 1e-12);
        EXPECT_NEAR(points(points.count() / 4).x, -1, 1e-12);
    }
}

TEST(TrackerCursor, IsThatOfThePartUnderThePointer)
{
    CWnd window;
    window.CreateEx(0, "", "", WS_POPUP, CRect(0, 0, 400, 300), nullptr, 0);
    window.ShowWindow(SW_SHOW);
    ARectTracker rect({200, 160, 100, 100}, trackerNew);  // inside out
    ARotateRectTracker turned;
    turned.SetRect(box);
    const struct {
        ATracker& shape;
        CPoint p;
        HCURSOR cursor;
    } cases[] = {{rect, {101, 101}, IDC_SIZENWSE},
                 {rect, {201, 99}, IDC_SIZENESW},
                 {rect, {150, 161}, IDC_SIZENS},
                 {rect, {99, 130}, IDC_SIZEWE},
                 {rect, {140, 140}, IDC_SIZEALL},
                 {turned, {140, 140}, IDC_SIZEALL},
                 {turned, {175, 130}, turnTrackerCursor()},
                 {turned, {101, 101}, sizeTrackerCursor()},
                 {turned, {300, 200}, 0}};
    for (const auto& c : cases) {
        CPoint screen = c.p;
        window.ClientToScreen(screen);
        SetCursorPos(screen);
        EXPECT_EQ(c.shape.SetCursor(&window, HTCLIENT), c.cursor != 0) << c.p.x;
        if (c.cursor) {
            EXPECT_EQ(GetCursor(), c.cursor) << c.p.x;
        }
    }
    EXPECT_NE(turnTrackerCursor(), sizeTrackerCursor());
    rect.SetActive(0);
    EXPECT_FALSE(rect.SetCursor(&window, HTCLIENT));
    window.DestroyWindow();
}

#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "platform/core/PixelPainter.h"
#include "platform/picture.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"
#include "tests/trackers/made_tracker.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

using namespace pavane;
using namespace pavane::test;

namespace
{

std::vector<std::unique_ptr<ABaseTracker>> samples()
{
    const ShapeValues shape{{}, {20, 30, 120, 80}, 0.4, {{20, 90}, {70, 20}, {110, 60}, {60, 70}}};
    std::vector<std::unique_ptr<ABaseTracker>> all;
    for (const char* const name :
         {"ARectTracker", "ARotateRectTracker", "AEllipseTracker", "AAreaTracker"}) {
        all.emplace_back(static_cast<ABaseTracker*>(madeTracker(name, shape).release()));
        all.back()->SetStyle(trackerNew | trackerReady);
    }
    all.push_back(std::make_unique<ARectTracker>(CRect(50, 50, 56, 57), trackerNew));
    return all;
}

}  // namespace

TEST(TrackerDrawing, ShowsOnAnyGround)
{
    const std::uint32_t grounds[] = {0x000000, 0xFFFFFF, 0x808080, 0x777777, 0xFDE725,
                                     0x21918C, 0x440154, 0xFF0000, 0x00FF00, 0x0000FF};
    for (const auto& shape : samples())
        for (const std::uint32_t ground : grounds)
            for (const int active : {0, 1}) {
                CPicture picture(140, 110);
                for (int y = 0; y < picture.height(); ++y)
                    std::fill_n(picture.row(y), picture.width(), ground);
                shape->SetActive(active);
                shape->DrawShape(*picture.dc());
                AArray<CPoint> points;
                shape->GetAreaPoints(points);
                for (int i = 0; i < points.count(); ++i) {
                    const CPoint a = points(i);
                    const CPoint b = points((i + 1) % points.count());
                    const CPoint p((a.x + b.x) / 2, (a.y + b.y) / 2);
                    double best = 0;  // within a dash of the middle of each line
                    for (int y = p.y - 4; y <= p.y + 4; ++y)
                        for (int x = p.x - 4; x <= p.x + 4; ++x)
                            best = std::max(
                                best, ContrastRatio(colorOf(picture.row(y)[x]), colorOf(ground)));
                    ASSERT_GE(best, 3) << shape->GetClassName() << ' ' << std::hex << ground;
                }
            }
}

TEST(TrackerDrawing, StaysInTheTrueRectangle)
{
    for (const auto& shape : samples())
        for (const int active : {0, 1}) {
            CPicture picture(140, 110);
            shape->SetActive(active);
            const auto dc = picture.dc();
            shape->Draw(dc.get(), nullptr);
            CRect all;
            shape->GetTrueRect(&all);
            all.InflateRect(2, 2);  // the handles of rectangles are centred on the lines
            int drawn = 0;
            for (int y = 0; y < 110; ++y)
                for (int x = 0; x < 140; ++x) {
                    const bool changed = picture.row(y)[x] != 0xFFFFFF;
                    drawn += changed;
                    ASSERT_TRUE(!changed || all.PtInRect({x, y})) << shape->GetClassName();
                }
            EXPECT_GT(drawn, 20);
        }
}

TEST(TrackerDrawing, TakesShapesBeyondAnyWindow)
{
    const int far[] = {INT_MIN, INT_MIN / 2, -40000, 50, INT_MAX / 2, INT_MAX};
    CPicture picture(140, 110);
    const auto dc = picture.dc();
    for (const int x : far)
        for (const int y : far) {
            const double left = x, top = y;
            const ShapeValues shape{
                {}, {left, top, 60, INT_MAX}, 0.3, {{left, top}, {top, 50}, {50, left}}};
            for (const char* const name : {"ARectTracker", "AEllipseTracker", "AAreaTracker"}) {
                const auto tracker = madeTracker(name, shape);
                tracker->SetStyle(trackerNew | trackerReady);
                for (const int active : {0, 1}) {
                    tracker->SetActive(active);
                    tracker->Draw(dc.get(), nullptr);
                    tracker->DrawShape(*dc);
                    (void)tracker->HitTest({50, 50}, nullptr);
                }
            }
        }
}

TEST(TrackerDrawing, LinesAndHandlesShareAMiddleBetweenUnits)
{
    ABAxis axis(1, -1, nullptr, 0);
    axis.setGraphRect({0, 0, 100, 100});
    axis.setMinMax({0, 100, 0, 100, 0, 1});
    ARPRectTracker rect;
    rect.SetAxis(&axis);
    for (const double left : {20.0, 20.5}) {
        rect.SetRect({left, 10, 80, 90});
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.CreateBitmap(100, 100, 2));
        CMemoryDC dc(bitmap);
        dc.FillSolidRect({0, 0, 100, 100}, RGB(90, 90, 90));
        rect.DrawShape(dc);
        for (const int y : {40, 100}) {  // the line alone, and its handle
            int first = 0;
            while (first < 80 && bitmap.bits()[y * 200 + first] == 0x5A5A5A)
                ++first;
            int end = 80;
            while (end > first && bitmap.bits()[y * 200 + end - 1] == 0x5A5A5A)
                --end;
            EXPECT_EQ(first + end, static_cast<int>(4 * left) + 2);
            EXPECT_EQ(end - first, y == 40 ? 6 : 14);
        }
    }
}

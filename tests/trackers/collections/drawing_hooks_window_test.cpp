// Shapes of hosts are drawn their way: by Draw in a collection, by the hooks of the frame in drags.
#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"

#include <gtest/gtest.h>

#include "trackers/collections/areas_window.h"
#include "trackers/made_tracker.h"

using namespace pavane;
using namespace pavane::test;

namespace
{

struct Calls {
    int draw = 0, frame = 0, active = 0, inactive = 0;
};
Calls calls;  // of all shapes below

template <typename Base>
struct Counting : Base {
    void Draw(CDC* dc, CWnd* window) override { ++calls.draw, Base::Draw(dc, window); }
    void DrawActive(CDC* dc) override { ++calls.active, Base::DrawActive(dc); }
    void DrawNotActive(CDC* dc) override { ++calls.inactive, Base::DrawNotActive(dc); }
};
template <typename Base>
struct OwnRect : Counting<Base> {
    void DrawTrackRect(CDC* dc, const CRect& rect) override
    {
        ++calls.frame;
        dc->FillSolidRect(rect, RGB(200, 0, 0));
    }
    Base* Duplicate() const override { return new OwnRect(*this); }
};
template <typename Base>
struct Own : Counting<Base> {
    void DrawTrack(CDC* dc) override { ++calls.frame, Base::DrawTrack(dc); }
    Base* Duplicate() const override { return new Own(*this); }
};

/// A shape about (100, 80), inside (100, 80).
template <typename Shape>
std::unique_ptr<ATracker> placed()
{
    auto shape = std::make_unique<Shape>();
    giveShape(*shape, {{}, {60, 50, 140, 110}, 0, {{60, 50}, {140, 50}, {140, 110}, {60, 110}}});
    shape->SetStyle(shape->GetStyle() | trackerReady);
    return shape;
}

/// Paints nothing at all: what is seen is what drags draw.
struct BareWindow : CWnd {
    BareWindow() { (void)Create("", "", WS_VISIBLE | WS_POPUP, {0, 0, 320, 240}, nullptr, 0); }
    void post(unsigned message, CPoint p, unsigned keys = MK_LBUTTON)
    {
        (void)PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
};

}  // namespace

TEST(DrawingHooks, DrawTheFrameOfEveryMoveAndOfTheRelease)
{
    ABAxis axis(1, -1, nullptr, 0);  // values are pixels
    axis.setGraphRect({0, 0, 320, 240});
    axis.setMinMax({0, 320, 0, 240, 0, 1});
    const struct {
        const char* name;
        std::unique_ptr<ATracker> shape;
    } cases[] = {{"rectangle", placed<OwnRect<ARectTracker>>()},
                 {"turned rectangle", placed<Own<ARotateRectTracker>>()},
                 {"ellipse", placed<Own<AEllipseTracker>>()},
                 {"area", placed<Own<AAreaTracker>>()},
                 {"rectangle of values", placed<OwnRect<ARPRectTracker>>()},
                 {"turned rectangle of values", placed<Own<ARPRotateRectTracker>>()},
                 {"ellipse of values", placed<Own<ARPEllipseTracker>>()},
                 {"area of values", placed<Own<ARPAreaTracker>>()}};
    for (const auto& c : cases)
        for (const bool escapes : {false, true}) {
            SCOPED_TRACE(c.name);
            BareWindow window;
            settle();
            if (auto* const values = dynamic_cast<ABTracker*>(c.shape.get()))
                values->SetAxis(&axis);
            calls = {};
            for (const CPoint p : {CPoint(105, 84), CPoint(110, 90), CPoint(112, 93)})
                window.post(WM_MOUSEMOVE, p);
            if (escapes)
                (void)window.PostMessage(WM_KEYDOWN, VK_ESCAPE);
            else
                window.post(WM_LBUTTONUP, {112, 93}, 0);
            (void)c.shape->Track(&window, {100, 80}, 0, nullptr);
            EXPECT_EQ(c.shape->dragEnd(), escapes ? DragEnd::escaped : DragEnd::released);
            const int frames = calls.frame;
            EXPECT_EQ(frames, escapes ? 3 : 4);
            BareWindow other;
            CClientDC dc(&other);
            c.shape->Draw(&dc, &other);
            EXPECT_EQ(calls.frame, frames) << "after the drag";
            EXPECT_GT(calls.active, 0);
        }
}

TEST(DrawingHooks, AreCalledByCollections)
{
    struct Areas : PixelAreas {
        ABaseTracker* GetNewTracker(int) override { return new OwnRect<ARectTracker>; }
    };
    AreasWindow<Areas> window;
    Areas& areas = *window.areas;
    areas.CheckMinMax({0, 0, 300, 200}, {0, 100, 0, 50}, 1, 1);
    areas.Add(static_cast<ABaseTracker*>(placed<OwnRect<ARectTracker>>().release()), 1);
    calls = {};
    CBitmap picture;
    (void)picture.CreateBitmap(320, 240, 1);
    {
        CMemoryDC dc(picture);
        areas.Draw(&dc, &window);
    }
    EXPECT_EQ(calls.draw, 1);
    EXPECT_EQ(calls.active, 1);
    EXPECT_EQ(calls.frame, 0);
    areas.BeginMode(&window, toolRect);
    calls = {};
    window.drag({{200, 60}, {230, 90}, {260, 120}});  // a new one
    EXPECT_GE(calls.frame, 2);
    ASSERT_EQ(areas.count(), 2);
    calls = {};
    window.drag({{230, 90}, {235, 95}, {240, 100}});  // moved
    EXPECT_GE(calls.frame, 2);
    EXPECT_GE(calls.draw, calls.frame);
    EXPECT_GE(calls.inactive, 1) << "the other one is no frame";
    areas.ClearSelection(&window);
    areas.SelectAll(&window);
    calls = {};
    window.drag({{230, 90}, {235, 95}});  // all
    EXPECT_GE(calls.frame, 1);
    EXPECT_GE(calls.draw, 2 * calls.frame);
}

TEST(DrawingHooks, DashesWhatIsNotSelectedWhileSomethingIs)
{
    AreasWindow<PixelAreas> window;
    PixelAreas& areas = *window.areas;
    for (const CRect& rect : {CRect(20, 20, 60, 60), CRect(100, 20, 140, 60)}) {
        areas.Add(new ARectTracker(rect, trackerNew));
        areas.SetItemActive(areas.count() - 1, 0);
    }
    for (const int selected : {-1, 0, 1}) {
        for (const int i : {0, 1})
            areas.SelectItem(&window, i, i == selected);
        CBitmap picture;
        (void)picture.CreateBitmap(320, 240, 1);
        CMemoryDC dc(picture);
        areas.Draw(&dc, &window);
        for (const int i : {0, 1}) {
            int yellow = 0;  // between the handles of the upper edge
            for (int x = 25 + 80 * i; x < 36 + 80 * i; ++x)
                yellow += picture.bits()[20 * 320 + x] == 0xFFE63C;
            EXPECT_EQ(yellow == 11, selected < 0 || selected == i) << selected << i;
        }
    }
}

#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_registry.h"
#include "platform/CWnd.h"
#include "platform/message.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

using namespace pavane;

namespace
{

constexpr std::size_t baseRecord = 56;
const CRect client(0, 0, 400, 300);
constexpr CPoint inside(165, 152);  // of what `drawn` draws, off its handles

/// A window that does what a test wants when a message arrives.
class Window : public CWnd
{
public:
    Window()
    {
        CreateEx(0, "", "", WS_POPUP, client, nullptr, 0);
        ShowWindow(SW_SHOW);
    }
    ~Window() override { DestroyWindow(); }

    void send(unsigned message, CPoint p, unsigned keys = 0)
    {
        PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    void move(CPoint p, unsigned keys = 0) { send(WM_MOUSEMOVE, p, keys | MK_LBUTTON); }
    void release(CPoint p, unsigned keys = 0) { send(WM_LBUTTONUP, p, keys); }
    void escape() { PostMessage(WM_KEYDOWN, VK_ESCAPE, 0); }

    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == WM_USER && onUser)
            onUser();
        return CWnd::WindowProc(message, w, l);
    }
    std::function<void()> onUser;
};

struct Axis : ABAxis {
    Axis(int x, int y, TMinMax range = {1, 7, 1, 3, 0, 1}) : ABAxis(x, y, &range, 0)
    {
        setGraphRect({20, 20, 380, 280});
    }
};

std::string tail(const ATracker& t) { return t.State().substr(baseRecord); }

const char* const classNames[] = {"ARectTracker",      "ARotateRectTracker", "AEllipseTracker",
                                  "AAreaTracker",      "ARPRectTracker",     "ARPRotateRectTracker",
                                  "ARPEllipseTracker", "ARPAreaTracker"};

using Tracker = std::unique_ptr<ATracker>;

/// Draws a new shape from (100, 100) to (200, 180); polygons get a third vertex and are closed.
Tracker drawn(const std::string& name, Window& window, ABAxis& axis)
{
    Tracker shape(CreateTracker(name));
    if (auto* const rp = dynamic_cast<ABTracker*>(shape.get()))
        rp->SetAxis(&axis);
    window.move({150, 150});
    window.release({200, 180});
    EXPECT_TRUE(shape->TrackRubberBand(&window, {100, 100}, 1)) << name;
    EXPECT_TRUE(shape->finished()) << name;
    if (shape->IsReady())
        return shape;
    for (const CPoint p : {CPoint(200, 100), CPoint(100, 180)}) {
        window.release(p);
        EXPECT_TRUE(shape->TrackRubberBand(&window, p, 1)) << name;
    }
    EXPECT_TRUE(shape->TrackReady(&window, {150, 150})) << name;
    return shape;
}

}  // namespace

TEST(TrackerWindow, DrawsEveryShapeFromThePress)
{
    Window window;
    Axis axis(1, 1);
    const Tracker pixels = drawn("ARectTracker", window, axis);
    EXPECT_EQ(static_cast<ARectTracker&>(*pixels).rect(), CRect(100, 100, 200, 180));
    EXPECT_EQ(pixels->validRect(), client);
    EXPECT_EQ(pixels->clipRect(), CRect(10, 10, 390, 290));
    const Tracker values = drawn("ARPRectTracker", window, axis);
    EXPECT_EQ(static_cast<ARPRectTracker&>(*values).pixelRect(), CRect(100, 100, 200, 180));
    EXPECT_EQ(values->validRect(), CRect(20, 20, 380, 280));
    EXPECT_EQ(values->clipRect(), values->validRect());
    const Tracker area = drawn("ARPAreaTracker", window, axis);
    EXPECT_EQ(static_cast<ARPAreaTracker&>(*area).points().count(), 3);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST(TrackerWindow, CancelPutsEverythingBackThatFollowsTheBaseRecord)
{
    Window window;
    Axis axis(-1, 1);
    enum { escape, rightButton, captureLost, windowGone };
    const DragEnd ends[] = {DragEnd::escaped, DragEnd::rightButton, DragEnd::lost, DragEnd::lost};
    for (const char* const name : classNames)
        for (const int ending : {escape, rightButton, captureLost, windowGone}) {
            auto other = std::make_unique<Window>();
            Window& used = ending == windowGone ? *other : window;
            const Tracker shape = drawn(name, window, axis);
            const std::string before = tail(*shape);
            used.move({180, 130});
            used.onUser = [&] {
                if (ending == captureLost)
                    CWnd::ReleaseCapture();
                if (ending == windowGone)
                    used.DestroyWindow();
            };
            if (ending == escape)
                used.escape();
            else if (ending == rightButton)
                used.send(WM_RBUTTONDOWN, {170, 130});
            else
                used.PostMessage(WM_USER);
            (void)shape->Track(&used, inside, 1, nullptr);
            EXPECT_EQ(tail(*shape), before) << name << ending;
            EXPECT_FALSE(shape->finished()) << name << ending;
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            EXPECT_EQ(shape->dragEnd(), ends[ending]) << name << ending;
            used.onUser = nullptr;
        }
}

TEST(TrackerWindow, EscapeTakesBackTheVertexOfItsClick)
{
    Window window;
    AAreaTracker area;
    for (const CPoint p : {CPoint(50, 50), CPoint(100, 50)}) {
        window.release(p);
        ASSERT_TRUE(area.TrackRubberBand(&window, p, 0));
        EXPECT_EQ(area.HitTest({-500, 9000}, &window), 0);
    }
    window.move({120, 120});
    window.escape();
    EXPECT_EQ(area.TrackRubberBand(&window, {150, 90}, 0), 1);
    ASSERT_EQ(area.points().count(), 2);
    window.release({110, 70});  // a press on the last vertex drags it
    EXPECT_TRUE(area.TrackRubberBand(&window, {101, 51}, 0));
    ASSERT_EQ(area.points().count(), 2);
    EXPECT_EQ(area.points()(1), CPoint(110, 70));
    EXPECT_TRUE(area.TrackReady(&window, {60, 60}));
    EXPECT_FALSE(area.TrackReady(&window, {60, 60}));
}

TEST(TrackerWindow, APressThatMayNotBeginChangesNothing)
{
    Window window;
    Window holder;
    Axis axis(1, 1);
    Axis flat(1, 1, {2, 2, 1, 3, 0, 1});
    for (const char* const name : classNames) {
        const Tracker shape = drawn(name, window, axis);
        const std::string before = tail(*shape).substr(0, 16);
        EXPECT_FALSE(shape->TrackRubberBand(&window, {5, 5}, 0)) << name;  // beside the clip
        holder.SetCapture();
        EXPECT_FALSE(shape->TrackHandle(1, &window, inside, nullptr)) << name;
        CWnd::ReleaseCapture();
        if (auto* const rp = dynamic_cast<ABTracker*>(shape.get())) {
            rp->SetAxis(&flat);
            EXPECT_FALSE(shape->TrackHandle(1, &window, inside, nullptr)) << name;
            EXPECT_FALSE(shape->TrackRubberBand(&window, inside, 0)) << name;
        }
        EXPECT_EQ(tail(*shape).substr(0, 16), before) << name;
    }
    ARectTracker rect({10, 10, 60, 60}, trackerNew);
    SetMessageFunction([](const CString& text, unsigned) { return text == "NULL" ? IDOK : IDNO; });
    EXPECT_FALSE(rect.TrackHandle(8, nullptr, {30, 30}, nullptr));
    SetMessageFunction(nullptr);
}

TEST(TrackerWindow, ATrackerDeletedInItsDragIsNotTouchedAgain)
{
    Window window;
    Axis axis(1, 1);
    for (const char* const name : classNames) {
        Tracker shape = drawn(name, window, axis);
        ATracker* const pointer = shape.get();
        window.onUser = [&] { shape.reset(); };
        window.move({160, 120});
        window.PostMessage(WM_USER);
        EXPECT_FALSE(pointer->Track(&window, inside, 1, nullptr)) << name;
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        window.onUser = nullptr;
    }
}

TEST(TrackerWindow, ADragEndsQuietlyWhenItsMapIsReplaced)
{
    Window window;
    for (const char* const name : {"ARPRectTracker", "ARPEllipseTracker", "ARPAreaTracker"}) {
        auto axis = std::make_unique<Axis>(1, -1);
        const Tracker shape = drawn(name, window, *axis);
        window.onUser = [&] {
            static_cast<ABTracker&>(*shape).SetAxis(nullptr);
            axis.reset();
        };
        const std::string before = tail(*shape);
        window.PostMessage(WM_USER);
        window.move({180, 130});
        window.release({190, 130});
        (void)shape->Track(&window, inside, 1, nullptr);
        EXPECT_EQ(tail(*shape).substr(0, 32), before.substr(0, 32)) << name;
        window.onUser = nullptr;
    }
}

TEST(TrackerWindow, ItsListenerBoundsADragAndHearsOfIt)
{
    struct Listener : TrackerListener {
        void trackerChanging(ATracker&) override { ++changes; }
        void trackerDragEnded(ATracker&, DragEnd how) override { end = how; }
        int trackerBounds(const ATracker&, CRect& bounds) override
        {
            return bounds = CRect(50, 50, 250, 200), 1;
        }
        int changes = 0;
        DragEnd end = DragEnd::refused;
    } listener;
    Window window;
    ARectTracker rect({100, 100, 150, 150}, trackerNew);
    rect.SetListener(&listener);
    window.move({240, 120});
    window.move({240, 120});
    window.release({390, 120});
    EXPECT_TRUE(rect.TrackHandle(5, &window, {150, 125}, nullptr));
    EXPECT_EQ(rect.rect(), CRect(100, 100, 250, 150));
    EXPECT_EQ(listener.changes, 2);
    EXPECT_EQ(listener.end, DragEnd::released);
    window.release({250, 200});  // right and bottom edge belong to the bounds
    EXPECT_FALSE(rect.TrackRubberBand(&window, {250, 200}, 0));
    EXPECT_EQ(rect.rect(), CRect(250, 200, 250, 200));
}

TEST(TrackerWindow, ADeadZoneKeepsAClickFromMoving)
{
    Window window;
    Axis axis(1, 1);
    for (const char* const name : classNames) {
        const Tracker shape = drawn(name, window, axis);
        shape->SetDeadZone(3);
        const std::string before = tail(*shape);
        window.move({inside.x + 3, inside.y - 3});
        window.release({inside.x + 2, inside.y + 1});
        (void)shape->Track(&window, inside, 0, nullptr);
        EXPECT_EQ(tail(*shape).substr(0, 16), before.substr(0, 16)) << name;
        window.move({inside.x + 4, inside.y});
        window.release({inside.x + 1, inside.y});  // once outside, each pixel counts
        EXPECT_TRUE(shape->Track(&window, inside, 1, nullptr)) << name;
        EXPECT_NE(tail(*shape).substr(0, 16), before.substr(0, 16)) << name;
    }
}

TEST(TrackerWindow, ShiftSnapsTheTurn)
{
    Window window;
    ARotateRectTracker box;
    box.SetRect({100, 100, 200, 160});
    window.move({180, 100}, MK_SHIFT);
    window.release({150, 60}, MK_SHIFT);
    EXPECT_TRUE(box.TrackHandle(10, &window, {175, 130}, nullptr));
    EXPECT_NEAR(box.angle(), 105 * pi / 180, 1e-12);  // a multiple of 15 goes on by one step
    EXPECT_EQ(box.rect(), CRect(100, 100, 200, 160));
}

TEST(TrackerWindow, RandomDragsKeepTheirPromises)
{
    Window window;
    std::mt19937 random(3);
    const auto in = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    int events = 0;
    for (int round = 0; events < 100000; ++round) {
        Axis axis(round % 3 - 1, round / 3 % 3 - 1);
        const Tracker shape = drawn(classNames[round % 8], window, axis);
        for (int drag = 0; drag < 10; ++drag) {
            CRect box;
            shape->GetTrueRect(&box);
            const auto within = [&](int low, int high, int end) {
                low = std::clamp(low, 21, end);
                return in(low, std::clamp(high, low, end));
            };
            const CPoint press(within(box.left, box.right, 379), within(box.top, box.bottom, 279));
            const std::string before = tail(*shape);
            const int count = in(0, 60);
            for (int i = 0; i < count; ++i)
                window.move({in(-60, 460), in(-60, 360)}, random() % 2 ? MK_SHIFT : 0);
            const bool cancelled = drag % 3 == 0;
            if (cancelled)
                window.escape();
            else
                window.release(count ? CPoint(in(-60, 460), in(-60, 360)) : press);
            events += count + 1;
            const int hit = shape->HitTest(press, &window);
            (void)shape->Track(&window, press, in(0, 1), nullptr);
            if (hit < 0) {  // nothing took the messages
                MSG message;
                while (PeekMessage(message))
                    continue;
            }
            ASSERT_EQ(CWnd::GetCapture(), nullptr);
            ASSERT_TRUE(!cancelled || tail(*shape) == before) << shape->GetClassName();
            if (const auto* const rect = dynamic_cast<ARectTracker*>(shape.get())) {
                const CRect r = normalized(rect->rect());
                ASSERT_TRUE(r.left >= 0 && r.top >= 0 && r.right <= 400 && r.bottom <= 300);
            }
            const Tracker loads(CreateTracker(shape->GetClassName()));
            ASSERT_TRUE(loads->SetState(shape->State())) << shape->GetClassName();
        }
    }
}

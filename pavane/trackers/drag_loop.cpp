#include "pavane/trackers/drag_loop.h"

#include "pavane/trackers/shapes/outline_strips.h"
#include "platform/capture_watch.h"
#include "platform/CWnd.h"
#include "platform/window_dc.h"

#include <cstdlib>
#include <optional>

namespace pavane
{

namespace
{

class DragLoop
{
public:
    DragLoop(ATracker& tracker, DragState state, DragSession& session, CWnd* window, CPoint press)
        : tracker_(tracker), state_(state), session_(session), window_(window),
          handle_(window->GetSafeHwnd()), press_(press), deadZone_(tracker.deadZone()),
          life_(tracker.life())
    {
    }

    DragEnd run(CWnd* clipTo)
    {
        state_.finished = 0;
        state_.tracking = 1;
        const HWND other = clipTo ? clipTo->GetSafeHwnd() : 0;
        window_->SetCapture();
        watch_.emplace([this] { lose(); });
        if (life_.alive() && windowLives())
            window_->UpdateWindow();
        if (CWnd* const below = CWnd::FromHandle(other); below && below != window_)
            below->UpdateWindow();
        DragEnd end = goesOn();
        if (end == DragEnd::released) {
            (void)change([&] { return session_.begin(); });
            end = goesOn();
        }
        while (end == DragEnd::released && !released_)
            end = step();
        return leave(end);
    }

private:
    bool windowLives() const { return CWnd::FromHandle(handle_) == window_; }

    /// `released` as long as nothing stands against going on.
    DragEnd goesOn() const
    {
        if (!life_.alive())
            return DragEnd::dead;
        return !lost_ && windowLives() && CWnd::GetCapture() == window_ ? DragEnd::released
                                                                        : DragEnd::lost;
    }

    DragEnd step()
    {
        MSG message;
        const int running = GetMessage(message);
        const DragEnd now = goesOn();
        if (now != DragEnd::released)
            return now;
        if (!running || message.message == WM_CANCELMODE)
            return DragEnd::lost;
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE)
            return DragEnd::escaped;
        if (message.message == WM_RBUTTONDOWN)
            return DragEnd::rightButton;
        const bool up = message.message == WM_LBUTTONUP;
        if (message.hwnd == handle_ && (up || message.message == WM_MOUSEMOVE))
            pointer(message, up);
        else
            DispatchMessage(message);
        if (released_ && life_.alive())
            return DragEnd::released;  // what happens to the window now is no cancel
        return goesOn();
    }

    void pointer(const MSG& message, bool up)
    {
        const CPoint point(GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam));
        const bool near =
            std::abs(point.x - press_.x) <= deadZone_ && std::abs(point.y - press_.y) <= deadZone_;
        begun_ = begun_ || !near || deadZone_ < 1;
        const int shift = (message.wParam & MK_SHIFT) != 0;
        released_ = up;
        if (up)
            state_.finished = 1;
        (void)change([&] { return session_.moveTo(begun_ ? point : press_, shift, up); });
    }

    /// Lets the session change the shape and paints what that uncovers; the tracker or the window
    /// may be gone afterwards.
    template <typename Change>
    bool change(const Change& make)
    {
        const ShapeTrace before = session_.trace();
        ++making_;
        const bool made = make() != 0;
        --making_;
        if (!life_.alive())
            return false;
        if (lost_ && !making_)
            session_.cancel();  // a hook lost the capture and the session went on
        if (!made && !lost_ && !released_)
            return false;
        if (!windowLives())
            return true;
        invalidateTrace(*window_, before);
        invalidateTrace(*window_, session_.trace());
        TrackerListener* const listener = tracker_.listener();
        if ((made || lost_) && listener)
            listener->trackerChanging(tracker_);
        if (life_.alive() && windowLives() && !lost_)
            paintTrack(tracker_, state_, *window_);
        return true;
    }

    /// The capture has gone: the shape is as before at once, since what took the capture away may
    /// ask for the shape, or go on for long, before the loop wakes.
    void lose()
    {
        if (!life_.alive() || released_)
            return;
        lost_ = true;
        state_.tracking = 0;
        cancel();
        tell(DragEnd::lost);
    }

    void cancel()
    {
        (void)change([&] {
            session_.cancel();
            return 1;
        });
    }

    void tell(DragEnd end)
    {
        if (!life_.alive())
            return;
        state_.end = end;
        if (windowLives())
            invalidateTrace(*window_, session_.trace());  // what tracked the pointer is a shape now
        if (TrackerListener* const listener = tracker_.listener())
            listener->trackerDragEnded(tracker_, end);
    }

    DragEnd leave(DragEnd how)
    {
        watch_.reset();
        if (lost_)
            return life_.alive() ? how : DragEnd::dead;
        if (life_.alive())
            state_.tracking = 0;
        if (how != DragEnd::released && how != DragEnd::dead)
            cancel();
        if (windowLives() && CWnd::GetCapture() == window_)
            CWnd::ReleaseCapture();
        tell(how);
        return life_.alive() ? how : DragEnd::dead;
    }

    ATracker& tracker_;
    DragState state_;
    DragSession& session_;
    CWnd* window_;
    HWND handle_;
    CPoint press_;
    int deadZone_;
    LifeWatch life_;
    bool begun_ = false;
    bool released_ = false;
    int making_ = 0;     ///< calls of the session on the stack
    bool lost_ = false;  ///< the capture went, and the shape is back
    std::optional<CaptureWatch> watch_;
};

}  // namespace

DragEnd runDrag(ATracker& tracker, DragState state, DragSession& session, CWnd* window,
                CPoint press, CWnd* clipTo)
{
    return DragLoop(tracker, state, session, window, press).run(clipTo);
}

void paintTrack(ATracker& tracker, DragState state, CWnd& window)
{
    const LifeWatch life(tracker.life());
    const HWND handle = window.GetSafeHwnd();
    state.drawn = 0;
    window.UpdateWindow();
    if (!life.alive() || CWnd::FromHandle(handle) != &window || !state.tracking || state.drawn)
        return;
    CClientDC dc(&window);
    tracker.Draw(&dc, &window);
}

void invalidateTrace(CWnd& window, const ShapeTrace& trace)
{
    std::vector<CRect> strips;
    addOutlineStrips(strips, trace.points.data(), static_cast<int>(trace.points.size()),
                     trace.closed, trace.margin);
    addOutlineStrips(strips, trace.stem.data(), static_cast<int>(trace.stem.size()), false,
                     trace.margin);
    for (const CRect& strip : strips)
        window.InvalidateRect(strip);
}

}  // namespace pavane

#pragma once

#include "platform/CWnd.h"
#include "platform/window_dc.h"

#include <functional>
#include <map>
#include <vector>

/// A window that writes down its messages and does what a test asks for when one comes.
class TestWindow : public pavane::CWnd
{
public:
    std::vector<unsigned> seen;
    std::map<unsigned, std::function<void()>> on;  ///< after the base class; may delete it
    std::function<void(pavane::CPaintDC&)> draw;
    pavane::LPARAM last = 0;  ///< second parameter of the last message

    explicit TestWindow(pavane::CWnd* parent = nullptr, unsigned style = pavane::WS_VISIBLE,
                        pavane::CRect rect = {0, 0, 100, 80}, unsigned id = 0)
    {
        using namespace pavane;
        const unsigned kind = parent ? WS_CHILD : WS_POPUP;
        CreateEx(0, "test", "Test", style | kind, rect, parent, id);
    }
    pavane::LRESULT WindowProc(unsigned message, pavane::WPARAM w, pavane::LPARAM l) override
    {
        seen.push_back(message);
        last = l;
        const pavane::HWND self = GetSafeHwnd();
        const pavane::LRESULT result = CWnd::WindowProc(message, w, l);
        if (FromHandle(self) != this)
            return result;
        const auto action = on.find(message);
        if (action != on.end()) {
            const auto run = action->second;  // the window may go meanwhile
            run();
        }
        return result;
    }
    int count(unsigned message) const
    {
        int n = 0;
        for (const unsigned m : seen)
            n += m == message;
        return n;
    }

protected:
    void OnPaint() override
    {
        pavane::CPaintDC dc(this);
        if (const auto run = draw)
            run(dc);
    }
};

/// Lets everything that waits happen.
inline void settle()
{
    pavane::MSG m;
    for (int i = 0; i < 5; ++i) {
        while (pavane::PeekMessage(m))
            pavane::DispatchMessage(m);
    }
}

/// How a drag ended.
enum class DragEnd { none, released, cancelled, lost };

/// A drag as windows write it.
inline DragEnd dragLoop(pavane::CWnd* window, const std::function<void(pavane::CPoint)>& moved = {})
{
    using namespace pavane;
    const HWND self = window->GetSafeHwnd();
    const auto isLost = [&] {
        return CWnd::FromHandle(self) == nullptr || CWnd::GetCapture() != window;
    };
    window->SetCapture();
    MSG m;
    while (GetMessage(m)) {
        if (isLost())
            return DragEnd::lost;
        const bool escapes = m.message == WM_KEYDOWN && m.wParam == WPARAM{VK_ESCAPE};
        const bool ends = m.message == WM_LBUTTONUP;
        if (ends || escapes || m.message == WM_RBUTTONDOWN || m.message == WM_CANCELMODE) {
            CWnd::ReleaseCapture();
            return ends ? DragEnd::released : DragEnd::cancelled;
        }
        if (m.message == WM_MOUSEMOVE && moved)
            moved({GET_X_LPARAM(m.lParam), GET_Y_LPARAM(m.lParam)});
        else
            DispatchMessage(m);
        if (isLost())
            return DragEnd::lost;
    }
    return DragEnd::lost;
}

#pragma once

#include "pavane/trackers/collections/ATrackerArray.h"
#include "platform/controls.h"
#include "platform/window_dc.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace pavane::test
{

/// A toolbar that only writes down what it is told.
struct Buttons : CWnd {
    std::map<unsigned, int> enabled;
    unsigned checked = 0;
    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == TB_ENABLEBUTTON)
            enabled[static_cast<unsigned>(w)] = static_cast<int>(l);
        if (message == TB_CHECKBUTTON)
            checked = static_cast<unsigned>(w);
        return CWnd::WindowProc(message, w, l);
    }
};

inline void settle()
{
    MSG m;
    while (PeekMessage(m))
        (void)DispatchMessage(m);
}

struct PixelAreas : ATrackerArray {
    CComboBox* list = nullptr;
    CWnd* bar = nullptr;
    int changes = 0;
    CComboBox* GetComboBox(CWnd*) override { return list; }
    CWnd* GetToolBar(CWnd*) override { return bar; }
    void OnChanged() override { ++changes; }
};

/// A window of 320 x 240 that hands everything to a collection, as hosts do.
template <typename Areas>
class AreasWindow : public CWnd
{
public:
    static constexpr unsigned happening = WM_USER + 77;

    AreasWindow() : areas(new Areas)
    {
        (void)Create("areas", "Areas", WS_VISIBLE | WS_POPUP, {0, 0, 320, 240}, nullptr, 0);
    }
    std::unique_ptr<Areas> areas;
    std::function<void()> happens;  ///< when the message comes
    static inline int used = -1;    ///< what the last press was for; outlives the window
    CWnd other;                     ///< made by who needs it

    void post(unsigned message, CPoint p, unsigned keys = MK_LBUTTON)
    {
        (void)PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    /// Press, moves and release.
    void drag(const std::vector<CPoint>& way, unsigned keys = MK_LBUTTON)
    {
        post(WM_LBUTTONDOWN, way.front(), keys);
        for (const CPoint p : way)
            post(WM_MOUSEMOVE, p, keys);
        post(WM_LBUTTONUP, way.back(), keys);
        settle();
    }
    void doubleClick(CPoint p)
    {
        post(WM_LBUTTONDBLCLK, p);
        settle();
    }

    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == happening && happens) {
            const auto run = happens;  // may delete this
            return run(), 0;
        }
        return CWnd::WindowProc(message, w, l);
    }

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        if (areas)
            areas->Draw(&dc, this);
    }
    void OnLButtonDown(unsigned flags, CPoint p) override
    {
        if (areas)
            used = areas->OnLButtonDown(this, flags, p);
    }
    void OnLButtonDblClk(unsigned flags, CPoint p) override
    {
        if (areas)
            (void)areas->OnLButtonDblClk(this, flags, p);
    }
};

}  // namespace pavane::test

#include "platform/qt/focus.h"
#include "platform/qt/input.h"
#include "platform/qt/WindowPeer.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

CPoint pointOf(LPARAM p) { return {GET_X_LPARAM(p), GET_Y_LPARAM(p)}; }
int signedHigh(WPARAM p) { return static_cast<std::int16_t>(HIWORD(p)); }
unsigned low(LPARAM p) { return LOWORD(static_cast<WPARAM>(p)); }
unsigned high(LPARAM p) { return HIWORD(static_cast<WPARAM>(p)); }

/// Positions beyond 16 bits come as the second parameter.
unsigned scrollPosition(WPARAM w, LPARAM p)
{
    return p != 0 ? static_cast<unsigned>(p) : HIWORD(w);
}

/// What a handler is told of a turn: whole units, with what earlier turns left.
int wholeTurn(const CWnd& window, bool across, int delta)
{
    WindowPeer* const peer = peerOf(&window);
    if (!peer || peer->wheelUnit <= 1)
        return delta;
    int& rest = peer->wheelRest[across ? 0 : 1];
    if ((rest < 0) != (delta < 0))
        rest = 0;
    const int sum = rest + delta;
    rest = sum % peer->wheelUnit;
    return sum - rest;
}

}  // namespace

void CWnd::SetWheelUnit(int delta)
{
    if (WindowPeer* const peer = peerOf(this)) {
        peer->wheelUnit = std::max(1, delta);
        std::fill_n(peer->wheelRest, 2, 0);
    }
}

LRESULT CWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    const auto flags = static_cast<unsigned>(wParam);
    switch (message) {
    case WM_CREATE:
        return OnCreate(*reinterpret_cast<CREATESTRUCT*>(lParam));  // NOLINT: a pointer in it
    case WM_DESTROY:
        return OnDestroy(), 0;
    case WM_CLOSE:
        return OnClose(), 0;
    case WM_PAINT:
        return OnPaint(), 0;
    case WM_SIZE:
        return OnSize(flags, static_cast<int>(low(lParam)), static_cast<int>(high(lParam))), 0;
    case WM_MOVE:
        return OnMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)), 0;
    case WM_SHOWWINDOW:
        return OnShowWindow(wParam != 0, static_cast<unsigned>(lParam)), 0;
    case WM_ACTIVATE:
        return OnActivate(flags, FromHandle(static_cast<HWND>(lParam))), 0;
    case WM_ENABLE:
        return OnEnable(wParam != 0), 0;
    case WM_SETFOCUS:
        return OnSetFocus(FromHandle(wParam)), 0;
    case WM_KILLFOCUS:
        return OnKillFocus(FromHandle(wParam)), 0;
    case WM_CAPTURECHANGED:
        return OnCaptureChanged(FromHandle(static_cast<HWND>(lParam))), 0;
    case WM_CANCELMODE:
        return OnCancelMode(), 0;
    case WM_LBUTTONDOWN:
        return OnLButtonDown(flags, pointOf(lParam)), 0;
    case WM_LBUTTONUP:
        return OnLButtonUp(flags, pointOf(lParam)), 0;
    case WM_LBUTTONDBLCLK:
        return OnLButtonDblClk(flags, pointOf(lParam)), 0;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
        return OnRButtonDown(flags, pointOf(lParam)), 0;
    case WM_RBUTTONUP:
        return OnRButtonUp(flags, pointOf(lParam)), 0;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
        return OnMButtonDown(flags, pointOf(lParam)), 0;
    case WM_MBUTTONUP:
        return OnMButtonUp(flags, pointOf(lParam)), 0;
    case WM_MOUSEMOVE:
        return OnMouseMove(flags, pointOf(lParam)), 0;
    case WM_MOUSELEAVE:
        return OnMouseLeave(), 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL: {
        const bool across = message == WM_MOUSEHWHEEL;
        const int turn = wholeTurn(*this, across, signedHigh(wParam));
        if (turn == 0 && signedHigh(wParam) != 0)
            return 1;  // kept for later
        return across ? OnMouseHWheel(LOWORD(wParam), turn, pointOf(lParam))
                      : OnMouseWheel(LOWORD(wParam), turn, pointOf(lParam));
    }
    case WM_SYSCOLORCHANGE:
        return OnSysColorChange(), 0;
    case WM_CONTEXTMENU:
        return OnContextMenu(FromHandle(wParam), pointOf(lParam)), 0;
    case WM_SETCURSOR:
        return OnSetCursor(FromHandle(wParam), low(lParam), high(lParam));
    case WM_KEYDOWN:
        return OnKeyDown(flags, low(lParam), high(lParam)), 0;
    case WM_KEYUP:
        return OnKeyUp(flags, low(lParam), high(lParam)), 0;
    case WM_CHAR:
        return OnChar(flags, low(lParam), high(lParam)), 0;
    case WM_GETDLGCODE:
        return static_cast<LRESULT>(OnGetDlgCode());
    case WM_TIMER:
        return OnTimer(flags), 0;
    case WM_HSCROLL:
        return OnHScroll(LOWORD(wParam), scrollPosition(wParam, lParam)), 0;
    case WM_VSCROLL:
        return OnVScroll(LOWORD(wParam), scrollPosition(wParam, lParam)), 0;
    case WM_COMMAND:
        return OnCommand(LOWORD(wParam), HIWORD(wParam), FromHandle(static_cast<HWND>(lParam)));
    default:
        return Default();
    }
}

int CWnd::PreTranslateMessage(const MSG&) { return 0; }
int CWnd::PreCreateWindow(CREATESTRUCT&) { return 1; }
int CWnd::OnCreate(CREATESTRUCT&) { return 0; }
void CWnd::OnClose() { DestroyWindow(); }
void CWnd::OnPaint() { const CPaintDC dc(this); }
void CWnd::OnSize(unsigned, int, int) {}
void CWnd::OnMove(int, int) {}
void CWnd::OnShowWindow(int, unsigned) {}
void CWnd::OnActivate(unsigned, CWnd*) {}
void CWnd::OnEnable(int) {}
void CWnd::OnSetFocus(CWnd*) {}
void CWnd::OnKillFocus(CWnd*) {}
void CWnd::OnCaptureChanged(CWnd*) {}

void CWnd::OnCancelMode()
{
    if (GetCapture() == this)
        ReleaseCapture();
}

void CWnd::OnLButtonDown(unsigned, CPoint) { Default(); }
void CWnd::OnLButtonUp(unsigned, CPoint) { Default(); }
void CWnd::OnLButtonDblClk(unsigned, CPoint) { Default(); }
void CWnd::OnRButtonDown(unsigned, CPoint) { Default(); }
void CWnd::OnMButtonDown(unsigned, CPoint) { Default(); }
void CWnd::OnMButtonUp(unsigned, CPoint) { Default(); }
void CWnd::OnMouseMove(unsigned, CPoint) { Default(); }
void CWnd::OnMouseLeave() {}

void CWnd::OnRButtonUp(unsigned, CPoint point)
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative()) {
        Default();
        return;
    }
    if (wasRightPressTaken())
        return;
    ClientToScreen(point);
    SendMessage(WM_CONTEXTMENU, hwnd_, MAKELPARAM(point.x, point.y));
}

int CWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative())
        return static_cast<int>(Default());
    if (peer->isTopLevel())
        return 0;
    return static_cast<int>(sendTo(peer->parent, WM_MOUSEWHEEL,
                                   (flags & 0xFFFF) | (static_cast<WPARAM>(delta) & 0xFFFF) << 16,
                                   MAKELPARAM(screen.x, screen.y)));
}

int CWnd::OnMouseHWheel(unsigned flags, int delta, CPoint screen)
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative())
        return static_cast<int>(Default());
    if (peer->isTopLevel())
        return 0;
    return static_cast<int>(sendTo(peer->parent, WM_MOUSEHWHEEL,
                                   (flags & 0xFFFF) | (static_cast<WPARAM>(delta) & 0xFFFF) << 16,
                                   MAKELPARAM(screen.x, screen.y)));
}

void CWnd::OnContextMenu(CWnd* window, CPoint screen)
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative())
        Default();
    else if (!peer->isTopLevel())
        sendTo(peer->parent, WM_CONTEXTMENU, window ? window->hwnd_ : 0,
               MAKELPARAM(screen.x, screen.y));
}

int CWnd::OnSetCursor(CWnd*, unsigned hitArea, unsigned)
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer || peer->isNative() || hitArea != HTCLIENT)
        return 0;
    SetCursor(peer->classCursor);
    return 1;
}

void CWnd::OnKeyDown(unsigned, unsigned, unsigned) { Default(); }
void CWnd::OnKeyUp(unsigned, unsigned, unsigned) { Default(); }
void CWnd::OnChar(unsigned, unsigned, unsigned) { Default(); }
unsigned CWnd::OnGetDlgCode() { return static_cast<unsigned>(Default()); }
void CWnd::OnTimer(unsigned) {}
void CWnd::OnSysColorChange() { Invalidate(); }
void CWnd::OnHScroll(unsigned, unsigned) {}
void CWnd::OnVScroll(unsigned, unsigned) {}
int CWnd::OnCommand(unsigned, unsigned, CWnd*) { return 0; }

}  // namespace pavane

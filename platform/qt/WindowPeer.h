#pragma once

#include "platform/core/WindowSurface.h"
#include "platform/CWnd.h"

#include <functional>
#include <memory>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <vector>

namespace pavane
{

class FrameWidget;
class PeerTimers;

/// Deletes when control is back in the event loop; the object may be the one that is calling.
struct LaterDeleter {
    void operator()(PeerTimers* timers) const;
};

/// The toolkit's side of a window. Lives from attach() to the end of DestroyWindow; whoever calls
/// a handler looks it up again by its handle afterwards.
struct WindowPeer {
    HWND hwnd = 0;
    CWnd* window = nullptr;
    QPointer<QWidget> widget;     ///< the client area, or the native control
    QPointer<FrameWidget> frame;  ///< around it: menu bar, scroll bars, border; null for none
    HWND parent = 0;              ///< or owner, of a top-level window
    unsigned id = 0;
    unsigned style = 0;
    unsigned exStyle = 0;
    HCURSOR classCursor = IDC_ARROW;
    HCURSOR shownCursor = 0;
    bool hasCursor = false;  ///< shownCursor has been given to the widget
    bool wantsDoubleClicks = true;
    bool isPainting = false;
    bool isPaintDue = false;  ///< an event is on its way that paints
    bool isDying = false;
    bool tookInvalid = false;  ///< a CPaintDC was made since WM_PAINT began
    bool isModal = false;      ///< a dialog in DoModal
    LOGFONT font;
    int wheelUnit = 1;
    int wheelRest[2] = {};                   ///< turns across and along that no message told of
    std::shared_ptr<WindowSurface> surface;  ///< null for native controls
    std::unique_ptr<PeerTimers, LaterDeleter> timers;
    CString title;
    /// Text of a native control; the frame's title when they are empty.
    std::function<void(const CString&)> setText;
    std::function<CString()> text;
    /// The part of its rectangle that a native control covers; all of it when empty.
    std::function<CRect(const CRect&)> covered;

    WindowPeer();
    ~WindowPeer();
    WindowPeer(const WindowPeer&) = delete;
    WindowPeer& operator=(const WindowPeer&) = delete;

    /// The outermost widget: the frame, or the widget itself.
    QWidget* outer() const;
    bool isNative() const { return surface == nullptr; }
    bool isTopLevel() const { return !(style & WS_CHILD); }
    static void setHandle(CWnd& window, HWND hwnd) { window.hwnd_ = hwnd; }
};

/// The peer of a handle; null when the window is gone.
WindowPeer* peerOf(HWND hwnd);
inline WindowPeer* peerOf(const CWnd* window)
{
    return window ? peerOf(window->GetSafeHwnd()) : nullptr;
}
/// The peer of a widget or of its nearest ancestor that has one; null for widgets of the host.
WindowPeer* peerOf(const QWidget* widget);
/// Children of a window and top-level windows that it owns, oldest first.
std::vector<HWND> childrenOf(HWND parent);
std::vector<HWND> allWindows();

/// Makes `widget` (made by the caller with clientOf(cs.parent) as its Qt parent, hidden) the native
/// side of `window`: identifier, styles, WS_DISABLED, geometry (cs.rect), title. The widget has to
/// be a ControlWidget<...> for keys and focus to reach the object. No message is sent but WM_CREATE
/// and WM_SIZE, and it is shown with WS_VISIBLE. Returns the handle, 0 when OnCreate gave up (the
/// widget is gone then).
HWND attachControl(CWnd& window, QWidget* widget, const CREATESTRUCT& cs);
/// The same without messages and without placing it: dialogs go on themselves.
WindowPeer* attach(CWnd& window, QWidget* widget, const CREATESTRUCT& cs);
/// Puts the frame around a host window's client area.
void registerFrame(WindowPeer& peer, FrameWidget* frame);
/// Ends a window as DestroyWindow does; 0 when it is gone already or on its way.
int destroyPeer(HWND hwnd);
/// The object goes while its window is being destroyed.
void forgetObject(HWND hwnd);
/// The widget that children of `window` are made in; null for none.
QWidget* clientOf(const CWnd* window);

/// Calls the window's procedure. `native` is what Default() does meanwhile; it is called at most
/// once. `defaulted`, if given, says whether it was.
LRESULT sendTo(HWND hwnd, unsigned message, WPARAM wParam, LPARAM lParam,
               const std::function<LRESULT()>& native = {}, bool* defaulted = nullptr);
/// WM_COMMAND from a control to its parent.
void notifyParent(HWND control, unsigned code);
/// Ends a drag: WM_CANCELMODE and WM_CAPTURECHANGED to the window that has the capture, and a
/// waiting GetMessage returns WM_NULL.
void cancelCapture();
/// Cancels when the capture is in this window or below it.
void cancelCaptureWithin(HWND hwnd);
/// Call after a modal dialog has gone: activates the window that was active when none is.
void reactivate(HWND top);
/// Fills `peer` changes of the focus policy from WS_TABSTOP.
void applyTabStop(WindowPeer& peer);

/// The window's font as Qt has it.
QFont qtFontOf(const LOGFONT& font);
/// The toolkit's rectangle as one of ours.
inline CRect rectOf(const QRect& r)
{
    return {r.x(), r.y(), r.x() + r.width(), r.y() + r.height()};
}

/// Puts a menu bar above the client area of a top-level window (null takes it away and deletes it);
/// the frame owns it, gives it its height hint and the full width. 0 when the window has no frame.
int setMenuBarWidget(HWND hwnd, QWidget* bar);
QWidget* menuBarWidget(HWND hwnd);

/// Starts and ends what windows need of the application object (event filter, queue).
void startWindows();
void stopWindows();

}  // namespace pavane

#pragma once

#include "platform/cursors.h"
#include "platform/gdi_objects.h"
#include "platform/messages.h"

#include <vector>

namespace pavane
{

class AccessSource;
class CDC;
class CMenu;
class CWnd;

/// What is known of a window before it is made; PreCreateWindow may change it.
struct CREATESTRUCT {
    CString className;
    CString title;
    unsigned style = 0;
    unsigned exStyle = 0;
    CRect rect;  ///< client coordinates of the parent, screen coordinates of a top-level window
    CWnd* parent = nullptr;
    unsigned id = 0;
};

/// A window class: what windows of one name share.
struct WNDCLASSA {
    unsigned style = 0;
    HCURSOR cursor = IDC_ARROW;
    CString className;
};
inline constexpr unsigned CS_VREDRAW = 1, CS_HREDRAW = 2, CS_DBLCLKS = 8;
/// Non-zero when a class of that name is registered.
PAVANE_API int GetClassInfo(const CString& name, WNDCLASSA& wc);
PAVANE_API int AfxRegisterClass(const WNDCLASSA& wc);

/// Placement of a top-level window; rectangles are client rectangles on the screen.
struct WINDOWPLACEMENT {
    unsigned length = 44;
    unsigned flags = 0;  ///< WPF_RESTORETOMAXIMIZED
    unsigned showCmd = SW_SHOWNORMAL;
    CPoint ptMinPosition{-1, -1};
    CPoint ptMaxPosition{-1, -1};
    CRect rcNormalPosition;
};
inline constexpr unsigned WPF_RESTORETOMAXIMIZED = 2;

/// The object beside a native window. It never belongs to the toolkit and the window never to it:
/// destroying either leaves the other whole (an object without a window answers 0 to everything).
/// Handlers may destroy or delete their own window; whoever goes on afterwards asks
/// CWnd::FromHandle first.
///
/// Messages arrive at WindowProc, which calls the On... handlers; a handler that an heir overrides
/// calls the one of its base for the usual behaviour. Coordinates are logical pixels of the client
/// area, y downwards; drawing may happen at any time through a CClientDC and stays on the window.
class PAVANE_API CWnd
{
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd();

    // Life
    /// Makes the native window: calls PreCreateWindow, sends WM_CREATE; non-zero on success.
    /// Without WS_CHILD it is a top-level window (of `parent`, if given).
    int CreateEx(unsigned exStyle, const CString& className, const CString& title, unsigned style,
                 const CRect& rect, CWnd* parent, unsigned id);
    int Create(const CString& className, const CString& title, unsigned style, const CRect& rect,
               CWnd* parent, unsigned id)
    {
        return CreateEx(0, className, title, style, rect, parent, id);
    }
    /// Destroys the native window; the object stays.
    int DestroyWindow();
    /// Called last, when the window is gone; an heir on the heap may delete itself here.
    virtual void PostNcDestroy() {}
    HWND GetSafeHwnd() const { return hwnd_; }
    /// The object of a handle, null when the window is gone.
    static CWnd* FromHandle(HWND hwnd);

    // Relations
    CWnd* GetParent() const;
    CWnd* GetTopLevelParent() const;
    /// The child with this identifier, null when there is none.
    CWnd* GetDlgItem(unsigned id) const;
    unsigned GetDlgCtrlID() const;
    unsigned SetDlgCtrlID(unsigned id);
    unsigned GetStyle() const;
    unsigned GetExStyle() const;
    /// Non-zero for dialogs.
    virtual int IsDialog() const { return 0; }
    /// Children in stacking order, lowest first.
    std::vector<CWnd*> GetChildren() const;

    // Text, place, state
    void SetWindowText(const CString& text);
    CString GetWindowText() const;
    int GetClientRect(CRect& rect) const;
    /// Screen coordinates of the whole window.
    int GetWindowRect(CRect& rect) const;
    void ClientToScreen(CPoint& point) const;
    void ScreenToClient(CPoint& point) const;
    void ClientToScreen(CRect& rect) const;
    void ScreenToClient(CRect& rect) const;
    /// Moves and sizes: client coordinates of the parent, screen coordinates of a top-level window.
    int MoveWindow(const CRect& rect, int repaint = 1);
    int ShowWindow(int command);
    int IsWindowVisible() const;
    int EnableWindow(int on);
    int IsWindowEnabled() const;
    int GetWindowPlacement(WINDOWPLACEMENT& placement) const;
    int SetWindowPlacement(const WINDOWPLACEMENT& placement);
    int IsIconic() const;
    int IsZoomed() const;
    void SetFont(const CFont& font);
    /// The font of SetFont; the one that controls have when none was set.
    CFont GetFont() const;
    /// Device pixels per logical pixel, rounded to what pictures of this window are made at.
    int GetPixelRatio() const;
    /// A menu bar of a top-level window; the window takes a copy. Items with a key in their text
    /// ("Undo\tCtrl+Z") answer to it. Commands arrive as WM_COMMAND.
    int SetMenu(const CMenu& menu);
    /// Called with each popup of the menu bar before it shows, to check and enable its items.
    virtual void OnInitMenuPopup(CMenu& popup) { (void)popup; }

    // Focus and capture
    /// Gives the keyboard to this window; returns the one that had it.
    CWnd* SetFocus();
    static CWnd* GetFocus();
    /// Mouse messages go here until ReleaseCapture; WM_CAPTURECHANGED tells of a loss.
    CWnd* SetCapture();
    static CWnd* GetCapture();
    static void ReleaseCapture();

    // Painting
    void Invalidate();
    void InvalidateRect(const CRect& rect);
    void InvalidateRgn(const CRgn& region);
    void ValidateRect(const CRect& rect);
    /// Box of what waits to be painted; 0 when nothing does.
    int GetUpdateRect(CRect& rect) const;
    /// Paints now what is invalid (sends WM_PAINT).
    void UpdateWindow();
    /// Shifts the picture in `rect` and invalidates what is uncovered.
    void ScrollWindow(int dx, int dy, const CRect& rect);

    // Scroll bars (of windows with WS_HSCROLL, WS_VSCROLL). What shows or hides one changes the
    // client area, and WM_SIZE comes before the call returns.
    /// A bar that has nowhere to go (min is max) is not shown until it gets another range.
    void SetScrollRange(int bar, int min, int max, int page = 1);
    /// Non-zero when the window has the bar, shown or not.
    int GetScrollRange(int bar, int& min, int& max) const;
    /// The position before.
    int SetScrollPos(int bar, int position);
    int GetScrollPos(int bar) const;
    void ShowScrollBar(int bar, int show);
    /// Whether the bar takes room from the client area now.
    int IsScrollBarShown(int bar) const;

    /// Lets OnMouseWheel and OnMouseHWheel get whole multiples of `delta` only: what fine wheels
    /// send below that adds up, and a turn back begins anew. 1 at first: every delta as it comes.
    void SetWheelUnit(int delta);

    // Timers
    unsigned SetTimer(unsigned id, unsigned milliseconds);
    int KillTimer(unsigned id);

    // Messages
    LRESULT SendMessage(unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);
    int PostMessage(unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);
    /// Receives every message; the base calls the handlers below.
    virtual LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam);
    /// Sees every input message for this window or a descendant before it is handed out, when this
    /// is a top-level window; non-zero swallows it.
    virtual int PreTranslateMessage(const MSG& message);

    // Tool tips: shown after the pointer rests in the client area; "" for none.
    virtual CString OnToolTip(CPoint point) { return (void)point, CString(); }
    /// What screen readers are told of this window; null: that it is a window.
    virtual AccessSource* GetAccess() { return nullptr; }

protected:
    /// Non-zero to go on with the creation.
    virtual int PreCreateWindow(CREATESTRUCT& cs);
    virtual void PreSubclassWindow() {}

    // Handlers; `point` in client coordinates, `flags` MK_... bits.
    /// 0 to go on, -1 to give up.
    virtual int OnCreate(CREATESTRUCT& cs);
    virtual void OnDestroy() {}
    virtual void OnClose();  ///< destroys the window
    virtual void OnPaint();
    virtual void OnSize(unsigned type, int cx, int cy);
    virtual void OnMove(int x, int y);
    virtual void OnShowWindow(int show, unsigned status);
    virtual void OnActivate(unsigned state, CWnd* other);
    virtual void OnEnable(int on);
    virtual void OnSetFocus(CWnd* old);
    virtual void OnKillFocus(CWnd* next);
    virtual void OnCaptureChanged(CWnd* next);
    virtual void OnCancelMode();
    virtual void OnLButtonDown(unsigned flags, CPoint point);
    virtual void OnLButtonUp(unsigned flags, CPoint point);
    virtual void OnLButtonDblClk(unsigned flags, CPoint point);
    virtual void OnRButtonDown(unsigned flags, CPoint point);
    virtual void OnRButtonUp(unsigned flags, CPoint point);
    virtual void OnMButtonDown(unsigned flags, CPoint point);
    virtual void OnMButtonUp(unsigned flags, CPoint point);
    virtual void OnMouseMove(unsigned flags, CPoint point);
    virtual void OnMouseLeave();
    /// `delta` in WHEEL_DELTA a notch, `screen` in screen coordinates; non-zero when used. A
    /// message that is not used goes on to the parent.
    virtual int OnMouseWheel(unsigned flags, int delta, CPoint screen);
    virtual int OnMouseHWheel(unsigned flags, int delta, CPoint screen);
    /// `screen` is (-1, -1) when a key asked for it (the menu key, Shift+F10).
    virtual void OnContextMenu(CWnd* window, CPoint screen);
    /// Non-zero when it chose the cursor; the base shows the class cursor.
    virtual int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message);
    virtual void OnKeyDown(unsigned key, unsigned repeat, unsigned flags);
    virtual void OnKeyUp(unsigned key, unsigned repeat, unsigned flags);
    virtual void OnChar(unsigned character, unsigned repeat, unsigned flags);
    virtual unsigned OnGetDlgCode();
    virtual void OnTimer(unsigned id);
    /// The desktop's colours changed; the base repaints.
    virtual void OnSysColorChange();
    virtual void OnHScroll(unsigned code, unsigned position);
    virtual void OnVScroll(unsigned code, unsigned position);
    /// A menu item (code 0), or a control's notice (BN_..., EN_..., CBN_...); non-zero when used.
    virtual int OnCommand(unsigned id, unsigned code, CWnd* control);
    /// What the native control does with the message that is being handled.
    LRESULT Default();

private:
    friend struct WindowPeer;
    HWND hwnd_ = 0;
};

}  // namespace pavane

#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <cstdint>
#include <memory>

namespace pavane
{

/// A window as a number that is never used twice; 0 is none. A handle whose window is gone finds
/// nothing, so it may be kept.
using HWND = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

/// The toolkit's event behind an input message.
struct InputEvent;

/// One message: input or a posted one. `pt` is the pointer's place on the screen.
struct MSG {
    HWND hwnd = 0;
    unsigned message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    CPoint pt;
    std::shared_ptr<InputEvent> input;  ///< what DispatchMessage hands to a native control
};

inline constexpr unsigned WM_NULL = 0x0000, WM_CREATE = 0x0001, WM_DESTROY = 0x0002,
                          WM_MOVE = 0x0003, WM_SIZE = 0x0005, WM_ACTIVATE = 0x0006,
                          WM_SETFOCUS = 0x0007, WM_KILLFOCUS = 0x0008, WM_ENABLE = 0x000A,
                          WM_PAINT = 0x000F, WM_CLOSE = 0x0010, WM_QUIT = 0x0012,
                          WM_SYSCOLORCHANGE = 0x0015, WM_SHOWWINDOW = 0x0018,
                          WM_CANCELMODE = 0x001F, WM_SETCURSOR = 0x0020, WM_CONTEXTMENU = 0x007B,
                          WM_GETDLGCODE = 0x0087, WM_KEYDOWN = 0x0100, WM_KEYUP = 0x0101,
                          WM_CHAR = 0x0102, WM_COMMAND = 0x0111, WM_TIMER = 0x0113,
                          WM_HSCROLL = 0x0114, WM_VSCROLL = 0x0115, WM_MOUSEMOVE = 0x0200,
                          WM_LBUTTONDOWN = 0x0201, WM_LBUTTONUP = 0x0202, WM_LBUTTONDBLCLK = 0x0203,
                          WM_RBUTTONDOWN = 0x0204, WM_RBUTTONUP = 0x0205, WM_RBUTTONDBLCLK = 0x0206,
                          WM_MBUTTONDOWN = 0x0207, WM_MBUTTONUP = 0x0208, WM_MBUTTONDBLCLK = 0x0209,
                          WM_MOUSEWHEEL = 0x020A, WM_MOUSEHWHEEL = 0x020E,
                          WM_CAPTURECHANGED = 0x0215, WM_MOUSELEAVE = 0x02A3, WM_USER = 0x0400;

// Keys held with a mouse message (wParam).
inline constexpr unsigned MK_LBUTTON = 0x0001, MK_RBUTTON = 0x0002, MK_SHIFT = 0x0004,
                          MK_CONTROL = 0x0008, MK_MBUTTON = 0x0010;

// Virtual keys; letters and digits are their upper-case characters.
inline constexpr int VK_LBUTTON = 0x01, VK_RBUTTON = 0x02, VK_MBUTTON = 0x04, VK_BACK = 0x08,
                     VK_TAB = 0x09, VK_RETURN = 0x0D, VK_SHIFT = 0x10, VK_CONTROL = 0x11,
                     VK_MENU = 0x12, VK_ESCAPE = 0x1B, VK_SPACE = 0x20, VK_PRIOR = 0x21,
                     VK_NEXT = 0x22, VK_END = 0x23, VK_HOME = 0x24, VK_LEFT = 0x25, VK_UP = 0x26,
                     VK_RIGHT = 0x27, VK_DOWN = 0x28, VK_INSERT = 0x2D, VK_DELETE = 0x2E,
                     VK_APPS = 0x5D, VK_NUMPAD0 = 0x60, VK_ADD = 0x6B, VK_SUBTRACT = 0x6D,
                     VK_F1 = 0x70, VK_F2 = 0x71, VK_F3 = 0x72, VK_F6 = 0x75, VK_F10 = 0x79,
                     VK_F12 = 0x7B, VK_OEM_PLUS = 0xBB, VK_OEM_MINUS = 0xBD;

// Answers to WM_GETDLGCODE.
inline constexpr unsigned DLGC_WANTARROWS = 0x0001, DLGC_WANTTAB = 0x0002,
                          DLGC_WANTALLKEYS = 0x0004, DLGC_WANTCHARS = 0x0080;

// Window styles.
inline constexpr unsigned WS_OVERLAPPED = 0x00000000, WS_POPUP = 0x80000000, WS_CHILD = 0x40000000,
                          WS_VISIBLE = 0x10000000, WS_DISABLED = 0x08000000,
                          WS_CAPTION = 0x00C00000, WS_BORDER = 0x00800000, WS_VSCROLL = 0x00200000,
                          WS_HSCROLL = 0x00100000, WS_SYSMENU = 0x00080000,
                          WS_THICKFRAME = 0x00040000, WS_GROUP = 0x00020000,
                          WS_TABSTOP = 0x00010000, WS_MINIMIZEBOX = 0x00020000,
                          WS_MAXIMIZEBOX = 0x00010000, WS_OVERLAPPEDWINDOW = 0x00CF0000;
inline constexpr unsigned WS_EX_CLIENTEDGE = 0x00000200, WS_EX_TOPMOST = 0x00000008;

inline constexpr int SW_HIDE = 0, SW_SHOWNORMAL = 1, SW_SHOWMINIMIZED = 2, SW_SHOWMAXIMIZED = 3,
                     SW_SHOW = 5, SW_MINIMIZE = 6, SW_RESTORE = 9;

// Kinds of WM_SIZE.
inline constexpr unsigned SIZE_RESTORED = 0, SIZE_MINIMIZED = 1, SIZE_MAXIMIZED = 2;

// Where the pointer is (hit code of WM_SETCURSOR).
inline constexpr unsigned HTNOWHERE = 0, HTCLIENT = 1;

// What a scroll bar asks for.
inline constexpr unsigned SB_LINEUP = 0, SB_LINEDOWN = 1, SB_PAGEUP = 2, SB_PAGEDOWN = 3,
                          SB_THUMBPOSITION = 4, SB_THUMBTRACK = 5, SB_TOP = 6, SB_BOTTOM = 7,
                          SB_ENDSCROLL = 8;
inline constexpr int SB_HORZ = 0, SB_VERT = 1;

inline constexpr int WHEEL_DELTA = 120;

/// Signed halves of a message parameter: mouse coordinates.
constexpr int GET_X_LPARAM(LPARAM p) { return static_cast<std::int16_t>(p & 0xFFFF); }
constexpr int GET_Y_LPARAM(LPARAM p) { return static_cast<std::int16_t>(p >> 16 & 0xFFFF); }
constexpr LPARAM MAKELPARAM(int low, int high)
{
    return static_cast<LPARAM>(static_cast<std::uint32_t>(low & 0xFFFF) |
                               static_cast<std::uint32_t>(high & 0xFFFF) << 16);
}
constexpr unsigned LOWORD(WPARAM p) { return static_cast<unsigned>(p & 0xFFFF); }
constexpr unsigned HIWORD(WPARAM p) { return static_cast<unsigned>(p >> 16 & 0xFFFF); }

/// Takes the next message, waiting for one; paints, timers and other windows of the toolkit run
/// meanwhile. Returns 0 when the program ends. A loop that holds the capture has to test after each
/// call, and after each DispatchMessage, that its window lives and still has the capture.
PAVANE_API int GetMessage(MSG& message);
/// The same without waiting: 0 when there is none.
PAVANE_API int PeekMessage(MSG& message);
/// Hands a message to its window; input for a control goes on to the control.
PAVANE_API LRESULT DispatchMessage(const MSG& message);
/// Puts a message behind those that wait; non-zero when the window exists.
PAVANE_API int PostMessage(HWND window, unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);
/// Calls the window's procedure at once; 0 when it does not exist.
PAVANE_API LRESULT SendMessage(HWND window, unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);
/// Ends every loop, with `code` as the result of RunMessages.
PAVANE_API void PostQuitMessage(int code);
/// The program's main loop; returns the code of PostQuitMessage.
PAVANE_API int RunMessages();

/// High bit set (value below 0) while the key is held. Only keys VK_SHIFT, VK_CONTROL, VK_MENU and
/// the mouse buttons are known.
PAVANE_API short GetKeyState(int key);
/// For tests: what GetKeyState reports, MK_SHIFT | MK_CONTROL | 0x20 (Alt); -1 for the real keys.
PAVANE_API void SetKeyStateOverride(int modifiers);
/// For tests: GetMessage answers WM_CANCELMODE after so many ms without a message; 0 waits for
/// ever.
PAVANE_API void SetMessageWatchdog(int milliseconds);

/// Screen coordinates.
PAVANE_API CPoint GetCursorPos();
PAVANE_API void SetCursorPos(CPoint screen);

}  // namespace pavane

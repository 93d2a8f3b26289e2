#include "platform/qt/input.h"

#include "platform/qt/cursors.h"
#include "platform/qt/keys.h"

#include <utility>

namespace pavane
{

namespace
{

bool rightPressTaken = false;

struct ButtonMessages {
    Qt::MouseButton button;
    unsigned down, up, twice;
};

constexpr ButtonMessages buttonMessages[] = {
    {Qt::LeftButton, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK},
    {Qt::RightButton, WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK},
    {Qt::MiddleButton, WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK}};

unsigned mouseMessage(const WindowPeer& peer, const QMouseEvent& event)
{
    if (event.type() == QEvent::MouseMove)
        return WM_MOUSEMOVE;
    for (const ButtonMessages& known : buttonMessages) {
        if (known.button != event.button())
            continue;
        if (event.type() == QEvent::MouseButtonRelease)
            return known.up;
        const bool twice = event.type() == QEvent::MouseButtonDblClick && peer.wantsDoubleClicks;
        return twice ? known.twice : known.down;
    }
    return WM_NULL;
}

LPARAM screenPoint(QPointF p)
{
    const QPoint whole = p.toPoint();
    return MAKELPARAM(whole.x(), whole.y());
}

/// The wheel's turn across (true) or along, in WHEEL_DELTA a notch.
int turnOf(const QWheelEvent& event, bool across)
{
    // a turn to the right is positive in the message and negative in the event
    return across ? -event.angleDelta().x() : event.angleDelta().y();
}

MSG wheelMessage(const WindowPeer& peer, const QWheelEvent& event, bool across)
{
    MSG m;
    m.hwnd = peer.hwnd;
    m.message = across ? WM_MOUSEHWHEEL : WM_MOUSEWHEEL;
    m.wParam = heldFlags(event.buttons(), event.modifiers()) |
               (static_cast<WPARAM>(turnOf(event, across)) & 0xFFFF) << 16;
    m.lParam = screenPoint(event.globalPosition());
    m.pt = {GET_X_LPARAM(m.lParam), GET_Y_LPARAM(m.lParam)};
    return m;
}

unsigned dialogCode(HWND hwnd) { return static_cast<unsigned>(sendTo(hwnd, WM_GETDLGCODE, 0, 0)); }

bool isInDialog(const WindowPeer* peer)
{
    for (; peer && peer->window; peer = peerOf(peer->parent)) {
        if (peer->window->IsDialog())
            return true;
        if (peer->isTopLevel())
            return false;
    }
    return false;
}

}  // namespace

MSG inputMessage(const WindowPeer& peer, const QWidget* source, QEvent& event)
{
    MSG m;
    m.hwnd = peer.hwnd;
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: {
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        QPoint at = mouse.position().toPoint();
        if (source != peer.widget && source && peer.widget)
            at = peer.widget->mapFromGlobal(source->mapToGlobal(at));
        m.message = mouseMessage(peer, mouse);
        m.wParam = heldFlags(mouse.buttons(), mouse.modifiers());
        m.lParam = MAKELPARAM(at.x(), at.y());
        const QPoint global = mouse.globalPosition().toPoint();
        m.pt = {global.x(), global.y()};
        break;
    }
    case QEvent::Wheel: {
        const auto& wheel = static_cast<const QWheelEvent&>(event);
        return wheelMessage(peer, wheel, wheel.angleDelta().y() == 0);
    }
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto& key = static_cast<const QKeyEvent&>(event);
        m.message = event.type() == QEvent::KeyPress ? WM_KEYDOWN : WM_KEYUP;
        m.wParam = static_cast<WPARAM>(virtualKeyOf(key));
        constexpr LPARAM heldBefore = 1 << 30;
        m.lParam = 1 | (key.isAutoRepeat() ? heldBefore : 0);
        m.pt = GetCursorPos();
        break;
    }
    default:
        break;
    }
    return m;
}

void deliverMouse(HWND hwnd, const QWidget* source, QMouseEvent& event)
{
    const WindowPeer* peer = peerOf(hwnd);
    if (!peer)
        return;
    const MSG m = inputMessage(*peer, source, event);
    if (m.message == WM_NULL)
        return;
    if (m.message == WM_RBUTTONDOWN)
        takeRightPress(false);
    pointerIsOver(hwnd);
    if (!CWnd::GetCapture())
        sendTo(hwnd, WM_SETCURSOR, hwnd,
               MAKELPARAM(static_cast<int>(HTCLIENT), static_cast<int>(m.message)));
    sendTo(hwnd, m.message, m.wParam, m.lParam);
}

void deliverWheel(HWND hwnd, QWheelEvent& event)
{
    for (const bool across : {false, true}) {
        const WindowPeer* const peer = peerOf(hwnd);
        if (!peer || turnOf(event, across) == 0)
            continue;
        const MSG m = wheelMessage(*peer, event, across);
        sendTo(hwnd, m.message, m.wParam, m.lParam);
    }
}

void deliverKey(HWND hwnd, QKeyEvent& event)
{
    const WindowPeer* const peer = peerOf(hwnd);
    if (!peer)
        return;
    const MSG m = inputMessage(*peer, nullptr, event);
    const bool isDown = event.type() == QEvent::KeyPress;
    const QString text = isDown ? event.text() : QString();
    // a key that is held goes down again and again, and up once
    if (m.wParam != 0 && (isDown || !event.isAutoRepeat()))
        sendTo(hwnd, m.message, m.wParam, m.lParam);
    for (const uint c : text.toUcs4())
        sendTo(hwnd, WM_CHAR, c, m.lParam);
    const bool asksForMenu = m.wParam == WPARAM{VK_APPS} ||
                             (m.wParam == WPARAM{VK_F10} && event.modifiers() == Qt::ShiftModifier);
    if (isDown && asksForMenu)
        sendTo(hwnd, WM_CONTEXTMENU, hwnd, MAKELPARAM(-1, -1));
}

void deliverContextMenu(HWND hwnd, QContextMenuEvent& event)
{
    // that of the mouse follows the release of its button; not every display has one for the key,
    // so that one follows the key itself
    if (event.reason() == QContextMenuEvent::Other)
        sendTo(hwnd, WM_CONTEXTMENU, hwnd, MAKELPARAM(-1, -1));
}

bool wantsAllKeys(HWND hwnd) { return dialogCode(hwnd) & DLGC_WANTALLKEYS; }

bool isAccessKey(const QKeyEvent& event)
{
    const int key = event.key();
    return event.modifiers() == Qt::AltModifier &&
           ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9));
}

bool isDialogKey(HWND hwnd, const QKeyEvent& event)
{
    const int key = event.key();
    const bool isTab = key == Qt::Key_Tab || key == Qt::Key_Backtab;
    const bool ends = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
    if ((!isTab && !ends) || !isInDialog(peerOf(hwnd)))
        return false;
    const unsigned wanted = DLGC_WANTALLKEYS | (isTab ? DLGC_WANTTAB : 0);
    return !(dialogCode(hwnd) & wanted);
}

void takeRightPress(bool taken) { rightPressTaken = taken; }

bool wasRightPressTaken() { return std::exchange(rightPressTaken, false); }

}  // namespace pavane

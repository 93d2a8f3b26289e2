#include "platform/qt/focus.h"

#include "platform/qt/WindowPeer.h"

#include <QApplication>
#include <utility>

namespace pavane
{

namespace
{

/// Asked for while the window's top-level is not active; activation takes its time.
HWND pendingFocus = 0;
HWND lastFocus = 0;

HWND handleOf(const QWidget* widget)
{
    const WindowPeer* const peer = peerOf(widget);
    return peer ? peer->hwnd : 0;
}

}  // namespace

bool isFocusChange(const QFocusEvent& event)
{
    return event.reason() != Qt::PopupFocusReason && event.reason() != Qt::MenuBarFocusReason;
}

void settleFocus() { pendingFocus = 0; }

void focusChanged(HWND hwnd, QFocusEvent& event)
{
    if (!isFocusChange(event))
        return;
    if (event.gotFocus()) {
        sendTo(hwnd, WM_SETFOCUS, std::exchange(lastFocus, 0), 0);
        return;
    }
    lastFocus = hwnd;
    const HWND next = handleOf(QApplication::focusWidget());
    sendTo(hwnd, WM_KILLFOCUS, next == hwnd ? 0 : next, 0);
}

void giveFocusAway(HWND hwnd)
{
    const WindowPeer* const peer = peerOf(hwnd);
    QWidget* const outer = peer ? peer->outer() : nullptr;
    if (pendingFocus == hwnd)
        pendingFocus = 0;
    if (!outer || peer->isTopLevel())
        return;
    const QWidget* const focus = outer->window()->focusWidget();
    if (!focus || (focus != outer && !outer->isAncestorOf(focus)))
        return;
    if (WindowPeer* const parent = peerOf(peer->parent); parent && parent->widget)
        parent->widget->setFocus(Qt::OtherFocusReason);
}

CWnd* CWnd::SetFocus()
{
    WindowPeer* const peer = peerOf(this);
    if (!peer || !peer->widget)
        return nullptr;
    const HWND before = GetFocus() ? GetFocus()->GetSafeHwnd() : 0;
    QWidget* const top = peer->widget->window();
    const bool isActive = top->isActiveWindow();
    pendingFocus = isActive ? 0 : hwnd_;
    if (!isActive && top->isVisible())
        top->activateWindow();
    // else the toolkit marks the focus only where its own Tab key has brought it
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        top->setAttribute(Qt::WA_KeyboardFocusChange);
    peer->widget->setFocus(Qt::OtherFocusReason);
    return FromHandle(before);
}

CWnd* CWnd::GetFocus()
{
    if (peerOf(pendingFocus))
        return FromHandle(pendingFocus);
    const WindowPeer* const peer = peerOf(QApplication::focusWidget());
    return peer ? peer->window : nullptr;
}

void reactivate(HWND top)
{
    const WindowPeer* const peer = peerOf(top);
    if (peer && peer->outer() && peer->outer()->isVisible() && !QApplication::activeWindow())
        peer->outer()->window()->activateWindow();
}

}  // namespace pavane

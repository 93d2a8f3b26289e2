#include "platform/qt/InputFilter.h"

#include "platform/qt/capture.h"
#include "platform/qt/input.h"
#include "platform/qt/look.h"
#include "platform/qt/message_queue.h"
#include "platform/qt/message_scope.h"
#include "platform/qt/painting.h"
#include "platform/qt/WindowPeer.h"

#include <QApplication>
#include <QWindow>

namespace pavane
{

namespace
{

bool isMouse(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return true;
    default:
        return false;
    }
}

/// The captured window when this mouse event of another widget belongs to it.
HWND redirected(const QWidget* widget, const QEvent& event)
{
    const HWND captured = captureWindow();
    const WindowPeer* const peer = peerOf(captured);
    if (!peer || peer->widget == widget || !isMouse(event) || QApplication::activePopupWidget())
        return 0;
    // a dialog in front has its own input
    const QWidget* const modal = QApplication::activeModalWidget();
    return modal && modal != peer->outer()->window() ? 0 : captured;
}

HWND topLevelOf(const WindowPeer* peer)
{
    while (peer && !peer->isTopLevel())
        peer = peerOf(peer->parent);
    return peer ? peer->hwnd : 0;
}

bool isSwallowed(const WindowPeer& peer, const QWidget* widget, QEvent& event)
{
    const WindowPeer* const top = peerOf(topLevelOf(&peer));
    if (!top || !top->window)
        return false;
    const MSG m = inputMessage(peer, widget, event);
    return m.message != WM_NULL && top->window->PreTranslateMessage(m);
}

/// A dialog opened: the toolkit forgets the pressed button, so the drag would never end.
void windowBlocked(const QObject* receiver)
{
    const WindowPeer* const peer = peerOf(captureWindow());
    if (peer && peer->outer() && peer->outer()->window()->windowHandle() == receiver)
        cancelCapture();
}

}  // namespace

bool InputFilter::filterInput(QWidget* widget, QEvent* event)
{
    if (isHandedOut(event))
        return false;
    const HWND other = redirected(widget, *event);
    if (isLoopWaiting()) {
        queueInput(widget, *event, other);
        event->accept();
        return true;
    }
    if (other) {
        event->accept();
        deliverMouse(other, widget, *static_cast<QMouseEvent*>(event));
        return true;
    }
    const WindowPeer* const peer = peerOf(widget);
    if (peer && isSwallowed(*peer, widget, *event)) {
        event->accept();
        return true;
    }
    return false;
}

bool InputFilter::eventFilter(QObject* receiver, QEvent* event)
{
    if (isHeldBack(receiver, *event))
        return true;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return receiver->isWidgetType() && filterInput(static_cast<QWidget*>(receiver), event);
    case QEvent::ShortcutOverride:
        // in a loop every key is a message, none a short cut
        if (!receiver->isWidgetType() || !isLoopWaiting())
            return false;
        event->accept();
        return true;
    case QEvent::ContextMenu:
        return receiver->isWidgetType() && isLoopWaiting();
    case QEvent::Expose:
    case QEvent::UpdateRequest:
        runPendingPaints();
        return false;
    case QEvent::WindowBlocked:
        windowBlocked(receiver);
        return false;
    case QEvent::ApplicationPaletteChange:
        // posted, so that widgets have the new colours when windows paint
        if (receiver == QCoreApplication::instance())
            QMetaObject::invokeMethod(this, tellOfColors, Qt::QueuedConnection);
        return false;
    case QEvent::Quit:
        if (receiver == QCoreApplication::instance())
            noteQuit(0);
        return false;
    default:
        return false;
    }
}

}  // namespace pavane

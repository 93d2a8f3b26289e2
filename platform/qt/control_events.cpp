#include "platform/qt/ControlWidget.h"
#include "platform/qt/focus.h"
#include "platform/qt/input.h"
#include "platform/qt/WindowPeer.h"

#include <QAbstractItemView>
#include <QComboBox>

namespace pavane
{

namespace
{

using Native = std::function<bool(QEvent*)>;

/// Runs a message whose usual effect is the control's own. A handler that does not ask for it
/// swallows the event.
bool offered(const MSG& m, QEvent* event, const Native& native)
{
    bool defaulted = false;
    bool result = true;
    sendTo(
        m.hwnd, m.message, m.wParam, m.lParam, [&] { return LRESULT{result = native(event)}; },
        &defaulted);
    if (!defaulted)
        event->accept();
    return result;
}

bool keyEvent(const MSG& m, QKeyEvent* key, const Native& native)
{
    const QString text = key->type() == QEvent::KeyPress ? key->text() : QString();
    if (text.isEmpty())
        return offered(m, key, native);
    // the character is a message of its own, inside what the key does
    MSG character = m;
    character.message = WM_CHAR;
    character.wParam = text.toUcs4().value(0);
    return offered(m, key, [&](QEvent* event) { return offered(character, event, native); });
}

bool isOwnKey(const QKeyEvent& key)
{
    switch (key.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

/// While its list shows, a combo box still has the focus.
bool showsList(const QWidget* widget)
{
    const auto* const combo = qobject_cast<const QComboBox*>(widget);
    return combo && const_cast<QComboBox*>(combo)->view()->isVisible();
}

}  // namespace

bool controlEvent(QWidget* widget, QEvent* event, const Native& native)
{
    const WindowPeer* const peer = peerOf(widget);
    if (!peer || peer->widget != widget || !peer->window)
        return native(event);
    const HWND hwnd = peer->hwnd;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (!isOwnKey(*static_cast<QKeyEvent*>(event)) && !wantsAllKeys(hwnd))
            return native(event);
        event->accept();
        return true;
    case QEvent::FocusIn:
    case QEvent::FocusOut: {
        const bool result = native(event);
        if (!showsList(widget))
            focusChanged(hwnd, *static_cast<QFocusEvent*>(event));
        return result;
    }
    case QEvent::Leave: {
        const bool result = native(event);
        sendTo(hwnd, WM_MOUSELEAVE, 0, 0);
        return result;
    }
    case QEvent::ContextMenu: {
        const QPoint at = static_cast<QContextMenuEvent*>(event)->globalPos();
        MSG m;
        m.hwnd = hwnd;
        m.message = WM_CONTEXTMENU;
        m.wParam = hwnd;
        m.lParam = MAKELPARAM(at.x(), at.y());
        return offered(m, event, native);
    }
    default:
        break;
    }
    const MSG m = inputMessage(*peer, widget, *event);
    if (m.message == WM_NULL)
        return native(event);
    if (m.message == WM_KEYDOWN || m.message == WM_KEYUP)
        return keyEvent(m, static_cast<QKeyEvent*>(event), native);
    return offered(m, event, native);
}

}  // namespace pavane

#include "platform/qt/message_scope.h"

#include "platform/qt/message_queue.h"
#include "platform/qt/painting.h"

#include <memory>
#include <QCoreApplication>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

struct Held {
    QPointer<QObject> receiver;
    std::unique_ptr<QEvent> event;
};

HWND onlyWindow = 0;
std::vector<Held>& held()
{
    static auto* const events = new std::vector<Held>;
    return *events;
}

bool isOfOnly(const QWidget* widget)
{
    const WindowPeer* const peer = widget ? peerOf(widget->window()) : nullptr;
    return peer && peer->hwnd == onlyWindow;
}

void releaseHeld()
{
    for (Held& one : std::exchange(held(), {}))
        if (one.receiver)
            QCoreApplication::postEvent(one.receiver, one.event.release());
    postPendingPaints();
    wakeQueue();
}

}  // namespace

MessageScope::MessageScope(HWND only) : before_(std::exchange(onlyWindow, only)) {}

MessageScope::~MessageScope()
{
    onlyWindow = before_;
    if (!onlyWindow)
        releaseHeld();
}

bool isHeard(HWND hwnd)
{
    if (!onlyWindow)
        return true;
    const WindowPeer* const peer = peerOf(hwnd);
    return peer && isOfOnly(peer->widget);
}

bool isHeard(const MSG& message)
{
    return isHeard(message.hwnd) || (message.input && isOfOnly(message.input->target));
}

bool isHeldBack(QObject* receiver, QEvent& event)
{
    if (!onlyWindow || !receiver->isWidgetType() || isOfOnly(static_cast<QWidget*>(receiver)))
        return false;
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
        event.accept();
        return true;
    case QEvent::Close:
        event.ignore();
        return true;
    case QEvent::Resize:
        held().push_back({receiver, std::unique_ptr<QEvent>(event.clone())});
        return true;
    default:
        return false;
    }
}

}  // namespace pavane

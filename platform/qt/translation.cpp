#include "platform/qt/translation.h"

#include "platform/message_translator.h"
#include "platform/qt/input.h"
#include "platform/qt/message_queue.h"
#include "platform/qt/WindowPeer.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <utility>

namespace pavane
{

namespace
{

bool offer(const QWidget* widget, QEvent& event)
{
    const WindowPeer* const peer = peerOf(widget);
    static const auto* const nobody = new WindowPeer;
    const MSG message = inputMessage(peer ? *peer : *nobody, widget, event);
    return message.message != WM_NULL && OfferToTranslator(message);
}

InputTranslation* translation = nullptr;

quint64 timeOf(const QEvent& event) { return static_cast<const QInputEvent&>(event).timestamp(); }

}  // namespace

bool InputTranslation::travelsOn(QWidget* widget, const QEvent& event)
{
    Seen& seen = event.type() == QEvent::ShortcutOverride ? lastQuestion_ : last_;
    const Seen before = std::exchange(seen, Seen{widget, event.type(), timeOf(event)});
    return before.widget && before.widget != widget && before.type == seen.type &&
           before.time == seen.time && widget->isAncestorOf(before.widget);
}

bool InputTranslation::swallows(QWidget* widget, QEvent& event)
{
    if (travelsOn(widget, event))
        return false;
    if (event.type() == QEvent::KeyPress) {
        const auto before = std::exchange(asked_, {});
        if (before.key != 0 && before.key == static_cast<const QKeyEvent&>(event).key() &&
            before.time == timeOf(event))
            return before.isSwallowed;
    }
    return offer(widget, event);
}

bool InputTranslation::swallowsShortcut(QWidget* widget, QEvent& event)
{
    if (travelsOn(widget, event))
        return asked_.isSwallowed;
    const auto& question = static_cast<const QKeyEvent&>(event);
    QKeyEvent press(QEvent::KeyPress, question.key(), question.modifiers(),
                    question.nativeScanCode(), question.nativeVirtualKey(),
                    question.nativeModifiers(), question.text(), question.isAutoRepeat());
    const bool isSwallowed = offer(widget, press);
    asked_ = {question.key(), timeOf(event), isSwallowed};
    return isSwallowed;
}

bool InputTranslation::eventFilter(QObject* receiver, QEvent* event)
{
    if (!receiver->isWidgetType())
        return false;
    auto* const widget = static_cast<QWidget*>(receiver);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        // what a loop hands out was offered when it came
        if (isHandedOut(event) || !swallows(widget, *event))
            return false;
        break;
    case QEvent::ShortcutOverride:
        if (!swallowsShortcut(widget, *event))
            return false;
        break;
    default:
        return false;
    }
    event->accept();
    return true;
}

void startTranslation()
{
    translation = new InputTranslation;
    raiseTranslation();
}

void stopTranslation() { delete std::exchange(translation, nullptr); }

void raiseTranslation()
{
    if (translation)
        QCoreApplication::instance()->installEventFilter(translation);
}

}  // namespace pavane

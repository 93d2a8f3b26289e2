#pragma once

#include "platform/messages.h"

#include <memory>
#include <QEvent>
#include <QPointer>
#include <QWidget>

namespace pavane
{

/// An event of the toolkit that waits as a message.
struct InputEvent {
    QPointer<QWidget> target;
    std::unique_ptr<QEvent> event;
};

/// Whether GetMessage waits right here: not in a loop of the toolkit that was started since.
bool isLoopWaiting();
/// Whether DispatchMessage is handing out this event, which then goes its usual way.
bool isHandedOut(const QEvent* event);
/// Puts an input event behind the messages that wait. With `captured` it is that window's and not
/// the widget's.
void queueInput(QWidget* widget, const QEvent& event, HWND captured);
/// The program is to end.
void noteQuit(int code);
/// Drops everything; for the end of the platform.
void clearQueue();
/// Lets what waits be handed out by the loop that comes next.
void wakeQueue();
/// Makes the object that empties the queue when no GetMessage does; needs the application.
void startQueue();
void stopQueue();

}  // namespace pavane

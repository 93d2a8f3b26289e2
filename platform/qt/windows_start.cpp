#include "platform/qt/access.h"
#include "platform/qt/cursors.h"
#include "platform/qt/focus.h"
#include "platform/qt/InputFilter.h"
#include "platform/qt/message_queue.h"
#include "platform/qt/translation.h"
#include "platform/qt/WindowPeer.h"

#include <QApplication>

namespace pavane
{

namespace
{

InputFilter* filter = nullptr;

}  // namespace

void startWindows()
{
    if (filter)
        return;
    filter = new InputFilter;
    QCoreApplication::instance()->installEventFilter(filter);
    QObject::connect(qApp, &QApplication::focusChanged, filter, [](QWidget*, QWidget* now) {
        if (now)
            settleFocus();
    });
    startTranslation();
    startQueue();
    QAccessible::installFactory(accessFactory);
}

void stopWindows()
{
    if (!filter)
        return;
    for (const HWND hwnd : allWindows())
        destroyPeer(hwnd);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    stopQueue();
    stopTranslation();
    QAccessible::removeFactory(accessFactory);
    forgetCursors();
    delete filter;
    filter = nullptr;
}

}  // namespace pavane

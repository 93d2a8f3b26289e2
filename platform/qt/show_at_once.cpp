#include "platform/show_at_once.h"

#include "platform/qt/painting.h"
#include "platform/qt/WindowPeer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QWindow>

namespace pavane
{

namespace
{

bool isOnScreen(HWND hwnd)
{
    const WindowPeer* const peer = peerOf(hwnd);
    const QWidget* const widget = peer ? peer->widget.data() : nullptr;
    const QWindow* const native = widget ? widget->window()->windowHandle() : nullptr;
    return native && native->isExposed();
}

}  // namespace

int ShowAtOnce(CWnd& window, int milliseconds)
{
    constexpr int step = 10;
    const HWND hwnd = window.GetSafeHwnd();
    window.ShowWindow(SW_SHOW);
    QElapsedTimer timer;
    timer.start();
    while (peerOf(hwnd) && !isOnScreen(hwnd) && timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, step);
    runPaint(hwnd, true);
    // what was painted goes to the window system with the next turn of its events
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return peerOf(hwnd) && isOnScreen(hwnd);
}

}  // namespace pavane

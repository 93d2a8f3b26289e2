#include "platform/qt/focus.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/WindowPeer.h"

namespace pavane
{

namespace
{

QWidget* topOf(const CWnd* window)
{
    const WindowPeer* const peer = peerOf(window);
    QWidget* const outer = peer ? peer->outer() : nullptr;
    return outer && outer->isWindow() ? outer : nullptr;
}

void showTop(QWidget& top, int command)
{
    switch (command) {
    case SW_SHOWMINIMIZED:
    case SW_MINIMIZE:
        top.showMinimized();
        break;
    case SW_SHOWMAXIMIZED:
        top.showMaximized();
        break;
    case SW_SHOWNORMAL:
    case SW_RESTORE:
        top.showNormal();
        break;
    default:
        top.show();
        break;
    }
    if (command != SW_SHOWMINIMIZED && command != SW_MINIMIZE) {
        top.raise();
        top.activateWindow();
    }
}

}  // namespace

int CWnd::ShowWindow(int command)
{
    const HWND hwnd = hwnd_;
    WindowPeer* peer = peerOf(this);
    if (!peer || !peer->outer())
        return 0;
    const bool was = peer->outer()->isVisible();
    const bool show = command != SW_HIDE;
    peer->style = show ? peer->style | WS_VISIBLE : peer->style & ~WS_VISIBLE;
    if (was != show)
        sendTo(hwnd, WM_SHOWWINDOW, show, 0);
    if (!show)
        giveFocusAway(hwnd);
    peer = peerOf(hwnd);
    if (!peer || !peer->outer())
        return was;
    QWidget* const outer = peer->outer();
    if (!show) {
        outer->hide();
    } else if (outer->isWindow()) {
        const bool goesBackToMaximized = command == SW_RESTORE && outer->isMinimized() &&
                                         peer->frame && peer->frame->isOrWasMaximized();
        if (peer->frame)
            peer->frame->keepPlace();
        showTop(*outer, goesBackToMaximized ? SW_SHOWMAXIMIZED : command);
    } else {
        outer->show();
    }
    return was;
}

int CWnd::GetWindowPlacement(WINDOWPLACEMENT& placement) const
{
    placement = WINDOWPLACEMENT();
    const QWidget* const top = topOf(this);
    if (!top)
        return 0;
    const Qt::WindowStates state = top->windowState();
    const FrameWidget* const frame = peerOf(this)->frame;
    const QRect normal = frame                        ? frame->normalRect()
                         : state == Qt::WindowNoState ? top->geometry()
                                                      : top->normalGeometry();
    placement.rcNormalPosition = CRect(normal.left(), normal.top(), normal.left() + normal.width(),
                                       normal.top() + normal.height());
    if (state & Qt::WindowMinimized) {
        placement.showCmd = SW_SHOWMINIMIZED;
        placement.flags = frame && frame->isOrWasMaximized() ? WPF_RESTORETOMAXIMIZED : 0;
    } else if (state & Qt::WindowMaximized) {
        placement.showCmd = SW_SHOWMAXIMIZED;
    }
    return 1;
}

int CWnd::SetWindowPlacement(const WINDOWPLACEMENT& placement)
{
    QWidget* const top = topOf(this);
    if (!top || placement.rcNormalPosition.IsRectEmpty())
        return 0;
    const HWND hwnd = hwnd_;
    // a maximised window would forget the rectangle
    if (top->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized))
        top->setWindowState(Qt::WindowNoState);
    if (!peerOf(hwnd))
        return 1;
    MoveWindow(placement.rcNormalPosition);
    const auto command = static_cast<int>(placement.showCmd);
    if (!peerOf(hwnd))
        return 1;
    if (command == SW_SHOWMINIMIZED && placement.flags & WPF_RESTORETOMAXIMIZED)
        ShowWindow(SW_SHOWMAXIMIZED);
    if (CWnd* const window = FromHandle(hwnd))
        window->ShowWindow(command);
    return 1;
}

int CWnd::IsIconic() const
{
    const QWidget* const top = topOf(this);
    return top && top->isMinimized();
}

int CWnd::IsZoomed() const
{
    const QWidget* const top = topOf(this);
    return top && top->isMaximized() && !top->isMinimized();
}

}  // namespace pavane

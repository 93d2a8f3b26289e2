#include "platform/qt/HostWidget.h"

#include "platform/qt/Control.h"
#include "platform/qt/drop_files.h"
#include "platform/qt/focus.h"
#include "platform/qt/FrameWidget.h"
#include "platform/qt/input.h"
#include "platform/qt/PainterDevice.h"
#include "platform/qt/painting.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <cmath>
#include <QDropEvent>
#include <QHelpEvent>
#include <QImage>
#include <QInputEvent>
#include <QMoveEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QToolTip>

namespace pavane
{

namespace
{

/// Rows of pixels that the toolkit paints without dividing them among threads.
constexpr int fewRows = 64;

}  // namespace

int pixelRatioOf(const QWidget* widget)
{
    constexpr double tolerance = 1e-3;
    constexpr double greatest = 8;
    const double ratio = widget ? widget->devicePixelRatio() : 1.0;
    return static_cast<int>(std::clamp(std::ceil(ratio - tolerance), 1.0, greatest));
}

HostWidget::HostWidget(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
}

void HostWidget::syncSize()
{
    WindowPeer* const peer = peerOf(hwnd_);
    if (!peer || !peer->surface)
        return;
    const int ratio = pixelRatioOf(this);
    WindowSurface& surface = *peer->surface;
    if (surface.width() != width() || surface.height() != height() || surface.ratio() != ratio) {
        (void)surface.resize(width(), height(), ratio);  // without memory nothing is drawn
        schedulePaint(*peer);
    }
    if (!tellsSize_ || sent_ == size())
        return;
    sent_ = size();
    const QWidget* const top = peer->isTopLevel() ? window() : nullptr;
    const unsigned kind = top && top->isMaximized() ? SIZE_MAXIMIZED : SIZE_RESTORED;
    sendTo(hwnd_, WM_SIZE, kind, MAKELPARAM(width(), height()));
}

bool HostWidget::event(QEvent* e)
{
    WindowPeer* const peer = peerOf(hwnd_);
    // input for a disabled window is its parent's
    if (!peer || (!isEnabled() && dynamic_cast<QInputEvent*>(e)))
        return QWidget::event(e);
    if (e->type() == paintRequest()) {
        runPaint(hwnd_);
        return true;
    }
    switch (e->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        e->accept();
        deliverMouse(hwnd_, this, *static_cast<QMouseEvent*>(e));
        return true;
    case QEvent::Wheel:
        e->accept();
        deliverWheel(hwnd_, *static_cast<QWheelEvent*>(e));
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (isDialogKey(hwnd_, *static_cast<QKeyEvent*>(e)))
            return QWidget::event(e);
        e->accept();
        deliverKey(hwnd_, *static_cast<QKeyEvent*>(e));
        return true;
    case QEvent::ShortcutOverride:
        e->setAccepted(wantsAllKeys(hwnd_) && !isAccessKey(*static_cast<QKeyEvent*>(e)));
        return true;
    case QEvent::ContextMenu:
        e->accept();
        deliverContextMenu(hwnd_, *static_cast<QContextMenuEvent*>(e));
        return true;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        filesDragged(*this, hwnd_, *static_cast<QDropEvent*>(e));
        return true;
    case QEvent::Leave:
        sendTo(hwnd_, WM_MOUSELEAVE, 0, 0);
        return true;
    case QEvent::ToolTip:
        return showTip(e);
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        focusChanged(hwnd_, *static_cast<QFocusEvent*>(e));
        return true;
    case QEvent::Resize:
        syncSize();
        return true;
    case QEvent::Move:
        if (!peer->isTopLevel() && !peer->frame)
            sendTo(hwnd_, WM_MOVE, 0, MAKELPARAM(x(), y()));
        return true;
    case QEvent::Show:
        schedulePaint(*peer);
        return true;
    case QEvent::Hide:
        cancelCaptureWithin(hwnd_);
        return true;
    case QEvent::ScreenChangeInternal:
        syncSize();
        return QWidget::event(e);
    default:
        return QWidget::event(e);
    }
}

void HostWidget::paintEvent(QPaintEvent* e)
{
    WindowPeer* const peer = peerOf(hwnd_);
    QPainter painter(this);
    if (!peer || peer->surface->bits().empty()) {
        painter.fillRect(e->rect(), Qt::white);
        return;
    }
    const WindowSurface& surface = *peer->surface;
    const int ratio = surface.ratio();
    if (ratio != pixelRatioOf(this))
        QMetaObject::invokeMethod(
            this, [this] { syncSize(); }, Qt::QueuedConnection);
    QImage image(reinterpret_cast<const uchar*>(surface.bits().data()), surface.width() * ratio,
                 surface.height() * ratio, static_cast<qsizetype>(surface.width()) * ratio * 4,
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    if (std::fabs(devicePixelRatioF() - ratio) > 1e-3) {
        // one scaled picture, so that parts painted at different times fit together
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QPoint(0, 0), image);
        return;
    }
    // below a clip of several rectangles the toolkit gives rows to other threads when there are
    // many; waking them costs more than copying thin strips
    const int rows = e->region().rectCount() > 1 ? fewRows / ratio : height();
    for (const QRect& r : e->region()) {
        for (int top = r.top(); top <= r.bottom(); top += rows) {
            const QRect part(r.left(), top, r.width(), std::min(rows, r.bottom() - top + 1));
            painter.drawImage(part.topLeft(), image,
                              QRect(part.topLeft() * ratio, part.size() * ratio));
        }
    }
}

bool HostWidget::focusNextPrevChild(bool next)
{
    // also asked for the controls in this window, which did not want the key
    return !(hasFocus() && wantsAllKeys(hwnd_)) && QWidget::focusNextPrevChild(next);
}

bool HostWidget::showTip(QEvent* e)
{
    const auto help = static_cast<QHelpEvent*>(e);
    WindowPeer* const peer = peerOf(hwnd_);
    if (!peer || !peer->window)
        return true;
    const CString tip = peer->window->OnToolTip({help->x(), help->y()});
    if (tip.empty() || !peerOf(hwnd_))
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), tipText(tip), this);
    return true;
}

}  // namespace pavane

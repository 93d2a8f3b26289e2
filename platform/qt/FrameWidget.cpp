#include "platform/qt/FrameWidget.h"

#include "platform/qt/focus.h"
#include "platform/qt/HostWidget.h"
#include "platform/qt/input.h"
#include "platform/qt/WindowPeer.h"

#include <algorithm>
#include <QKeyEvent>
#include <QPainter>
#include <QWindowStateChangeEvent>

namespace pavane
{

FrameWidget::FrameWidget(QWidget* parent, Qt::WindowFlags flags, unsigned style, unsigned exStyle)
    : QWidget(parent, flags)
{
    // a top-level window has the border of its window manager
    if (!isWindow() && (style & WS_BORDER || exStyle & WS_EX_CLIENTEDGE))
        border_ = exStyle & WS_EX_CLIENTEDGE ? 2 : 1;
    constexpr int settlingTime = 250;
    settled_.setSingleShot(true);
    settled_.setInterval(settlingTime);
    connect(&settled_, &QTimer::timeout, this, [this] { keepPlace(); });
    if (style & WS_HSCROLL)
        makeBar(SB_HORZ);
    if (style & WS_VSCROLL)
        makeBar(SB_VERT);
}

void FrameWidget::setClient(HostWidget* client, HWND hwnd)
{
    client_ = client;
    hwnd_ = hwnd;
    client_->setVisible(true);  // with the frame
}

void FrameWidget::makeBar(int which)
{
    if (barState(which).widget)
        return;
    auto* const bar = new QScrollBar(which == SB_VERT ? Qt::Vertical : Qt::Horizontal, this);
    barState(which).widget = bar;
    bar->setFocusPolicy(Qt::NoFocus);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setVisible(true);
    connect(bar, &QScrollBar::actionTriggered, this,
            [this, which](int action) { barMoved(which, action); });
    connect(bar, &QScrollBar::sliderPressed, this,
            [this, which, bar] { barState(which).tracked = bar->value(); });
    connect(bar, &QScrollBar::sliderReleased, this,
            [this, which] { tellOfBar(which, SB_THUMBPOSITION, barState(which).tracked); });
}

void FrameWidget::setBarWanted(int which, bool on)
{
    barState(which).isWanted = on;
    showBar(barState(which));
}

void FrameWidget::setBarNeeded(int which, bool on)
{
    barState(which).isNeeded = on;
    showBar(barState(which));
}

void FrameWidget::showBar(const Bar& bar)
{
    const bool shows = bar.isWanted && bar.isNeeded;
    if (!bar.widget || bar.widget->isHidden() != shows)
        return;
    bar.widget->setVisible(shows);
    layOut();
}

/// The bar moves only when the window sets it: the window may refuse, or round to whole lines.
void FrameWidget::barMoved(int which, int action)
{
    QScrollBar* const bar = this->bar(which);
    const int asked = bar->sliderPosition();
    bar->setSliderPosition(bar->value());
    unsigned code = SB_THUMBTRACK;
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        code = SB_LINEDOWN;
        break;
    case QAbstractSlider::SliderSingleStepSub:
        code = SB_LINEUP;
        break;
    case QAbstractSlider::SliderPageStepAdd:
        code = SB_PAGEDOWN;
        break;
    case QAbstractSlider::SliderPageStepSub:
        code = SB_PAGEUP;
        break;
    case QAbstractSlider::SliderToMinimum:
        code = SB_TOP;
        break;
    case QAbstractSlider::SliderToMaximum:
        code = SB_BOTTOM;
        break;
    default:
        barState(which).tracked = asked;
        break;
    }
    tellOfBar(which, code, asked);
}

/// The position goes as a whole in the second parameter, too.
void FrameWidget::tellOfBar(int which, unsigned code, int position)
{
    sendTo(hwnd_, which == SB_VERT ? WM_VSCROLL : WM_HSCROLL,
           code | (static_cast<WPARAM>(position) & 0xFFFF) << 16, position);
}

void FrameWidget::setMenuBar(QWidget* bar)
{
    if (menuBar_ && menuBar_ != bar)
        menuBar_->deleteLater();
    menuBar_ = bar;
    if (bar) {
        bar->setParent(this);
        bar->show();
    }
    layOut();
}

int FrameWidget::menuHeight() const { return menuBar_ ? menuBar_->sizeHint().height() : 0; }

QSize FrameWidget::sizeAround(QSize client) const
{
    const int across = isShown(1) ? bars_[1].widget->sizeHint().width() : 0;
    const int down = isShown(0) ? bars_[0].widget->sizeHint().height() : 0;
    return client + QSize(2 * border_ + across, 2 * border_ + down + menuHeight());
}

void FrameWidget::keepPlace()
{
    if (windowState() == Qt::WindowNoState)
        normal_ = geometry();
    if (!isMinimized())
        wasMaximized_ = isMaximized();
}

/// Deliberate: not the toolkit's own. Window managers tell of a new state and of a new place in any
/// order and in steps, and the toolkit then takes the maximised place for the normal one.
QRect FrameWidget::normalRect() const
{
    if (windowState() == Qt::WindowNoState)
        return geometry();
    return normal_.isValid() ? normal_ : normalGeometry();
}

void FrameWidget::layOut()
{
    QRect inside = rect().adjusted(border_, border_, -border_, -border_);
    if (menuBar_) {
        menuBar_->setGeometry(0, 0, width(), menuHeight());
        inside.setTop(menuHeight());
    }
    const bool across = isShown(0);
    const bool down = isShown(1);
    const int thickX = down ? bars_[1].widget->sizeHint().width() : 0;
    const int thickY = across ? bars_[0].widget->sizeHint().height() : 0;
    const QRect area(inside.left(), inside.top(), std::max(0, inside.width() - thickX),
                     std::max(0, inside.height() - thickY));
    if (across)
        bars_[0].widget->setGeometry(area.left(), area.bottom() + 1, area.width(), thickY);
    if (down)
        bars_[1].widget->setGeometry(area.right() + 1, area.top(), thickX, area.height());
    if (!client_)
        return;
    client_->setGeometry(area);
    client_->syncSize();
}

bool FrameWidget::event(QEvent* e)
{
    if (!peerOf(hwnd_))
        return QWidget::event(e);
    const bool changes = e->type() == QEvent::Resize || e->type() == QEvent::Move ||
                         e->type() == QEvent::WindowStateChange;
    if (changes && isWindow())
        settled_.start();
    switch (e->type()) {
    case QEvent::Resize:
    case QEvent::LayoutRequest:
        layOut();
        return true;
    case QEvent::Move:
        sendTo(hwnd_, WM_MOVE, 0, MAKELPARAM(x(), y()));
        return true;
    case QEvent::Close:
        e->ignore();
        sendTo(hwnd_, WM_CLOSE, 0, 0);
        return true;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        if (isWindow()) {
            const bool on = e->type() == QEvent::WindowActivate;
            if (on && !QWidget::focusWidget() && client_)
                client_->setFocus(Qt::ActiveWindowFocusReason);
            sendTo(hwnd_, WM_ACTIVATE, on ? 1 : 0, 0);
        }
        return QWidget::event(e);
    case QEvent::WindowStateChange:
        if (isMinimized())
            sendTo(hwnd_, WM_SIZE, SIZE_MINIMIZED, 0);
        else if (static_cast<QWindowStateChangeEvent*>(e)->oldState() & Qt::WindowMinimized)
            sendTo(hwnd_, WM_SIZE, isMaximized() ? SIZE_MAXIMIZED : SIZE_RESTORED,
                   MAKELPARAM(client_->width(), client_->height()));
        return QWidget::event(e);
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        // nobody has the focus
        if (!isWindow())
            break;
        e->accept();
        deliverKey(hwnd_, *static_cast<QKeyEvent*>(e));
        return true;
    case QEvent::ContextMenu:
        return true;
    default:
        break;
    }
    return QWidget::event(e);
}

void FrameWidget::paintEvent(QPaintEvent*)
{
    if (border_ == 0)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Dark));
    for (int i = 0; i < border_; ++i)
        painter.drawRect(rect().adjusted(i, i, -i - 1, -i - 1));
}

int setMenuBarWidget(HWND hwnd, QWidget* bar)
{
    WindowPeer* const peer = peerOf(hwnd);
    if (!peer || !peer->frame || !peer->frame->isWindow())
        return 0;
    peer->frame->setMenuBar(bar);
    return 1;
}

QWidget* menuBarWidget(HWND hwnd)
{
    WindowPeer* const peer = peerOf(hwnd);
    return peer && peer->frame ? peer->frame->menuBar() : nullptr;
}

}  // namespace pavane

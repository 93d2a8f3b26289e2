#include "platform/qt/BarWidget.h"

#include "platform/qt/fonts.h"
#include "platform/qt/glyphs.h"

#include <algorithm>
#include <QFrame>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace pavane
{

namespace
{

constexpr int buttonPadding = 8;  ///< around the icon, both sides together
constexpr int edge = 2;           ///< around the rows
constexpr int separatorWidth = 9;
constexpr int controlMargin = 3;  ///< at each side of a control
constexpr int arrowWidth = 12;
constexpr int smallestRow = 16 + buttonPadding;

}  // namespace

BarButton::BarButton(BarWidget* bar, const ToolButton& button)
    : QToolButton(bar), bar_(bar), id_(button.id), hasArrow_(button.dropDown != 0)
{
    const int icon = glyphSize(button.rowCount);
    setIcon(iconOf(button.rows, button.rowCount));
    setIconSize(QSize(icon, icon));
    setAutoRaise(true);
    setCheckable(button.checkable || button.group > 0);
    setTip(button.tip);
    // a click leaves the keyboard where it is; the first one is given the Tab key later
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(icon + buttonPadding + (hasArrow_ ? arrowWidth : 0), icon + buttonPadding);
    connect(this, &QToolButton::clicked, this, [this] { bar_->sendCommand(id_, 0); });
}

/// The style draws the button; picture and arrow are ours, because the style keeps each of its
/// arrows in a cache.
void BarButton::setTip(const CString& tip)
{
    if (tip == tip_)
        return;
    tip_ = tip;
    setToolTip(tipText(tip));
    setAccessibleName(textOf(tip));
}

void BarButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    option.icon = QIcon();
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
    const QRect picture(QPoint(buttonPadding / 2, buttonPadding / 2), iconSize());
    icon().paint(&painter, picture, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    if (!hasArrow_)
        return;
    const double x = width() - arrowWidth / 2.0 - 1;
    const double y = height() / 2.0 + 1;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    painter.drawPolygon(QPolygonF({{x - 3, y - 1.5}, {x + 3, y - 1.5}, {x, y + 2}}));
}

void BarButton::mousePressEvent(QMouseEvent* e)
{
    if (hasArrow_ && e->button() == Qt::LeftButton && e->pos().x() >= width() - arrowWidth)
        bar_->sendCommand(id_, TBN_DROPDOWN);
    else
        QToolButton::mousePressEvent(e);
}

void BarButton::keyPressEvent(QKeyEvent* e)
{
    constexpr int beyondAll = 1 << 20;
    switch (e->key()) {
    case Qt::Key_Left:
        return bar_->moveFocus(this, -1);
    case Qt::Key_Right:
        return bar_->moveFocus(this, 1);
    case Qt::Key_Home:
        return bar_->moveFocus(this, -beyondAll);
    case Qt::Key_End:
        return bar_->moveFocus(this, beyondAll);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return click();
    case Qt::Key_Down:
        if (hasArrow_)
            return bar_->sendCommand(id_, TBN_DROPDOWN);
        break;
    default:
        break;
    }
    QToolButton::keyPressEvent(e);
}

void BarButton::focusInEvent(QFocusEvent* e)
{
    bar_->setStop(this);
    QToolButton::focusInEvent(e);
}

void BarWidget::addButton(const ToolButton& button)
{
    auto* const made = new BarButton(this, button);
    if (button.group > 0) {
        QButtonGroup*& group = groups_[button.group];
        if (!group)
            group = new QButtonGroup(this);
        group->addButton(made);
    }
    buttons_.push_back(made);
    if (buttons_.size() == 1)
        setStop(made);
    add({made, 0, made->width()});
}

void BarWidget::addSeparator()
{
    auto* const line = new QFrame(this);
    line->setFrameStyle(static_cast<int>(QFrame::VLine) | static_cast<int>(QFrame::Plain));
    QPalette colors = line->palette();
    colors.setColor(QPalette::WindowText, colors.color(QPalette::Mid));
    line->setPalette(colors);
    add({line, 0, separatorWidth});
}

void BarWidget::addControl(HWND control, int width)
{
    add({nullptr, control, width + 2 * controlMargin});
}

void BarWidget::add(const Piece& piece)
{
    pieces_.push_back(piece);
    if (piece.widget)
        piece.widget->show();
    layOut(width(), true);
}

BarButton* BarWidget::button(unsigned id) const
{
    for (BarButton* button : buttons_)
        if (button->id() == id)
            return button;
    return nullptr;
}

int BarWidget::heightOf(const Piece& piece) const
{
    if (const WindowPeer* const peer = peerOf(piece.control))
        return peer->outer() ? peer->outer()->height() : 0;
    return dynamic_cast<BarButton*>(piece.widget) ? piece.widget->height() : 0;
}

int BarWidget::rowHeight() const
{
    int height = smallestRow;
    for (const Piece& piece : pieces_)
        height = std::max(height, heightOf(piece));
    return height;
}

void BarWidget::place(const Piece& piece, int x, int y, int height) const
{
    const int own = heightOf(piece);
    if (CWnd* const control = CWnd::FromHandle(piece.control)) {
        const int left = x + controlMargin;
        const int top = y + (height - own) / 2;
        control->MoveWindow({left, top, left + piece.width - 2 * controlMargin, top + own});
    } else if (own > 0) {
        piece.widget->move(x, y + (height - own) / 2);
    } else if (piece.widget) {
        piece.widget->setGeometry(x, y + 4, piece.width, height - 8);
    }
}

int BarWidget::layOut(int width, bool moves)
{
    const int height = rowHeight();
    int x = edge;
    int y = edge;
    for (const Piece& piece : pieces_) {
        if (x > edge && x + piece.width > width - edge) {
            x = edge;
            y += height + edge;
        }
        if (moves)
            place(piece, x, y, height);
        x += piece.width;
    }
    return y + height + edge;
}

void BarWidget::setStop(BarButton* button)
{
    for (BarButton* other : buttons_)
        other->setFocusPolicy(other == button ? Qt::TabFocus : Qt::NoFocus);
    setFocusProxy(button);
}

void BarWidget::checkStop()
{
    const auto usable = [](const BarButton* b) { return b->isEnabled(); };
    const auto stops = [](const BarButton* b) { return b->focusPolicy() == Qt::TabFocus; };
    const auto now = std::find_if(buttons_.begin(), buttons_.end(), stops);
    if (now != buttons_.end() && usable(*now))
        return;
    const auto other = std::find_if(buttons_.begin(), buttons_.end(), usable);
    if (other != buttons_.end())
        setStop(*other);
}

void BarWidget::moveFocus(const BarButton* from, int step)
{
    std::vector<BarButton*> usable;
    std::copy_if(buttons_.begin(), buttons_.end(), std::back_inserter(usable),
                 [&](const BarButton* b) { return b == from || b->isEnabled(); });
    const int here =
        static_cast<int>(std::find(usable.begin(), usable.end(), from) - usable.begin());
    const int last = static_cast<int>(usable.size()) - 1;
    usable[static_cast<std::size_t>(std::clamp(here + step, 0, last))]->setFocus(
        Qt::OtherFocusReason);
}

void BarWidget::sendCommand(unsigned id, unsigned code) const
{
    const WindowPeer* const peer = peerOf(this);
    if (!peer)
        return;
    const HWND target = peerOf(owner) ? owner : peer->parent;
    sendTo(target, WM_COMMAND, (id & 0xFFFF) | WPARAM{code} << 16, static_cast<LPARAM>(peer->hwnd));
}

bool BarWidget::event(QEvent* e)
{
    if (e->type() == QEvent::Resize)
        layOut(width(), true);
    return Control<QWidget>::event(e);
}

}  // namespace pavane

#include "platform/up_down.h"

#include "platform/core/whole_number.h"
#include "platform/qt/Control.h"

#include <algorithm>
#include <cstdint>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QTimer>
#include <utility>

namespace pavane
{

namespace
{

constexpr int repeatDelay = 400;
constexpr int repeatInterval = 50;
constexpr int notch = 120;

/// How far one of a row of steps goes while an arrow or a key is held.
int strideOf(int steps) { return steps < 20 ? 1 : steps < 60 ? 10 : steps < 120 ? 100 : 1000; }

class UpDownWidget : public Control<QWidget>
{
public:
    explicit UpDownWidget(QWidget* parent) : Control<QWidget>(parent)
    {
        setFocusPolicy(Qt::NoFocus);
        QObject::connect(&repeat_, &QTimer::timeout, this, [this] {
            repeat_.setInterval(repeatInterval);
            step(pressed_ * strideOf(steps_++));
        });
    }
    HWND buddy() const { return edit() ? buddy_ : 0; }
    void setBuddy(HWND buddy)
    {
        if (QLineEdit* const before = edit())
            before->removeEventFilter(this);
        buddy_ = buddy;
        if (QLineEdit* const line = edit())
            line->installEventFilter(this);
    }
    void setRange(int min, int max)
    {
        min_ = min;
        max_ = std::max(min, max);
    }
    int min() const { return min_; }
    int max() const { return max_; }
    int position(int* isInRange) const
    {
        int read = position_;
        const QLineEdit* const line = edit();
        const int isNumber = !line || readWholeNumber(line->text().toStdString(), read);
        if (isInRange)
            *isInRange = isNumber && read >= min_ && read <= max_;
        return std::clamp(read, min_, max_);
    }
    void setPosition(int position)
    {
        position_ = std::clamp(position, min_, max_);
        showPosition();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* e) override
    {
        if (watched != edit())
            return false;
        if (e->type() == QEvent::EnabledChange)
            update();
        if (e->type() == QEvent::Wheel && edit()->hasFocus()) {
            wheelRest_ += static_cast<QWheelEvent*>(e)->angleDelta().y();
            step(std::exchange(wheelRest_, wheelRest_ % notch) / notch);
            return true;
        }
        if (e->type() != QEvent::KeyPress)
            return false;
        const auto& key = *static_cast<QKeyEvent*>(e);
        const bool isUp = key.key() == Qt::Key_Up;
        if ((!isUp && key.key() != Qt::Key_Down) || key.modifiers() & ~Qt::KeypadModifier)
            return false;
        steps_ = key.isAutoRepeat() ? steps_ + 1 : 0;
        step((isUp ? 1 : -1) * strideOf(steps_));
        return true;
    }
    void mousePressEvent(QMouseEvent* e) override
    {
        if (e->button() != Qt::LeftButton || !isUsable())
            return;
        pressed_ = e->position().y() < height() / 2.0 ? 1 : -1;
        steps_ = 1;
        if (QLineEdit* const line = edit())
            line->setFocus(Qt::MouseFocusReason);
        repeat_.start(repeatDelay);
        update();
        step(pressed_);  // may be the last that this object does
    }
    void mouseReleaseEvent(QMouseEvent*) override { release(); }
    void hideEvent(QHideEvent*) override { release(); }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const int middle = (height() + 1) / 2;
        for (const int direction : {1, -1}) {
            QStyleOptionButton option;
            option.initFrom(this);
            option.state.setFlag(QStyle::State_Enabled, isUsable());
            option.state.setFlag(QStyle::State_Sunken, pressed_ == direction);
            option.state.setFlag(QStyle::State_Raised, pressed_ != direction);
            option.rect = direction > 0 ? QRect(0, 0, width(), middle)
                                        : QRect(0, middle - 1, width(), height() - middle + 1);
            style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
            constexpr int arrow = 7;
            const QPoint at = option.rect.center();
            option.rect = QRect(at.x() - arrow / 2, at.y() - arrow / 2, arrow, arrow);
            style()->drawPrimitive(direction > 0 ? QStyle::PE_IndicatorArrowUp
                                                 : QStyle::PE_IndicatorArrowDown,
                                   &option, &painter, this);
        }
    }

private:
    /// The line of the buddy, null when there is none any more.
    QLineEdit* edit() const
    {
        const WindowPeer* const peer = peerOf(buddy_);
        return peer ? dynamic_cast<QLineEdit*>(peer->widget.data()) : nullptr;
    }
    bool isUsable() const { return isEnabled() && (!edit() || edit()->isEnabled()); }
    void release()
    {
        pressed_ = 0;
        repeat_.stop();
        update();
    }
    void showPosition()
    {
        if (CWnd* const window = CWnd::FromHandle(buddy()))
            window->SetWindowText(std::to_string(position_));
    }
    void step(int by)
    {
        if (by == 0 || !isUsable())
            return;
        int isInRange = 0;
        const int before = position(&isInRange);
        const auto wanted = std::int64_t{before} + by;
        const auto next = static_cast<int>(std::clamp<std::int64_t>(wanted, min_, max_));
        if (next == before && isInRange)
            return;
        position_ = next;
        const QPointer<UpDownWidget> alive = this;
        showPosition();
        if (QLineEdit* const line = alive ? edit() : nullptr) {
            line->setModified(true);
            line->selectAll();
        }
        if (alive)
            notifyFrom(this, ID_SPIN_CHANGED);
    }

    HWND buddy_ = 0;
    QTimer repeat_;
    int min_ = 0, max_ = 100, position_ = 0;
    int pressed_ = 0;  ///< 1 the upper arrow, -1 the lower one
    int steps_ = 0;
    int wheelRest_ = 0;
};

UpDownWidget* arrowsOf(const CUpDownCtrl* control) { return widgetOf<UpDownWidget>(control); }

}  // namespace

int CUpDownCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    return attachNative(*this, new UpDownWidget(client), "UpDown", CString(), style, rect, parent,
                        id);
}

int CUpDownCtrl::SetBuddy(CEdit* edit)
{
    UpDownWidget* const arrows = arrowsOf(this);
    if (!arrows || (edit && !widgetOf<QLineEdit>(edit)))
        return 0;
    arrows->setBuddy(edit ? edit->GetSafeHwnd() : 0);
    return 1;
}

CWnd* CUpDownCtrl::GetBuddy() const
{
    const UpDownWidget* const arrows = arrowsOf(this);
    return arrows ? FromHandle(arrows->buddy()) : nullptr;
}

void CUpDownCtrl::SetRange(int min, int max)
{
    if (UpDownWidget* const arrows = arrowsOf(this))
        arrows->setRange(min, max);
}

void CUpDownCtrl::GetRange(int& min, int& max) const
{
    const UpDownWidget* const arrows = arrowsOf(this);
    min = arrows ? arrows->min() : 0;
    max = arrows ? arrows->max() : 0;
}

int CUpDownCtrl::SetPos(int position)
{
    const int before = GetPos();
    if (UpDownWidget* const arrows = arrowsOf(this))
        arrows->setPosition(position);
    return before;
}

int CUpDownCtrl::GetPos(int* isInRange) const
{
    if (isInRange)
        *isInRange = 0;
    const UpDownWidget* const arrows = arrowsOf(this);
    return arrows ? arrows->position(isInRange) : 0;
}

}  // namespace pavane

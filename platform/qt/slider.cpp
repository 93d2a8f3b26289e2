#include "platform/slider.h"

#include "platform/qt/Control.h"

#include <algorithm>
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyleOption>

namespace pavane
{

namespace
{

/// Marks the focus, which the toolkit tells by a shade of the handle alone.
class Slider : public Control<QSlider>
{
public:
    using Control<QSlider>::Control;

protected:
    void paintEvent(QPaintEvent* e) override
    {
        Control<QSlider>::paintEvent(e);
        if (!hasFocus())
            return;
        QPainter painter(this);
        QStyleOptionFocusRect mark;
        mark.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &painter, this);
    }
};

QSlider* sliderOf(const CSliderCtrl* control) { return widgetOf<QSlider>(control); }

}  // namespace

int CSliderCtrl::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    QWidget* const client = clientOf(parent);
    if (!client || GetSafeHwnd())
        return 0;
    auto* const slider = new Slider(client);
    slider->setOrientation(style & TBS_VERT ? Qt::Vertical : Qt::Horizontal);
    slider->setRange(0, 100);
    slider->keepsWheel = false;
    QObject::connect(slider, &QSlider::valueChanged, [slider] { notifyFrom(slider, SLN_MOVED); });
    QObject::connect(slider, &QSlider::sliderReleased,
                     [slider] { notifyFrom(slider, SLN_RELEASED); });
    return attachNative(*this, slider, "Slider", CString(), style, rect, parent, id);
}

void CSliderCtrl::SetRange(int min, int max)
{
    if (QSlider* const slider = sliderOf(this)) {
        const QSignalBlocker quiet(slider);
        slider->setRange(min, std::max(min, max));
    }
}

void CSliderCtrl::GetRange(int& min, int& max) const
{
    const QSlider* const slider = sliderOf(this);
    min = slider ? slider->minimum() : 0;
    max = slider ? slider->maximum() : 0;
}

int CSliderCtrl::SetPos(int position)
{
    const int before = GetPos();
    if (QSlider* const slider = sliderOf(this)) {
        const QSignalBlocker quiet(slider);
        slider->setValue(position);
        slider->update();
    }
    return before;
}

int CSliderCtrl::GetPos() const
{
    const QSlider* const slider = sliderOf(this);
    return slider ? slider->value() : 0;
}

void CSliderCtrl::SetPageSize(int steps)
{
    if (QSlider* const slider = sliderOf(this))
        slider->setPageStep(std::max(1, steps));
}

int CSliderCtrl::IsDragged() const
{
    const QSlider* const slider = sliderOf(this);
    return slider && slider->isSliderDown() ? 1 : 0;
}

}  // namespace pavane

#pragma once

#include <functional>
#include <QEvent>
#include <utility>

class QWidget;

namespace pavane
{

/// Offers an event of a native control to its window object first: keys, mouse and focus arrive at
/// WindowProc, whose base handlers call Default(), which runs `native`. Returns what
/// QWidget::event returns.
bool controlEvent(QWidget* widget, QEvent* event, const std::function<bool(QEvent*)>& native);

/// A widget of the toolkit as a native control.
template <class Base>
class ControlWidget : public Base
{
public:
    using Base::Base;

protected:
    bool event(QEvent* e) override
    {
        switch (e->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
        case QEvent::Leave:
            return controlEvent(this, e, [this](QEvent* event) { return Base::event(event); });
        default:
            return Base::event(e);
        }
    }
};

}  // namespace pavane

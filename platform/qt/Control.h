#pragma once

#include "platform/messages.h"
#include "platform/qt/ControlWidget.h"
#include "platform/qt/WindowPeer.h"

#include <QEvent>
#include <QFocusEvent>
#include <QString>
#include <QWidget>

class QAbstractButton;

namespace pavane
{

/// Text for a tip, never taken for markup.
QString tipText(const CString& text);
/// Shows what the window's OnToolTip says.
void showControlTip(QWidget* widget, QEvent* event);
/// What an open list or menu does to the focus is nobody's business: it comes back.
bool isPopupFocus(const QWidget* control, const QEvent& event);

/// Codes that a control sends to its parent when the focus comes and goes; 0 sends none.
struct FocusNotices {
    unsigned gained = 0;
    unsigned lost = 0;
};

/// A native control with what all of ours share: tool tips, notices of the focus, and a wheel that
/// leaves a control without the focus alone.
template <class Base>
class Control : public ControlWidget<Base>
{
public:
    using ControlWidget<Base>::ControlWidget;
    FocusNotices notices;
    bool keepsWheel = true;

protected:
    bool event(QEvent* e) override
    {
        if (e->type() == QEvent::ToolTip) {
            showControlTip(this, e);
            return true;
        }
        if (e->type() == QEvent::Wheel && !keepsWheel && !this->hasFocus()) {
            e->ignore();
            return true;
        }
        const bool gains = e->type() == QEvent::FocusIn;
        if (!gains && e->type() != QEvent::FocusOut)
            return ControlWidget<Base>::event(e);
        const WindowPeer* const peer = peerOf(this);
        const HWND hwnd = peer ? peer->hwnd : 0;
        const unsigned code = gains ? notices.gained : notices.lost;
        const bool tells = code != 0 && !isPopupFocus(this, *e);
        // may be the last that this object does; notices go by handle
        const bool used = ControlWidget<Base>::event(e);
        if (tells)
            notifyParent(hwnd, code);
        return used;
    }
};

/// The native widget of a control; null without a window, or with one of another kind (CreateEx
/// makes drawing windows of all objects).
template <class Widget>
Widget* widgetOf(const CWnd* control)
{
    WindowPeer* const peer = peerOf(control);
    return peer ? dynamic_cast<Widget*>(peer->widget.data()) : nullptr;
}

/// Makes `widget` the native side of `control`; non-zero on success.
int attachNative(CWnd& control, QWidget* widget, const char* className, const CString& title,
                 unsigned style, const CRect& rect, CWnd* parent, unsigned id);
/// How the text of the window is read and set.
void setTextAccess(CWnd& control, std::function<void(const CString&)> set,
                   std::function<CString()> get);
/// Without the toolkit's own rule that one of a group has to be on.
void setButtonChecked(QAbstractButton& button, bool on);
/// Sends a notice to the parent when the widget's window still exists.
void notifyFrom(const QWidget* widget, unsigned code);

}  // namespace pavane

#include "platform/qt/Control.h"

#include "platform/qt/fonts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

namespace pavane
{

QString tipText(const CString& text)
{
    const QString plain = textOf(text);
    return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain) : plain;
}

void showControlTip(QWidget* widget, QEvent* event)
{
    const auto* const help = static_cast<QHelpEvent*>(event);
    const WindowPeer* const peer = peerOf(widget);
    if (!peer || !peer->window)
        return;
    const QPointer<QWidget> alive = widget;
    const QPoint place = help->globalPos();
    const CString tip = peer->window->OnToolTip({help->x(), help->y()});
    if (!alive)
        return;
    if (tip.empty())
        QToolTip::hideText();
    else
        QToolTip::showText(place, tipText(tip), widget);
}

bool isPopupFocus(const QWidget* control, const QEvent& event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason)
        return true;
    for (; control; control = control->parentWidget())
        if (const auto* const box = qobject_cast<const QComboBox*>(control))
            return box->view()->isVisible();
    return false;
}

int attachNative(CWnd& control, QWidget* widget, const char* className, const CString& title,
                 unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    CREATESTRUCT cs;
    cs.className = className;
    cs.title = title;
    cs.style = style | WS_CHILD;
    cs.rect = rect;
    cs.parent = parent;
    cs.id = id;
    return attachControl(control, widget, cs) ? 1 : 0;
}

void setTextAccess(CWnd& control, std::function<void(const CString&)> set,
                   std::function<CString()> get)
{
    if (WindowPeer* const peer = peerOf(&control)) {
        peer->setText = std::move(set);
        peer->text = std::move(get);
    }
}

void setButtonChecked(QAbstractButton& button, bool on)
{
    QButtonGroup* const group = button.group();
    const bool one = group ? group->exclusive() : button.autoExclusive();
    const auto setRule = [&](bool exclusive) {
        group ? group->setExclusive(exclusive) : button.setAutoExclusive(exclusive);
    };
    if (one && !on)
        setRule(false);
    button.setChecked(on);
    if (one && !on)
        setRule(true);
}

void notifyFrom(const QWidget* widget, unsigned code)
{
    if (const WindowPeer* const peer = peerOf(widget))
        notifyParent(peer->hwnd, code);
}

}  // namespace pavane

#include "platform/qt/DialogWidget.h"

#include "platform/message.h"
#include "platform/qt/WindowPeer.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

namespace pavane
{

namespace
{

/// A dialog is never an icon, and fills the screen only when it lays itself out.
Qt::WindowFlags flagsOf(bool canBeResized)
{
    const Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                  Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    return canBeResized ? flags | Qt::WindowMaximizeButtonHint : flags;
}

}  // namespace

DialogWidget::DialogWidget(QWidget* parent, bool canBeResized)
    : QDialog(parent, flagsOf(canBeResized)), canBeResized_(canBeResized)
{
}

void DialogWidget::setClientSize(QSize size)
{
    if (canBeResized_)
        resize(size);
    else
        setFixedSize(size);
}

void DialogWidget::allowResize(QSize least, bool across, bool down)
{
    canBeResized_ = across || down;
    if (const Qt::WindowFlags flags = flagsOf(across && down);
        flags != windowFlags() && !isVisible())
        setWindowFlags(flags);
    setMinimumSize(least);
    setMaximumSize(across ? QWIDGETSIZE_MAX : least.width(),
                   down ? QWIDGETSIZE_MAX : least.height());
    setSizeGripEnabled(canBeResized_);
}

void DialogWidget::reject() { sendTo(hwnd_, WM_COMMAND, IDCANCEL, 0); }

bool DialogWidget::event(QEvent* e)
{
    switch (e->type()) {
    case QEvent::Resize:
        sendTo(hwnd_, WM_SIZE, SIZE_RESTORED, MAKELPARAM(width(), height()));
        break;
    case QEvent::Move:
        sendTo(hwnd_, WM_MOVE, 0, MAKELPARAM(x(), y()));
        break;
    case QEvent::EnabledChange:
        // disabling its owner is no reason to disable a dialog
        if (const WindowPeer* const peer = peerOf(hwnd_);
            peer && !isEnabled() && !(peer->style & WS_DISABLED))
            setEnabled(true);
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        sendTo(hwnd_, WM_ACTIVATE, e->type() == QEvent::WindowActivate ? 1 : 0, 0);
        break;
    default:
        break;
    }
    return QDialog::event(e);
}

void DialogWidget::keyPressEvent(QKeyEvent* e)
{
    const bool isEnter = e->key() == Qt::Key_Enter || e->key() == Qt::Key_Return;
    if (!isEnter || e->modifiers() & ~Qt::KeypadModifier) {
        QDialog::keyPressEvent(e);
        return;
    }
    if (auto* const focus = qobject_cast<QPushButton*>(focusWidget())) {
        focus->click();
        return;
    }
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        if (!button->isDefault())
            continue;
        if (button->isEnabled())
            button->click();
        return;
    }
    sendTo(hwnd_, WM_COMMAND, IDOK, 0);
}

void DialogWidget::closeEvent(QCloseEvent* e)
{
    // the object decides; a window that it destroyed is on its way already
    e->ignore();
    sendTo(hwnd_, WM_CLOSE, 0, 0);
}

}  // namespace pavane

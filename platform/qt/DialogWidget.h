#pragma once

#include "platform/messages.h"

#include <QDialog>

namespace pavane
{

/// The native side of a dialog. Enter presses the button that has the focus, else the default one;
/// Escape and the close box ask the object.
class DialogWidget : public QDialog
{
public:
    DialogWidget(QWidget* parent, bool canBeResized);
    void setHandle(HWND hwnd) { hwnd_ = hwnd; }
    /// To the next or previous control that the Tab key reaches, around the ends.
    void moveFocus(bool forward) { (void)focusNextPrevChild(forward); }
    void setClientSize(QSize size);
    /// Before it is shown: sizes from `least` on, the other way than these a fixed one.
    void allowResize(QSize least, bool across, bool down);
    void reject() override;

protected:
    bool event(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    HWND hwnd_ = 0;
    bool canBeResized_;
};

}  // namespace pavane

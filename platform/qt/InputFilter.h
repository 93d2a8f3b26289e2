#pragma once

#include <QObject>

namespace pavane
{

/// Sees every event of the program before its receiver: while a message loop waits, input becomes
/// its messages; else it is offered to PreTranslateMessage and follows the capture.
class InputFilter : public QObject
{
public:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    bool filterInput(QWidget* widget, QEvent* event);
};

}  // namespace pavane

#pragma once

#include "platform/messages.h"

#include <QWidget>

namespace pavane
{

/// The client area of a drawing window: shows the pixels of its surface and hands its events to the
/// window object as messages.
class HostWidget : public QWidget
{
public:
    explicit HostWidget(QWidget* parent);
    void setHandle(HWND hwnd) { hwnd_ = hwnd; }
    HWND handle() const { return hwnd_; }
    /// Gives the surface the widget's size and sends WM_SIZE when it changed.
    void syncSize();
    /// Whether syncSize sends WM_SIZE; not while the window is being made.
    void tellSize(bool on) { tellsSize_ = on; }

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;
    bool focusNextPrevChild(bool next) override;

private:
    bool focusEvent(QEvent* e);
    bool showTip(QEvent* e);

    HWND hwnd_ = 0;
    QSize sent_{-1, -1};  ///< of the last WM_SIZE
    bool tellsSize_ = true;
};

/// Pixels across a unit that pictures of this widget are made at: its device pixels, rounded up.
int pixelRatioOf(const QWidget* widget);

}  // namespace pavane

#pragma once

#include "platform/messages.h"

#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QWidget>

namespace pavane
{

class HostWidget;

/// What lies around a client area: a border, the menu bar of a top-level window, scroll bars.
class FrameWidget : public QWidget
{
public:
    FrameWidget(QWidget* parent, Qt::WindowFlags flags, unsigned style, unsigned exStyle);
    /// Takes the client area as a child.
    void setClient(HostWidget* client, HWND hwnd);
    HostWidget* client() const { return client_; }
    void setMenuBar(QWidget* bar);
    QWidget* menuBar() const { return menuBar_; }
    /// SB_HORZ or SB_VERT; null when the window has none.
    QScrollBar* bar(int which) const { return bars_[which == SB_VERT ? 1 : 0].widget; }
    void makeBar(int which);
    /// A bar shows when the window wants it and it has somewhere to go. Either may be the end of
    /// the window, by way of WM_SIZE.
    void setBarWanted(int which, bool on);
    void setBarNeeded(int which, bool on);
    /// Places everything; sizes of windows that are hidden change at once too.
    void layOut();
    /// Size around a client area of that size.
    QSize sizeAround(QSize client) const;
    int menuHeight() const;
    /// The place that the window goes back to from its maximised or minimised state.
    QRect normalRect() const;
    /// Whether it is maximised, or was before it was minimised.
    bool isOrWasMaximized() const { return isMaximized() || (isMinimized() && wasMaximized_); }
    /// Remembers state and place unless it is minimised; before the program changes them.
    void keepPlace();

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    struct Bar {
        QScrollBar* widget = nullptr;
        bool isWanted = true;
        bool isNeeded = true;
        int tracked = 0;  ///< where the thumb was pulled to last
    };
    Bar& barState(int which) { return bars_[which == SB_VERT ? 1 : 0]; }
    bool isShown(int index) const
    {
        return bars_[index].widget && !bars_[index].widget->isHidden();
    }
    void showBar(const Bar& bar);
    void barMoved(int which, int action);
    void tellOfBar(int which, unsigned code, int position);

    HWND hwnd_ = 0;
    HostWidget* client_ = nullptr;
    QPointer<QWidget> menuBar_;
    Bar bars_[2];
    int border_ = 0;
    QRect normal_;
    bool wasMaximized_ = false;
    QTimer settled_;  ///< the window manager has not changed anything for a while
};

}  // namespace pavane

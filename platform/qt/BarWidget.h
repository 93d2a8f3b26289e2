#pragma once

#include "platform/controls.h"
#include "platform/qt/Control.h"

#include <map>
#include <QButtonGroup>
#include <QToolButton>

namespace pavane
{

class BarWidget;

/// A button of a toolbar, perhaps with an arrow at its right.
class BarButton : public QToolButton
{
public:
    BarButton(BarWidget* bar, const ToolButton& button);
    unsigned id() const { return id_; }
    bool hasArrow() const { return hasArrow_; }
    /// Also what screen readers read.
    void setTip(const CString& tip);
    const CString& tip() const { return tip_; }

protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;

private:
    BarWidget* bar_;
    unsigned id_;
    bool hasArrow_;
    CString tip_;
};

/// The native side of a toolbar: its pieces in rows.
class BarWidget : public Control<QWidget>
{
public:
    explicit BarWidget(QWidget* parent) : Control<QWidget>(parent) { setAutoFillBackground(true); }
    void addButton(const ToolButton& button);
    void addSeparator();
    void addControl(HWND control, int width);
    BarButton* button(unsigned id) const;
    /// Places everything in rows of that width, and moves nothing unless `moves`; height of it all.
    int layOut(int width, bool moves);
    /// The button that the Tab key reaches.
    void setStop(BarButton* button);
    /// Finds another one when it may not be used any more.
    void checkStop();
    /// Moves the focus by `step` buttons that are enabled, or to an end for beyond all.
    void moveFocus(const BarButton* from, int step);
    void sendCommand(unsigned id, unsigned code) const;
    /// 0 stands for the parent.
    HWND owner = 0;

protected:
    bool event(QEvent* e) override;

private:
    struct Piece {
        QWidget* widget = nullptr;  ///< a button or a separator
        HWND control = 0;
        int width = 0;
    };
    int heightOf(const Piece& piece) const;
    int rowHeight() const;
    void place(const Piece& piece, int x, int y, int height) const;
    void add(const Piece& piece);

    std::vector<Piece> pieces_;
    std::vector<BarButton*> buttons_;
    std::map<int, QButtonGroup*> groups_;
};

}  // namespace pavane

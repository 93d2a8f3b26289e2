#pragma once

#include "platform/CMenu.h"

#include <QMenuBar>
#include <QPointer>

namespace pavane
{

/// The menu bar of a top-level window. Its popups are filled anew from the menu's value each time
/// they open, after the window had its say. Keys act through the same questions: an item that the
/// window disables does nothing.
class MenuBar : public QMenuBar
{
public:
    MenuBar(HWND top, CMenu menu);

protected:
    /// Keys of the menu go before keys of drawing windows and after those of text fields.
    bool eventFilter(QObject* receiver, QEvent* event) override;
    /// A key that means nothing here leaves the menu and goes to the window that had the focus.
    void keyPressEvent(QKeyEvent* e) override;

private:
    void fill(QMenu* shown, CMenu& menu, bool opens);
    void addPopup(QMenu* popup, CMenu& menu);
    void run(unsigned id);
    void leave();

    HWND top_;
    CMenu menu_;
};

}  // namespace pavane

#pragma once

#include "platform/CMenu.h"
#include "platform/controls.h"
#include "platform/qt/WindowPeer.h"

#include <functional>
#include <gtest/gtest.h>
#include <QApplication>
#include <QTest>
#include <QTimer>
#include <vector>

namespace pavane
{

/// A top-level window that is active and notes the commands it gets.
struct CommandFrame : CWnd {
    struct Command {
        unsigned id;
        unsigned code;
        bool operator==(const Command&) const = default;
    };
    CommandFrame()
    {
        CreateEx(0, "CommandFrame", "frame", WS_OVERLAPPEDWINDOW, {20, 20, 420, 320}, nullptr, 0);
        ShowWindow(SW_SHOW);
        (void)QTest::qWaitForWindowActive(peerOf(this)->outer());
    }
    int OnCommand(unsigned id, unsigned code, CWnd*) override
    {
        commands.push_back({id, code});
        if (on)
            on(id, code);
        return 1;
    }
    void OnInitMenuPopup(CMenu& popup) override
    {
        ++popups;
        popup.EnableMenuItem(disabled, MF_GRAYED);
    }
    /// What came since the last time.
    std::vector<Command> taken() { return std::exchange(commands, {}); }
    std::vector<Command> commands;
    std::function<void(unsigned, unsigned)> on;
    unsigned disabled = 0;
    int popups = 0;
};

using Commands = std::vector<CommandFrame::Command>;

inline QWidget* widgetOfWindow(const CWnd& window) { return peerOf(&window)->widget; }
inline QWidget* outerOfWindow(const CWnd& window) { return peerOf(&window)->outer(); }

constexpr unsigned shown = WS_CHILD | WS_VISIBLE | WS_TABSTOP;

/// Calls `act` with the dialog or popup that is in front as soon as there is one.
template <class Widget>
void whenShown(QWidget* (*front)(), std::function<void(Widget&)> act, int tries = 400)
{
    QTimer::singleShot(5, qApp, [=] {
        auto* const widget = qobject_cast<Widget*>(front());
        if (widget && widget->isVisible())
            act(*widget);
        else if (tries > 0)
            whenShown<Widget>(front, act, tries - 1);
        else
            ADD_FAILURE() << "nothing was shown";
    });
}

}  // namespace pavane

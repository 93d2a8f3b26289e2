#pragma once

namespace pavane
{

/// One line of a menu: a command, a line between commands (text null), or a popup with items.
struct MenuItem {
    const char* text = nullptr;  ///< '&' before the letter to press, "\tCtrl+Z" behind for a key
    unsigned id = 0;
    const MenuItem* items = nullptr;  ///< of a popup
    int itemCount = 0;
};

/// The lines of a menu and its identifier.
struct MenuTemplate {
    unsigned id;
    const MenuItem* items;
    int itemCount;
};

}  // namespace pavane

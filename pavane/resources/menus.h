#pragma once

#include "pavane/resources/plot_commands.h"
#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

inline constexpr MenuItem copyItems[] = {
    {"into Clipboard", ID_COPY_TO_CLIPBOARD},
    {"into PNG...", ID_COPY_TO_BMP},
};
inline constexpr MenuItem copyMenu[] = {
    {"Copy to", 0, copyItems, static_cast<int>(std::size(copyItems))},
};

inline constexpr MenuItem axisItems[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    {},
    menuItemOf(ID_CLOSE_AREA),
    menuItemOf(ID_VERTEX_INSERT),
    menuItemOf(ID_VERTEX_DELETE),
    menuItemOf(ID_TRACK_COPY),
    menuItemOf(ID_TRACK_DELETE),
    menuItemOf(ID_SELECT_ALL),
    {},
    menuItemOf(ID_SHOW_CELLS),
    menuItemOf(ID_ZOOM_MINUS),
    menuItemOf(ID_WHOLE_MAP),
    {},
    menuItemOf(ID_COPY_TO_CLIPBOARD),
    menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem axisMenu[] = {
    {"Axis", 0, axisItems, static_cast<int>(std::size(axisItems))},
};

inline constexpr MenuItem plotItems[] = {
    menuItemOf(ID_ZOOM_MINUS),        {"&Whole range\t0", ID_WHOLE_MAP}, {},
    menuItemOf(ID_COPY_TO_CLIPBOARD), menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem plotMenu[] = {
    {"Plot", 0, plotItems, static_cast<int>(std::size(plotItems))},
};

inline constexpr MenuItem tableItems[] = {
    {"&Copy selection\tCtrl+C", ID_TABLE_COPY_SELECTION},
    {"Copy &table", ID_TABLE_COPY_ALL},
    {},
    {"&Save selection as text...", ID_TABLE_SAVE_SELECTION},
    {"Save table as te&xt...", ID_TABLE_SAVE_ALL},
    {},
    {"Copy &picture", ID_COPY_TO_CLIPBOARD},
    {"Save picture as P&NG...", ID_COPY_TO_BMP},
};
inline constexpr MenuItem tableMenu[] = {
    {"Table", 0, tableItems, static_cast<int>(std::size(tableItems))},
};

/// The menus of the library, by identifier.
inline constexpr MenuTemplate libraryMenus[] = {
    {IDR_AXIS_MENU, axisMenu, 1},
    {IDR_PLOT_MENU, plotMenu, 1},
    {IDR_TABLE_MENU, tableMenu, 1},
    {IDR_COPY_MENU, copyMenu, 1},
};

}  // namespace pavane

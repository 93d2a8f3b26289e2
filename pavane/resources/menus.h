#pragma once

#include "pavane/resources/resource_ids.h"
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
    {"&Undo\tCtrl+Z", ID_TRACK_UNDO},
    {"&Redo\tCtrl+Shift+Z", ID_TRACK_REDO},
    {},
    {"C&lose area\tEnter", ID_CLOSE_AREA},
    {"&Insert vertex\tIns", ID_VERTEX_INSERT},
    {"Delete &vertex", ID_VERTEX_DELETE},
    {"Du&plicate area\tCtrl+D", ID_TRACK_COPY},
    {"&Delete area\tDel", ID_TRACK_DELETE},
    {"Select &all areas\tCtrl+A", ID_SELECT_ALL},
    {},
    {"Show &cells of areas\tM", ID_SHOW_CELLS},
    {"Zoom &back", ID_ZOOM_MINUS},
    {"&Whole map", ID_WHOLE_MAP},
    {},
    {"Copy to Clipboard", ID_COPY_TO_CLIPBOARD},
    {"Copy to BMP...", ID_COPY_TO_BMP},
};
inline constexpr MenuItem axisMenu[] = {
    {"Axis", 0, axisItems, static_cast<int>(std::size(axisItems))},
};

inline constexpr MenuItem plotItems[] = {
    {"Zoom &back\t7", ID_ZOOM_MINUS},
    {"&Whole range\t0", ID_WHOLE_MAP},
    {},
    {"&Copy to Clipboard\tCtrl+C", ID_COPY_TO_CLIPBOARD},
    {"Copy to &PNG...", ID_COPY_TO_BMP},
};
inline constexpr MenuItem plotMenu[] = {
    {"Plot", 0, plotItems, static_cast<int>(std::size(plotItems))},
};

/// The menus of the library, by identifier.
inline constexpr MenuTemplate libraryMenus[] = {
    {IDR_AXIS_MENU, axisMenu, 1},
    {IDR_PLOT_MENU, plotMenu, 1},
    {IDR_COPY_MENU, copyMenu, 1},
};

}  // namespace pavane

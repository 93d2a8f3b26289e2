#pragma once

#include "pavane/resources/component_commands.h"
#include "pavane/resources/flag_commands.h"
#include "pavane/resources/freq_commands.h"
#include "pavane/resources/gain_commands.h"
#include "pavane/resources/mark_commands.h"
#include "pavane/resources/plot_commands.h"
#include "pavane/resources/table_commands.h"
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
    menuItemOf(ID_NEVER_CLEAN),
    menuItemOf(ID_SELECT_ALL),
    {},
    menuItemOf(ID_SHOW_CELLS),
    menuItemOf(ID_ZOOM_MINUS),
    menuItemOf(ID_WHOLE_MAP),
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
    {},
    menuItemOf(ID_COPY_TO_CLIPBOARD),
    menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem axisMenu[] = {
    {"Axis", 0, axisItems, static_cast<int>(std::size(axisItems))},
};

inline constexpr MenuItem plotItems[] = {
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole range\t0", ID_WHOLE_MAP},
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
    {},
    menuItemOf(ID_COPY_TO_CLIPBOARD),
    menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem plotMenu[] = {
    {"Plot", 0, plotItems, static_cast<int>(std::size(plotItems))},
};

inline constexpr MenuItem tableItems[] = {
    tableItemOf(ID_TABLE_UNDO),
    tableItemOf(ID_TABLE_REDO),
    {},
    tableItemOf(ID_TABLE_EDIT),
    tableItemOf(ID_TABLE_CLEAR),
    tableItemOf(ID_TABLE_COPY_SELECTION),
    tableItemOf(ID_TABLE_COPY_CELLS),
    tableItemOf(ID_TABLE_COPY_ALL),
    tableItemOf(ID_TABLE_PASTE),
    {},
    tableItemOf(ID_TABLE_SELECT_ALL),
    tableItemOf(ID_TABLE_SELECT_ROWS),
    tableItemOf(ID_TABLE_SELECT_COLUMNS),
    {},
    tableItemOf(ID_TABLE_FIND),
    tableItemOf(ID_TABLE_FIND_NEXT),
    tableItemOf(ID_TABLE_FIND_PREVIOUS),
    tableItemOf(ID_TABLE_GO_TO_ROW),
    {},
    tableItemOf(ID_TABLE_SORT_UP),
    tableItemOf(ID_TABLE_SORT_DOWN),
    tableItemOf(ID_TABLE_SORT_STORED),
    tableItemOf(ID_TABLE_FIT_COLUMN),
    tableItemOf(ID_TABLE_COLUMN_WIDTH),
    {},
    tableItemOf(ID_TABLE_SAVE_SELECTION),
    tableItemOf(ID_TABLE_SAVE_ALL),
    {"Copy p&icture", ID_COPY_TO_CLIPBOARD},
    {"Save picture as PN&G...", ID_COPY_TO_BMP},
};
inline constexpr MenuItem tableMenu[] = {
    {"Table", 0, tableItems, static_cast<int>(std::size(tableItems))},
};

/// A table with marks has their commands before its own.
inline constexpr auto markTableItems = menuOfBoth(markItems, tableItems);
inline constexpr MenuItem markMenu[] = {
    {"Marks", 0, markTableItems.data(), static_cast<int>(std::size(markTableItems))},
};

inline constexpr MenuItem freqGroupMenu[] = {
    {"Frequency groups", 0, freqGroupItems, static_cast<int>(std::size(freqGroupItems))},
};
inline constexpr MenuItem freqInfoMenu[] = {
    {"Groups", 0, freqInfoItems, static_cast<int>(std::size(freqInfoItems))},
};
inline constexpr auto componentTableItems = menuOfBoth(componentItems, tableItems);
inline constexpr MenuItem componentMenu[] = {
    {"Components", 0, componentTableItems.data(), static_cast<int>(std::size(componentTableItems))},
};

/// The menus of the library, by identifier.
inline constexpr MenuTemplate libraryMenus[] = {
    {IDR_AXIS_MENU, axisMenu, 1},
    {IDR_PLOT_MENU, plotMenu, 1},
    {IDR_TABLE_MENU, tableMenu, 1},
    {IDR_MARK_MENU, markMenu, 1},
    {IDR_FREQ_GROUP_MENU, freqGroupMenu, 1},
    {IDR_FREQ_INFO_MENU, freqInfoMenu, 1},
    {IDR_COMPONENTS_MENU, componentMenu, 1},
    {IDR_GAIN_MENU, gainMenu, 1},
    {IDR_FLAG_MENU, flagMenu, 1},
    {IDR_COPY_MENU, copyMenu, 1},
};

}  // namespace pavane

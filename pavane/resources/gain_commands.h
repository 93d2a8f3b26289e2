#pragma once

#include "pavane/resources/plot_commands.h"
#include "pavane/resources/table_commands.h"
#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

// Commands of windows of gains.
inline constexpr unsigned ID_GAIN_FLAG = 10291;     ///< the tool that flags what a rectangle holds
inline constexpr unsigned ID_GAIN_RESTORE = 10292;  ///< the one that takes flags back
inline constexpr unsigned ID_GAIN_LINES = 10293;
inline constexpr unsigned ID_GAIN_ERRORS = 10294;
inline constexpr unsigned ID_GAIN_AMPLITUDES = 10295;
inline constexpr unsigned ID_GAIN_PHASES = 10296;
inline constexpr unsigned ID_GAIN_SCALE = 10297;  ///< antennas by their median amplitude

/// Menu of the graph.
inline constexpr unsigned IDR_GAIN_MENU = 10012;
inline constexpr MenuItem gainItems[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    {},
    {"&Flag by rectangles\tF", ID_GAIN_FLAG},
    {"&Restore by rectangles\tR", ID_GAIN_RESTORE},
    {},
    {"&Lines\tL", ID_GAIN_LINES},
    {"&Error bars\tE", ID_GAIN_ERRORS},
    {"&Amplitudes\tA", ID_GAIN_AMPLITUDES},
    {"&Phases\tP", ID_GAIN_PHASES},
    {},
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole range\t0", ID_WHOLE_MAP},
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
    {},
    menuItemOf(ID_COPY_TO_CLIPBOARD),
    menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem gainMenu[] = {
    {"Gains", 0, gainItems, static_cast<int>(std::size(gainItems))},
};

}  // namespace pavane

#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "pavane/resources/resource_ids.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

inline constexpr unsigned IDC_TIME_INFO = 10013;  ///< the frame about what the data have

/// The page of time intervals; what the data have stands at the right.
inline constexpr DlgItem timeIntervalItems[] = {
    {ControlKind::staticText, 0, "Start time", 8, 7, 84, 9},
    {ControlKind::edit, IDC_TIME_START, "", 8, 17, 84, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Stop time", 8, 35, 84, 9},
    {ControlKind::edit, IDC_TIME_STOP, "", 8, 45, 84, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Time interval", 8, 63, 84, 9},
    {ControlKind::edit, IDC_TIME_INTERVAL, "", 8, 73, 84, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_TIME_EVERY_POINT, "Every point", 8, 92, 84, 11, WS_TABSTOP},
    {ControlKind::pushButton, IDC_TIME_SET_INTERVALS, "Set Intervals...", 100, 73, 72, 14,
     WS_TABSTOP},
    {ControlKind::pushButton, IDC_TIME_DEFAULT, "Default", 100, 45, 72, 14, WS_TABSTOP},
    {ControlKind::radioButton, IDC_TIME_CLOCK, "HH:MM:SS.S", 100, 10, 72, 11,
     WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, IDC_TIME_SECONDS, "In second", 100, 23, 72, 11, WS_TABSTOP},
    {ControlKind::groupBox, IDC_TIME_INFO, "Information", 180, 4, 82, 88, WS_GROUP},
    {ControlKind::staticText, 0, "Start time", 187, 16, 70, 9},
    {ControlKind::staticText, IDC_TIME_INFO_START, "", 187, 25, 70, 9},
    {ControlKind::staticText, 0, "Stop time", 187, 40, 70, 9},
    {ControlKind::staticText, IDC_TIME_INFO_STOP, "", 187, 49, 70, 9},
    {ControlKind::staticText, 0, "Time interval", 187, 64, 70, 9},
    {ControlKind::staticText, IDC_TIME_INFO_INTERVAL, "", 187, 73, 70, 9},
    {ControlKind::staticText, IDC_TIME_COUNT_TEXT, "", 8, 110, 254, 10},
};

/// The same controls for sheets of narrow pages; what the data have stands below.
inline constexpr DlgItem narrowTimeIntervalItems[] = {
    {ControlKind::staticText, 0, "Start time", 8, 7, 76, 9},
    {ControlKind::edit, IDC_TIME_START, "", 8, 17, 76, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Stop time", 8, 35, 76, 9},
    {ControlKind::edit, IDC_TIME_STOP, "", 8, 45, 76, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Time interval", 8, 63, 76, 9},
    {ControlKind::edit, IDC_TIME_INTERVAL, "", 8, 73, 76, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_TIME_EVERY_POINT, "Every point", 8, 92, 76, 11, WS_TABSTOP},
    {ControlKind::pushButton, IDC_TIME_SET_INTERVALS, "Set Intervals...", 92, 73, 64, 14,
     WS_TABSTOP},
    {ControlKind::pushButton, IDC_TIME_DEFAULT, "Default", 92, 45, 64, 14, WS_TABSTOP},
    {ControlKind::radioButton, IDC_TIME_CLOCK, "HH:MM:SS.S", 92, 10, 64, 11, WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, IDC_TIME_SECONDS, "In second", 92, 23, 64, 11, WS_TABSTOP},
    {ControlKind::groupBox, IDC_TIME_INFO, "Information", 6, 108, 152, 48, WS_GROUP},
    {ControlKind::staticText, 0, "Start time", 14, 120, 56, 9},
    {ControlKind::staticText, IDC_TIME_INFO_START, "", 72, 120, 80, 9},
    {ControlKind::staticText, 0, "Stop time", 14, 131, 56, 9},
    {ControlKind::staticText, IDC_TIME_INFO_STOP, "", 72, 131, 80, 9},
    {ControlKind::staticText, 0, "Time interval", 14, 142, 56, 9},
    {ControlKind::staticText, IDC_TIME_INFO_INTERVAL, "", 72, 142, 80, 9},
    {ControlKind::staticText, IDC_TIME_COUNT_TEXT, "", 8, 162, 148, 10},
};

/// Of both pages.
inline constexpr ResizeItem timeIntervalResize[] = {
    {IDC_TIME_INFO, 0, 0, 100, 0},       {IDC_TIME_INFO_START, 0, 0, 100, 0},
    {IDC_TIME_INFO_STOP, 0, 0, 100, 0},  {IDC_TIME_INFO_INTERVAL, 0, 0, 100, 0},
    {IDC_TIME_COUNT_TEXT, 0, 0, 100, 0},
};

/// How many intervals the range is cut into.
inline constexpr DlgItem timeCountItems[] = {
    {ControlKind::staticText, 0, "Enter time interval: ", 8, 10, 72, 10},
    {ControlKind::edit, IDC_TIME_COUNT, "", 82, 8, 48, 13, WS_TABSTOP},
    {ControlKind::upDown, IDC_TIME_COUNT_ARROWS, "", 130, 8, 11, 13},
    {ControlKind::staticText, IDC_TIME_COUNT_NOTE, "", 8, 26, 134, 10},
    {ControlKind::defaultButton, IDOK, "OK", 37, 44, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 92, 44, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem timeCountResize[] = {
    {IDC_TIME_COUNT, 0, 0, 100, 0},      {IDC_TIME_COUNT_ARROWS, 100, 0, 100, 0},
    {IDC_TIME_COUNT_NOTE, 0, 0, 100, 0}, {IDOK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};
inline constexpr DlgTemplate timeCountDialog{IDD_TIME_INTERVAL_COUNT,
                                             "Time intervals",
                                             150,
                                             66,
                                             timeCountItems,
                                             static_cast<int>(std::size(timeCountItems))};

}  // namespace pavane

#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/time_dialogs.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

inline constexpr DlgItem areaSelectItems[] = {
    {ControlKind::placeholder, IDC_AREA_WINDOW, "", 4, 4, 372, 260, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 272, 270, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 326, 270, 50, 14, WS_TABSTOP},
};

inline constexpr ResizeItem areaSelectResize[] = {
    {IDC_AREA_WINDOW, 0, 0, 100, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};

inline constexpr DlgItem tableFindItems[] = {
    {ControlKind::staticText, 0, "&Find:", 8, 10, 24, 10},
    {ControlKind::edit, IDC_TABLE_FIND_TEXT, "", 34, 8, 140, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_TABLE_FIND_CASE, "Match &case", 34, 26, 140, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_TABLE_FIND_WHOLE, "&Whole cell", 34, 38, 140, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_TABLE_FIND_COLUMN, "&This column only", 34, 50, 140, 11,
     WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "Find &next", 182, 8, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_TABLE_FIND_BACK, "Find &previous", 182, 26, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Close", 182, 48, 60, 14, WS_TABSTOP},
};

inline constexpr ResizeItem tableFindResize[] = {
    {IDC_TABLE_FIND_TEXT, 0, 0, 100, 0},
    {IDOK, 100, 0, 100, 0},
    {IDC_TABLE_FIND_BACK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};

inline constexpr DlgItem tableNumberItems[] = {
    {ControlKind::staticText, IDC_TABLE_NUMBER_LABEL, "", 8, 8, 164, 10},
    {ControlKind::edit, IDC_TABLE_NUMBER, "", 8, 20, 164, 13, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 68, 42, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 122, 42, 50, 14, WS_TABSTOP},
};

inline constexpr ResizeItem tableNumberResize[] = {
    {IDC_TABLE_NUMBER_LABEL, 0, 0, 100, 0},
    {IDC_TABLE_NUMBER, 0, 0, 100, 0},
    {IDOK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};

inline constexpr DlgItem freqStepItems[] = {
    {ControlKind::staticText, 0, "&IFs in a group:", 8, 11, 64, 10},
    {ControlKind::spin, IDC_FREQ_STEP, "", 76, 8, 50, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 20, 32, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 76, 32, 50, 14, WS_TABSTOP},
};

/// The dialogs of the library, by identifier.
inline constexpr DlgTemplate libraryDialogs[] = {
    {IDD_AREA_SELECT, "Areas", 380, 290, areaSelectItems,
     static_cast<int>(std::size(areaSelectItems)), WS_THICKFRAME},
    {IDD_TABLE_FIND, "Find in table", 250, 70, tableFindItems,
     static_cast<int>(std::size(tableFindItems))},
    {IDD_TABLE_NUMBER, "", 180, 64, tableNumberItems,
     static_cast<int>(std::size(tableNumberItems))},
    {IDD_FREQ_STEP, "Fixed step", 134, 54, freqStepItems,
     static_cast<int>(std::size(freqStepItems))},
    {IDD_TIME_INTERVALS, "Time Intervals", 270, 126, timeIntervalItems,
     static_cast<int>(std::size(timeIntervalItems))},
    {IDD_TIME_INTERVALS_NARROW, "Time Intervals", 164, 178, narrowTimeIntervalItems,
     static_cast<int>(std::size(narrowTimeIntervalItems))},
    timeCountDialog,
};

}  // namespace pavane

#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/dialog_template.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The page "CLEAN selection".
inline constexpr unsigned IDD_CLEAN_SELECTION = 10800;
inline constexpr unsigned IDC_SELECT_FORM = 10801, IDC_SELECT_START = 10802,
                          IDC_SELECT_STOP = 10803, IDC_SELECT_WHOLE = 10804, IDC_SELECT_IFS = 10805,
                          IDC_SELECT_ADD = 10806, IDC_SELECT_DELETE = 10807, IDC_SELECT_ONE = 10808,
                          IDC_SELECT_EACH = 10809, IDC_SELECT_SPAN_TEXT = 10810,
                          IDC_SELECT_USED_TEXT = 10811, IDC_SELECT_BEAM_TEXT = 10812;

inline constexpr const char* cleanSelectionTitle = "CLEAN selection";

inline constexpr DlgItem cleanSelectionItems[] = {
    {ControlKind::staticText, 0, "&Polarisation", 8, 10, 48, 9},
    {ControlKind::comboBox, IDC_SELECT_FORM, "", 60, 8, 150, 90, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Start", 8, 30, 48, 9},
    {ControlKind::edit, IDC_SELECT_START, "", 60, 28, 64, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "E&nd", 132, 30, 18, 9},
    {ControlKind::edit, IDC_SELECT_STOP, "", 152, 28, 64, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELECT_WHOLE, "&Whole time", 222, 27, 60, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_SELECT_SPAN_TEXT, "", 60, 44, 272, 9},
    {ControlKind::staticText, 0, "&IFs: Space marks those of a group", 8, 60, 324, 9},
    {ControlKind::placeholder, IDC_SELECT_IFS, "", 8, 71, 324, 74, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELECT_ADD, "&Group marked", 8, 150, 66, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELECT_DELETE, "&Delete group", 78, 150, 66, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELECT_ONE, "All in &one", 148, 150, 66, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELECT_EACH, "&Each by itself", 218, 150, 66, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_SELECT_USED_TEXT, "", 8, 171, 324, 9},
    {ControlKind::staticText, IDC_SELECT_BEAM_TEXT, "", 8, 183, 324, 9},
};
inline constexpr ResizeItem cleanSelectionResize[] = {
    {IDC_SELECT_SPAN_TEXT, 0, 0, 100, 0},     {IDC_SELECT_IFS, 0, 0, 100, 100},
    {IDC_SELECT_ADD, 0, 100, 0, 100},         {IDC_SELECT_DELETE, 0, 100, 0, 100},
    {IDC_SELECT_ONE, 0, 100, 0, 100},         {IDC_SELECT_EACH, 0, 100, 0, 100},
    {IDC_SELECT_USED_TEXT, 0, 100, 100, 100}, {IDC_SELECT_BEAM_TEXT, 0, 100, 100, 100},
};
inline constexpr DlgTemplate cleanSelectionPage = {
    IDD_CLEAN_SELECTION,
    cleanSelectionTitle,
    340,
    198,
    cleanSelectionItems,
    static_cast<int>(std::size(cleanSelectionItems))};

}  // namespace pavane

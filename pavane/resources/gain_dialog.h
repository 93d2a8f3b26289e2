#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The dialog of gain files, to write and to read.
inline constexpr unsigned IDD_GAIN_WRITE = 10780, IDD_GAIN_READ = 10781;
inline constexpr unsigned IDC_GAIN_FORM = 10782, IDC_GAIN_FILE = 10783, IDC_GAIN_BROWSE = 10784,
                          IDC_GAIN_LOOK = 10785, IDC_GAIN_LIST = 10786, IDC_GAIN_TITLE = 10787,
                          IDC_GAIN_SUMMARY = 10788;

inline constexpr DlgItem gainWriteItems[] = {
    {ControlKind::staticText, IDC_GAIN_SUMMARY, "", 8, 8, 294, 18},
    {ControlKind::staticText, 0, "F&orm", 8, 32, 26, 9},
    {ControlKind::comboBox, IDC_GAIN_FORM, "", 36, 30, 130, 80, WS_TABSTOP},
    {ControlKind::staticText, 0, "&File", 8, 50, 26, 9},
    {ControlKind::edit, IDC_GAIN_FILE, "", 36, 48, 206, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_GAIN_BROWSE, "&Browse...", 246, 47, 56, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_GAIN_TITLE, "&What this form cannot hold", 8, 68, 294, 9},
    {ControlKind::listBox, IDC_GAIN_LIST, "", 8, 79, 294, 60, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "W&rite", 198, 146, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 252, 146, 50, 14, WS_TABSTOP},
};
inline constexpr DlgItem gainReadItems[] = {
    {ControlKind::staticText, 0, "F&orm", 8, 10, 26, 9},
    {ControlKind::comboBox, IDC_GAIN_FORM, "", 36, 8, 130, 80, WS_TABSTOP},
    {ControlKind::staticText, 0, "&File", 8, 28, 26, 9},
    {ControlKind::edit, IDC_GAIN_FILE, "", 36, 26, 206, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_GAIN_BROWSE, "&Browse...", 246, 25, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_GAIN_LOOK, "&Look at it", 36, 44, 60, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_GAIN_SUMMARY, "", 102, 44, 200, 18},
    {ControlKind::staticText, IDC_GAIN_TITLE, "&What is found", 8, 68, 294, 9},
    {ControlKind::listBox, IDC_GAIN_LIST, "", 8, 79, 294, 60, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "&Take", 198, 146, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 252, 146, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem gainFileResize[] = {
    {IDC_GAIN_SUMMARY, 0, 0, 100, 0},  {IDC_GAIN_FILE, 0, 0, 100, 0},
    {IDC_GAIN_BROWSE, 100, 0, 100, 0}, {IDC_GAIN_TITLE, 0, 0, 100, 0},
    {IDC_GAIN_LIST, 0, 0, 100, 100},   {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};
inline constexpr DlgTemplate gainWriteDialog = {IDD_GAIN_WRITE,
                                                "Write gains",
                                                310,
                                                166,
                                                gainWriteItems,
                                                static_cast<int>(std::size(gainWriteItems)),
                                                WS_THICKFRAME};
inline constexpr DlgTemplate gainReadDialog = {
    IDD_GAIN_READ, "Read gains",  310,
    166,           gainReadItems, static_cast<int>(std::size(gainReadItems)),
    WS_THICKFRAME};

inline constexpr const char* gainNothingLost = "Nothing is lost.";
inline constexpr const char* gainLossTitle = "&What this form cannot hold";
inline constexpr const char* gainFaultTitle = "These gains cannot be used";
inline constexpr const char* gainNoteTitle = "&What is to be known of them";
inline constexpr const char* gainFoundTitle = "&What is found";
inline constexpr const char* gainNoFile = "A file has to be named.";

}  // namespace pavane

#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "pavane/resources/progress_messages.h"
#include "platform/controls.h"
#include "platform/dialog_template.h"
#include "platform/message.h"

#include <iterator>

namespace pavane
{

// How far jobs are: the chosen one on top, then all of them, then what it has said.
inline constexpr unsigned IDC_PROGRESS_TEXT = 10550;
inline constexpr unsigned IDC_PROGRESS_BAR = 10551;
inline constexpr unsigned IDC_PROGRESS_LEFT = 10552;
inline constexpr unsigned IDC_PROGRESS_DETAILS = 10553;
inline constexpr unsigned IDC_PROGRESS_JOBS = 10554;
inline constexpr unsigned IDC_PROGRESS_SAID = 10555;

inline constexpr DlgItem progressItems[] = {
    {ControlKind::placeholder, IDC_PROGRESS_TEXT, "", 8, 8, 244, 10},
    {ControlKind::placeholder, IDC_PROGRESS_BAR, "", 8, 21, 244, 9},
    {ControlKind::staticText, IDC_PROGRESS_LEFT, "", 8, 34, 244, 10, SS_ENDELLIPSIS},
    {ControlKind::pushButton, IDC_PROGRESS_DETAILS, showDetails, 8, 49, 60, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 196, 49, 56, 14, WS_TABSTOP},
    {ControlKind::placeholder, IDC_PROGRESS_JOBS, "", 8, 71, 244, 44},
    {ControlKind::placeholder, IDC_PROGRESS_SAID, "", 8, 121, 244, 66, WS_TABSTOP},
};
/// Rows of the template that are folded away when they have nothing to show.
inline constexpr int progressJobsTop = 69, progressJobsBottom = 119, progressSaidTop = 119,
                     progressSaidBottom = 193;
inline constexpr DlgTemplate progressTemplate = {0,   pleaseWait,    260,
                                                 193, progressItems, std::size(progressItems)};
inline constexpr ResizeItem progressResize[] = {
    {IDC_PROGRESS_TEXT, 0, 0, 100, 0},   {IDC_PROGRESS_BAR, 0, 0, 100, 0},
    {IDC_PROGRESS_LEFT, 0, 0, 100, 0},   {IDC_PROGRESS_DETAILS, 0, 0, 0, 0},
    {IDCANCEL, 100, 0, 100, 0},          {IDC_PROGRESS_JOBS, 0, 0, 100, 0},
    {IDC_PROGRESS_SAID, 0, 0, 100, 100},
};

}  // namespace pavane

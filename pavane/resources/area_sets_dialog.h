#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The dialog "CLEAN areas".
inline constexpr unsigned IDD_AREA_SETS = 10840;
inline constexpr unsigned IDC_SETS_LIST = 10841, IDC_SETS_NAME = 10842, IDC_SETS_KEEP = 10843,
                          IDC_SETS_RENAME = 10844, IDC_SETS_USE = 10845, IDC_SETS_REMOVE = 10846,
                          IDC_SETS_READ = 10847, IDC_SETS_WRITE = 10848, IDC_SETS_NOTE = 10849,
                          IDC_SETS_NAME_LABEL = 10850;

inline constexpr DlgItem areaSetsItems[] = {
    {ControlKind::staticText, 0, "&Areas and sets of them", 8, 8, 180, 9},
    {ControlKind::listBox, IDC_SETS_LIST, "", 8, 19, 180, 104, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_USE, "&Use on the map", 194, 19, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_REMOVE, "Remo&ve", 194, 37, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_READ, "&Read file...", 194, 61, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_WRITE, "&Write file...", 194, 79, 72, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETS_NAME_LABEL, "&Name", 8, 132, 24, 9},
    {ControlKind::edit, IDC_SETS_NAME, "", 34, 130, 154, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_KEEP, "&Keep the map's", 194, 129, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETS_RENAME, "R&ename", 194, 147, 72, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETS_NOTE, "", 8, 149, 180, 27},
    {ControlKind::defaultButton, IDOK, "OK", 162, 180, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 216, 180, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem areaSetsResize[] = {
    {IDC_SETS_NAME_LABEL, 0, 100, 0, 100},
    {IDC_SETS_LIST, 0, 0, 100, 100},
    {IDC_SETS_USE, 100, 0, 100, 0},
    {IDC_SETS_REMOVE, 100, 0, 100, 0},
    {IDC_SETS_READ, 100, 0, 100, 0},
    {IDC_SETS_WRITE, 100, 0, 100, 0},
    {IDC_SETS_NAME, 0, 100, 100, 100},
    {IDC_SETS_KEEP, 100, 100, 100, 100},
    {IDC_SETS_RENAME, 100, 100, 100, 100},
    {IDC_SETS_NOTE, 0, 100, 100, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};
inline constexpr DlgTemplate areaSetsDialog = {
    IDD_AREA_SETS, "CLEAN areas", 274,
    202,           areaSetsItems, static_cast<int>(std::size(areaSetsItems)),
    WS_THICKFRAME};

inline constexpr const char* areaFileFilter =
    "Areas|*.areas|Polygons of cells|*.cma|DS9 regions|*.reg|CASA regions|*.crtf|"
    "Windows of Difmap|*.win";
inline constexpr const char* anyAreaFileFilter =
    "Files of areas|*.areas;*.cma;*.reg;*.crtf;*.win|All files|*";

}  // namespace pavane

#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/controls.h"
#include "platform/dialog_template.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The page "Self-calibration".
inline constexpr unsigned IDD_SELFCAL = 10750;
inline constexpr unsigned IDC_SELFCAL_KIND = 10751, IDC_SELFCAL_WHOLE = 10752,
                          IDC_SELFCAL_SECONDS = 10753, IDC_SELFCAL_SCALED = 10754,
                          IDC_SELFCAL_RATIO = 10755, IDC_SELFCAL_ANTENNAS = 10756,
                          IDC_SELFCAL_LEAST_UV = 10757, IDC_SELFCAL_MOST_UV = 10758,
                          IDC_SELFCAL_MODEL = 10759, IDC_SELFCAL_WEIGHTS = 10760,
                          IDC_SELFCAL_KEEP = 10761, IDC_SELFCAL_REFERENCES = 10762,
                          IDC_SELFCAL_UP = 10763, IDC_SELFCAL_DOWN = 10764,
                          IDC_SELFCAL_COUNT_TEXT = 10765, IDC_SELFCAL_FIRST_TEXT = 10766,
                          IDC_SELFCAL_SOLVE_FRAME = 10767, IDC_SELFCAL_MODEL_FRAME = 10768,
                          IDC_SELFCAL_DATA_FRAME = 10769, IDC_SELFCAL_REFERENCE_FRAME = 10770,
                          IDC_SELFCAL_USE_WEIGHTS = 10771;

inline constexpr const char* selfCalTitle = "Self-calibration";

inline constexpr DlgItem selfCalItems[] = {
    {ControlKind::groupBox, IDC_SELFCAL_SOLVE_FRAME, "Gains", 6, 4, 186, 118, WS_GROUP},
    {ControlKind::staticText, 0, "&Solve for", 14, 18, 58, 9},
    {ControlKind::comboBox, IDC_SELFCAL_KIND, "", 74, 16, 110, 60, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Interval", 14, 36, 58, 9},
    {ControlKind::edit, IDC_SELFCAL_SECONDS, "", 74, 34, 44, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "s", 121, 36, 8, 9},
    {ControlKind::checkBox, IDC_SELFCAL_WHOLE, "&Whole time", 132, 35, 56, 11, WS_TABSTOP},
    {ControlKind::staticText, 0, "Least &ratio", 14, 54, 58, 9},
    {ControlKind::edit, IDC_SELFCAL_RATIO, "", 74, 52, 44, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "|g| / error", 121, 54, 62, 9},
    {ControlKind::staticText, 0, "Least an&tennas", 14, 72, 60, 9},
    {ControlKind::edit, IDC_SELFCAL_ANTENNAS, "", 74, 70, 44, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_SELFCAL_SCALED, "S&cale amplitudes to a mean of 1", 14, 89, 170, 11,
     WS_TABSTOP},
    {ControlKind::checkBox, IDC_SELFCAL_USE_WEIGHTS, "Use the weig&hts of the data", 14, 105, 170,
     11, WS_TABSTOP},
    {ControlKind::groupBox, IDC_SELFCAL_MODEL_FRAME, "Model", 6, 126, 186, 50, WS_GROUP},
    {ControlKind::staticText, 0, "&Model", 14, 140, 58, 9},
    {ControlKind::comboBox, IDC_SELFCAL_MODEL, "", 74, 138, 110, 50, WS_TABSTOP},
    {ControlKind::staticText, 0, "&uv distance", 14, 158, 58, 9},
    {ControlKind::edit, IDC_SELFCAL_LEAST_UV, "", 74, 156, 38, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "to", 115, 158, 10, 9},
    {ControlKind::edit, IDC_SELFCAL_MOST_UV, "", 126, 156, 38, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "M\u03bb", 167, 158, 16, 9},
    {ControlKind::groupBox, IDC_SELFCAL_DATA_FRAME, "Corrected data", 6, 180, 186, 42, WS_GROUP},
    {ControlKind::checkBox, IDC_SELFCAL_WEIGHTS, "Wei&ghts follow the gains", 14, 192, 170, 11,
     WS_TABSTOP},
    {ControlKind::checkBox, IDC_SELFCAL_KEEP, "&Keep data of failed solutions", 14, 206, 170, 11,
     WS_TABSTOP},
    {ControlKind::groupBox, IDC_SELFCAL_REFERENCE_FRAME, "Reference antennas", 198, 4, 134, 218,
     WS_GROUP},
    {ControlKind::staticText, 0, "Mark&ed, in this order", 206, 16, 118, 9},
    {ControlKind::listBox, IDC_SELFCAL_REFERENCES, "", 206, 27, 118, 152, WS_TABSTOP | LBS_CHECKS},
    {ControlKind::pushButton, IDC_SELFCAL_UP, "Move u&p", 206, 184, 57, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SELFCAL_DOWN, "Move &down", 267, 184, 57, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_SELFCAL_FIRST_TEXT, "", 206, 202, 120, 18},
    {ControlKind::staticText, IDC_SELFCAL_COUNT_TEXT, "", 8, 227, 324, 9},
};
inline constexpr ResizeItem selfCalResize[] = {
    {IDC_SELFCAL_REFERENCE_FRAME, 0, 0, 100, 100},
    {IDC_SELFCAL_REFERENCES, 0, 0, 100, 100},
    {IDC_SELFCAL_UP, 0, 100, 0, 100},
    {IDC_SELFCAL_DOWN, 0, 100, 0, 100},
    {IDC_SELFCAL_FIRST_TEXT, 0, 100, 100, 100},
    {IDC_SELFCAL_COUNT_TEXT, 0, 100, 100, 100},
};
inline constexpr DlgTemplate selfCalPage = {
    IDD_SELFCAL, selfCalTitle, 338, 240, selfCalItems, static_cast<int>(std::size(selfCalItems))};

}  // namespace pavane

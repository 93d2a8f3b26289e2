#pragma once

#include "pavane/resources/play_ids.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

/// Per cents of the buttons from IDC_PLAY_90 on.
inline constexpr double playPerCents[] = {90, 95, 98, 99, 99.5, 99.9};

/// Range and curve at the left, palettes at the right.
inline constexpr DlgItem palettePlayItems[] = {
    {ControlKind::placeholder, IDC_PLAY_HISTOGRAM, "", 8, 8, 222, 104, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_LOW_LABEL, "&Low", 8, 118, 26, 9},
    {ControlKind::edit, IDC_PLAY_LOW, "", 36, 116, 58, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_HIGH_LABEL, "&High", 100, 118, 26, 9},
    {ControlKind::edit, IDC_PLAY_HIGH, "", 126, 116, 58, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_UNIT, "", 188, 118, 42, 9},
    {ControlKind::staticText, IDC_PLAY_SCALE_LABEL, "&Scale", 8, 136, 26, 9},
    {ControlKind::comboBox, IDC_PLAY_SCALE, "", 36, 134, 76, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_CELLS_LABEL, "&From", 120, 136, 24, 9},
    {ControlKind::comboBox, IDC_PLAY_CELLS, "", 146, 134, 84, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_90, "90 %", 8, 153, 34, 14, WS_TABSTOP | WS_GROUP},
    {ControlKind::pushButton, IDC_PLAY_95, "95 %", 45, 153, 35, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_98, "98 %", 83, 153, 34, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_99, "99 %", 120, 153, 35, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_995, "99.5 %", 158, 153, 34, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_999, "99.9 %", 195, 153, 35, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_ALL_CELLS, "L&east to greatest", 8, 170, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_NOISE, "-3 to +30 &noise", 83, 170, 72, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_ZSCALE, "&zscale", 158, 170, 72, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_CONTRAST_LABEL, "&Contrast", 8, 192, 34, 9, WS_GROUP},
    {ControlKind::edit, IDC_PLAY_CONTRAST, "", 44, 190, 36, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_BIAS_LABEL, "&Bias", 88, 192, 20, 9},
    {ControlKind::edit, IDC_PLAY_BIAS, "", 110, 190, 36, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_GAMMA_LABEL, "&Gamma", 154, 192, 34, 9},
    {ControlKind::edit, IDC_PLAY_GAMMA, "", 190, 190, 40, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_PLAY_INVERT, "&Invert", 8, 208, 60, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_PLAY_BY_PLANE, "A range for each plane", 88, 208, 142, 11,
     WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_PALETTES_LABEL, "&Palette", 238, 8, 184, 9},
    {ControlKind::listBox, IDC_PLAY_PALETTES, "", 238, 18, 184, 150, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_SAVE, "Sa&ve palette as...", 238, 173, 184, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PLAY_FOR_ALL, "&Use for all maps", 238, 190, 184, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_PLAY_NOTE, "", 8, 223, 414, 9},
    {ControlKind::pushButton, IDC_PLAY_RESET, "&Reset", 242, 237, 56, 14, WS_TABSTOP | WS_GROUP},
    {ControlKind::defaultButton, IDOK, "Close", 304, 237, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 366, 237, 56, 14, WS_TABSTOP},
};
inline constexpr DlgTemplate palettePlayDialog{IDD_PALETTE_PLAY,
                                               "Colours",
                                               430,
                                               259,
                                               palettePlayItems,
                                               static_cast<int>(std::size(palettePlayItems)),
                                               WS_THICKFRAME};

}  // namespace pavane

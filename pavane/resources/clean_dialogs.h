#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The page "CLEAN parameters".
inline constexpr unsigned IDD_CLEAN_PARAMETERS = 10720;
inline constexpr unsigned IDC_CLEAN_WIDTH = 10721, IDC_CLEAN_HEIGHT = 10722, IDC_CLEAN_CELL = 10723,
                          IDC_CLEAN_PROPOSAL = 10724, IDC_CLEAN_PROPOSAL_TEXT = 10725,
                          IDC_CLEAN_WEIGHTING = 10726, IDC_CLEAN_ROBUST = 10727,
                          IDC_CLEAN_TAPER = 10728, IDC_CLEAN_SHIFT_X = 10729,
                          IDC_CLEAN_SHIFT_Y = 10730, IDC_CLEAN_GAIN = 10731,
                          IDC_CLEAN_MAJOR_GAIN = 10732, IDC_CLEAN_ITERATIONS = 10733,
                          IDC_CLEAN_THRESHOLD = 10734, IDC_CLEAN_UNIT = 10735,
                          IDC_CLEAN_AUTO_MASK = 10736, IDC_CLEAN_MASK_LEVEL = 10737,
                          IDC_CLEAN_MULTISCALE = 10738, IDC_CLEAN_EACH_CYCLE = 10739,
                          IDC_CLEAN_EXTENT_TEXT = 10740, IDC_CLEAN_BEAM_TEXT = 10741,
                          IDC_CLEAN_MAP_FRAME = 10742, IDC_CLEAN_ROUND_FRAME = 10743;

inline constexpr const char* cleanParameterTitle = "CLEAN parameters";

inline constexpr DlgItem cleanParameterItems[] = {
    {ControlKind::groupBox, IDC_CLEAN_MAP_FRAME, "Map", 6, 4, 176, 172, WS_GROUP},
    {ControlKind::staticText, 0, "&Width", 14, 18, 48, 9},
    {ControlKind::edit, IDC_CLEAN_WIDTH, "", 64, 16, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "cells", 118, 18, 24, 9},
    {ControlKind::staticText, 0, "&Height", 14, 36, 48, 9},
    {ControlKind::edit, IDC_CLEAN_HEIGHT, "", 64, 34, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "cells", 118, 36, 24, 9},
    {ControlKind::staticText, 0, "&Cell", 14, 54, 48, 9},
    {ControlKind::edit, IDC_CLEAN_CELL, "", 64, 52, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "mas", 118, 54, 16, 9},
    {ControlKind::pushButton, IDC_CLEAN_PROPOSAL, "Take &it", 136, 51, 38, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_CLEAN_PROPOSAL_TEXT, "", 14, 68, 162, 9},
    {ControlKind::staticText, 0, "Wei&ghting", 14, 84, 48, 9},
    {ControlKind::comboBox, IDC_CLEAN_WEIGHTING, "", 64, 82, 70, 60, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Robust", 14, 102, 48, 9},
    {ControlKind::edit, IDC_CLEAN_ROBUST, "", 64, 100, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "-2 to 2", 118, 102, 56, 9},
    {ControlKind::staticText, 0, "Ta&per", 14, 120, 48, 9},
    {ControlKind::edit, IDC_CLEAN_TAPER, "", 64, 118, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "mas, 0: none", 118, 120, 58, 9},
    {ControlKind::staticText, 0, "Centre &east", 14, 138, 48, 9},
    {ControlKind::edit, IDC_CLEAN_SHIFT_X, "", 64, 136, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "mas", 118, 138, 24, 9},
    {ControlKind::staticText, 0, "and &north", 14, 156, 48, 9},
    {ControlKind::edit, IDC_CLEAN_SHIFT_Y, "", 64, 154, 50, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "mas", 118, 156, 24, 9},
    {ControlKind::groupBox, IDC_CLEAN_ROUND_FRAME, "Round", 188, 4, 160, 172, WS_GROUP},
    {ControlKind::staticText, 0, "Gain, min&or", 196, 18, 50, 9},
    {ControlKind::edit, IDC_CLEAN_GAIN, "", 248, 16, 44, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Gain, ma&jor", 196, 36, 50, 9},
    {ControlKind::edit, IDC_CLEAN_MAJOR_GAIN, "", 248, 34, 44, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Iterations, &limit", 196, 54, 52, 9},
    {ControlKind::edit, IDC_CLEAN_ITERATIONS, "", 248, 52, 44, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Threshold", 196, 72, 50, 9},
    {ControlKind::edit, IDC_CLEAN_THRESHOLD, "", 248, 70, 44, 13, WS_TABSTOP},
    {ControlKind::comboBox, IDC_CLEAN_UNIT, "", 296, 70, 44, 50, WS_TABSTOP},
    {ControlKind::checkBox, IDC_CLEAN_AUTO_MASK, "A&utomatic mask, sigma", 196, 91, 96, 11,
     WS_TABSTOP},
    {ControlKind::edit, IDC_CLEAN_MASK_LEVEL, "", 296, 90, 44, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_CLEAN_MULTISCALE, "&Multi-scale", 196, 109, 144, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_CLEAN_EACH_CYCLE, "&Stop after each cycle", 196, 127, 144, 11,
     WS_TABSTOP},
    {ControlKind::staticText, 0,
     "Automatic mask and multi-scale are off then, since each cycle "
     "begins anew.",
     196, 140, 146, 30},
    {ControlKind::staticText, IDC_CLEAN_EXTENT_TEXT, "", 8, 182, 340, 9},
    {ControlKind::staticText, IDC_CLEAN_BEAM_TEXT, "", 8, 194, 340, 9},
};
inline constexpr ResizeItem cleanParameterResize[] = {
    {IDC_CLEAN_ROUND_FRAME, 0, 0, 100, 0},
    {IDC_CLEAN_EXTENT_TEXT, 0, 0, 100, 0},
    {IDC_CLEAN_BEAM_TEXT, 0, 0, 100, 0},
};
inline constexpr DlgTemplate cleanParameterPage = {
    IDD_CLEAN_PARAMETERS,
    cleanParameterTitle,
    354,
    208,
    cleanParameterItems,
    static_cast<int>(std::size(cleanParameterItems))};

}  // namespace pavane

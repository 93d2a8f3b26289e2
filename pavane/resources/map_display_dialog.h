#pragma once

#include "pavane/resources/map_display_ids.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace pavane
{

inline constexpr int displayPageWidth = 232;
inline constexpr int displayPageHeight = 150;

inline constexpr DlgItem displayColoursItems[] = {
    {ControlKind::staticText, 0, "&Scale", 8, 12, 50, 9},
    {ControlKind::comboBox, IDC_COLOURS_SCALE, "", 62, 10, 100, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Palette", 8, 30, 50, 9},
    {ControlKind::comboBox, IDC_COLOURS_PALETTE, "", 62, 28, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Low", 8, 50, 50, 9},
    {ControlKind::edit, IDC_COLOURS_LOW, "", 62, 48, 60, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&High", 134, 50, 26, 9},
    {ControlKind::edit, IDC_COLOURS_HIGH, "", 164, 48, 60, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "Without both: least to greatest", 62, 63, 162, 9},
    {ControlKind::staticText, 0, "&Contrast", 8, 82, 50, 9},
    {ControlKind::edit, IDC_COLOURS_CONTRAST, "", 62, 80, 60, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Bias", 134, 82, 26, 9},
    {ControlKind::edit, IDC_COLOURS_BIAS, "", 164, 80, 60, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Gamma", 8, 100, 50, 9},
    {ControlKind::edit, IDC_COLOURS_GAMMA, "", 62, 98, 60, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_COLOURS_INVERT, "&Invert", 134, 99, 90, 11, WS_TABSTOP},
    {ControlKind::staticText, IDC_DISPLAY_NOTE, "", 8, 136, 216, 9},
};
inline constexpr DlgTemplate displayColoursPage{
    IDD_DISPLAY_COLOURS, "Colours",           displayPageWidth,
    displayPageHeight,   displayColoursItems, static_cast<int>(std::size(displayColoursItems))};

inline constexpr DlgItem displayContoursItems[] = {
    {ControlKind::staticText, 0, "L&evels are", 8, 12, 50, 9},
    {ControlKind::comboBox, IDC_CONTOURS_UNIT, "", 62, 10, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Levels", 8, 30, 50, 9},
    {ControlKind::edit, IDC_CONTOURS_LEVELS, "", 62, 28, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "With commas between them: -3,3,6,12", 62, 43, 162, 9},
    {ControlKind::staticText, 0, "&Colour", 8, 62, 50, 9},
    {ControlKind::comboBox, IDC_CONTOURS_COLOUR, "", 62, 60, 110, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_CONTOURS_MORE, "&More...", 178, 59, 46, 14, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Width", 8, 80, 50, 9},
    {ControlKind::edit, IDC_CONTOURS_WIDTH, "", 62, 78, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "pixels; 0: as the letters", 108, 80, 116, 9},
    {ControlKind::staticText, IDC_DISPLAY_NOTE, "", 8, 136, 216, 9},
};
inline constexpr DlgTemplate displayContoursPage{
    IDD_DISPLAY_CONTOURS, "Contours",           displayPageWidth,
    displayPageHeight,    displayContoursItems, static_cast<int>(std::size(displayContoursItems))};

/// Of the page and, with buttons below, of the dialog.
inline constexpr DlgItem displayBeamItems[] = {
    {ControlKind::staticText, IDC_BEAM_LABELS, "&Major", 8, 12, 34, 9},
    {ControlKind::edit, IDC_BEAM_MAJOR, "", 46, 10, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_BEAM_LABELS + 1, "M&inor", 8, 30, 34, 9},
    {ControlKind::edit, IDC_BEAM_MINOR, "", 46, 28, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_BEAM_LABELS + 2, "&Unit", 8, 48, 34, 9},
    {ControlKind::comboBox, IDC_BEAM_UNIT, "", 46, 46, 70, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_BEAM_LABELS + 3, "&Angle", 8, 66, 34, 9},
    {ControlKind::edit, IDC_BEAM_ANGLE, "", 46, 64, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_BEAM_LABELS + 4, "deg", 102, 66, 20, 9},
    {ControlKind::staticText, IDC_BEAM_LABELS + 5, "Fi&lled", 8, 84, 34, 9},
    {ControlKind::comboBox, IDC_BEAM_FILL, "", 46, 82, 70, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_BEAM_LABELS + 6, "&Corner", 8, 102, 34, 9},
    {ControlKind::comboBox, IDC_BEAM_CORNER, "", 46, 100, 70, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_BEAM_FIT, "&Fit", 46, 118, 70, 14, WS_TABSTOP},
    {ControlKind::placeholder, IDC_BEAM_VIEW, "", 128, 10, 96, 122},
    {ControlKind::staticText, IDC_DISPLAY_NOTE, "", 8, 136, 216, 9},
};
inline constexpr DlgTemplate displayBeamPage{
    IDD_DISPLAY_BEAM,  "Beam",           displayPageWidth,
    displayPageHeight, displayBeamItems, static_cast<int>(std::size(displayBeamItems))};

inline constexpr auto beamItems = [] {
    std::array<DlgItem, std::size(displayBeamItems) + 2> items{};
    std::copy(std::begin(displayBeamItems), std::end(displayBeamItems), items.begin());
    const auto buttons = items.end() - 2;
    buttons[0] = {ControlKind::defaultButton, IDOK, "OK", 106, 152, 56, 14, WS_TABSTOP | WS_GROUP};
    buttons[1] = {ControlKind::pushButton, IDCANCEL, "Cancel", 168, 152, 56, 14, WS_TABSTOP};
    return items;
}();
inline constexpr DlgTemplate beamDialog{IDD_BEAM,         "Beam",
                                        displayPageWidth, 174,
                                        beamItems.data(), static_cast<int>(beamItems.size()),
                                        WS_THICKFRAME};

inline constexpr DlgItem displayAxesItems[] = {
    {ControlKind::checkBox, IDC_AXES_GRID_X, "Grid at &x ticks", 8, 10, 104, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_AXES_GRID_Y, "Grid at &y ticks", 120, 10, 104, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_AXES_INSIDE, "Ticks &inside", 8, 25, 104, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_AXES_MINOR, "&Minor ticks", 120, 25, 104, 11, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Header", 8, 44, 50, 9},
    {ControlKind::edit, IDC_AXES_HEADER, "", 62, 42, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Across", 8, 61, 50, 9},
    {ControlKind::edit, IDC_AXES_X, "", 62, 59, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Up", 8, 78, 50, 9},
    {ControlKind::edit, IDC_AXES_Y, "", 62, 76, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Values", 8, 95, 50, 9},
    {ControlKind::edit, IDC_AXES_VALUE, "", 62, 93, 162, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "U&nit", 8, 112, 50, 9},
    {ControlKind::edit, IDC_AXES_UNIT, "", 62, 110, 80, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_DISPLAY_NOTE, "", 8, 136, 216, 9},
};
inline constexpr DlgTemplate displayAxesPage{
    IDD_DISPLAY_AXES,  "Axes and titles", displayPageWidth,
    displayPageHeight, displayAxesItems,  static_cast<int>(std::size(displayAxesItems))};

inline constexpr DlgItem displayPresetsItems[] = {
    {ControlKind::staticText, 0, "&Presets", 8, 10, 130, 9},
    {ControlKind::listBox, IDC_PRESETS_LIST, "", 8, 20, 130, 80, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRESETS_USE, "&Use", 146, 20, 78, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRESETS_REMOVE, "&Remove", 146, 38, 78, 14, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Name", 8, 108, 30, 9},
    {ControlKind::edit, IDC_PRESETS_NAME, "", 40, 106, 98, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRESETS_KEEP, "&Keep", 146, 105, 78, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRESETS_FOR_ALL, "&To all maps", 146, 78, 78, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_DISPLAY_NOTE, "", 8, 136, 216, 9},
};
inline constexpr DlgTemplate displayPresetsPage{
    IDD_DISPLAY_PRESETS, "Presets",           displayPageWidth,
    displayPageHeight,   displayPresetsItems, static_cast<int>(std::size(displayPresetsItems))};

}  // namespace pavane

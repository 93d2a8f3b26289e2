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

/// A control that Tab reaches, of the usual height.
constexpr DlgItem displayControl(ControlKind kind, unsigned id, const char* text, int x, int y,
                                 int cx)
{
    const int cy = kind == ControlKind::pushButton ? 14 : kind == ControlKind::checkBox ? 11 : 13;
    return {kind, id, text, x, y, cx, cy, WS_TABSTOP};
}

/// A text; one beside a control stands 2 units lower than that.
constexpr DlgItem displayText(const char* text, int x, int y, int cx, unsigned id = 0)
{
    return {ControlKind::staticText, id, text, x, y, cx, 9};
}

/// Where a page says what it cannot take.
inline constexpr DlgItem displayNote = displayText("", 8, 136, 216, IDC_DISPLAY_NOTE);

template <std::size_t count>
constexpr DlgTemplate displayPage(unsigned id, const char* title, const DlgItem (&items)[count])
{
    return {id, title, displayPageWidth, displayPageHeight, items, static_cast<int>(count)};
}

inline constexpr DlgItem displayColoursItems[] = {
    displayText("&Scale", 8, 12, 50),
    displayControl(ControlKind::comboBox, IDC_COLOURS_SCALE, "", 62, 10, 100),
    displayText("&Palette", 8, 30, 50),
    displayControl(ControlKind::comboBox, IDC_COLOURS_PALETTE, "", 62, 28, 162),
    displayText("&Low", 8, 50, 50),
    displayControl(ControlKind::edit, IDC_COLOURS_LOW, "", 62, 48, 60),
    displayText("&High", 134, 50, 26),
    displayControl(ControlKind::edit, IDC_COLOURS_HIGH, "", 164, 48, 60),
    displayText("Without both: least to greatest", 62, 63, 162),
    displayText("&Contrast", 8, 82, 50),
    displayControl(ControlKind::edit, IDC_COLOURS_CONTRAST, "", 62, 80, 60),
    displayText("&Bias", 134, 82, 26),
    displayControl(ControlKind::edit, IDC_COLOURS_BIAS, "", 164, 80, 60),
    displayText("&Gamma", 8, 100, 50),
    displayControl(ControlKind::edit, IDC_COLOURS_GAMMA, "", 62, 98, 60),
    displayControl(ControlKind::checkBox, IDC_COLOURS_INVERT, "&Invert", 134, 99, 90),
    displayNote,
};
inline constexpr DlgTemplate displayColoursPage =
    displayPage(IDD_DISPLAY_COLOURS, "Colours", displayColoursItems);

inline constexpr DlgItem displayContoursItems[] = {
    displayText("L&evels are", 8, 12, 50),
    displayControl(ControlKind::comboBox, IDC_CONTOURS_UNIT, "", 62, 10, 162),
    displayText("&Levels", 8, 30, 50),
    displayControl(ControlKind::edit, IDC_CONTOURS_LEVELS, "", 62, 28, 162),
    displayText("With commas between them: -3,3,6,12", 62, 43, 162),
    displayText("&Colour", 8, 62, 50),
    displayControl(ControlKind::comboBox, IDC_CONTOURS_COLOUR, "", 62, 60, 110),
    displayControl(ControlKind::pushButton, IDC_CONTOURS_MORE, "&More...", 178, 59, 46),
    displayText("&Width", 8, 80, 50),
    displayControl(ControlKind::edit, IDC_CONTOURS_WIDTH, "", 62, 78, 40),
    displayText("pixels; 0: as the letters", 108, 80, 116),
    displayNote,
};
inline constexpr DlgTemplate displayContoursPage =
    displayPage(IDD_DISPLAY_CONTOURS, "Contours", displayContoursItems);

/// Of the page and, with buttons below, of the dialog.
inline constexpr DlgItem displayBeamItems[] = {
    displayText("&Major", 8, 12, 34, IDC_BEAM_LABELS),
    displayControl(ControlKind::edit, IDC_BEAM_MAJOR, "", 46, 10, 52),
    displayText("M&inor", 8, 30, 34, IDC_BEAM_LABELS + 1),
    displayControl(ControlKind::edit, IDC_BEAM_MINOR, "", 46, 28, 52),
    displayText("&Unit", 8, 48, 34, IDC_BEAM_LABELS + 2),
    displayControl(ControlKind::comboBox, IDC_BEAM_UNIT, "", 46, 46, 70),
    displayText("An&gle", 8, 66, 34, IDC_BEAM_LABELS + 3),
    displayControl(ControlKind::edit, IDC_BEAM_ANGLE, "", 46, 64, 52),
    displayText("deg", 102, 66, 20, IDC_BEAM_LABELS + 4),
    displayText("Fi&lled", 8, 84, 34, IDC_BEAM_LABELS + 5),
    displayControl(ControlKind::comboBox, IDC_BEAM_FILL, "", 46, 82, 70),
    displayText("&Corner", 8, 102, 34, IDC_BEAM_LABELS + 6),
    displayControl(ControlKind::comboBox, IDC_BEAM_CORNER, "", 46, 100, 70),
    displayControl(ControlKind::pushButton, IDC_BEAM_FIT, "&Fit", 46, 118, 70),
    {ControlKind::placeholder, IDC_BEAM_VIEW, "", 128, 10, 96, 122},
    displayNote,
};
inline constexpr DlgTemplate displayBeamPage =
    displayPage(IDD_DISPLAY_BEAM, "Beam", displayBeamItems);

inline constexpr auto beamItems = [] {
    std::array<DlgItem, std::size(displayBeamItems) + 2> items{};
    std::copy(std::begin(displayBeamItems), std::end(displayBeamItems), items.begin());
    const auto buttons = items.end() - 2;
    buttons[0] = displayControl(ControlKind::defaultButton, IDOK, "OK", 106, 152, 56);
    buttons[1] = displayControl(ControlKind::pushButton, IDCANCEL, "Cancel", 168, 152, 56);
    buttons[0].cy = buttons[1].cy;
    buttons[0].style |= WS_GROUP;
    return items;
}();
inline constexpr DlgTemplate beamDialog{IDD_BEAM,         "Beam",
                                        displayPageWidth, 174,
                                        beamItems.data(), static_cast<int>(beamItems.size()),
                                        WS_THICKFRAME};

inline constexpr DlgItem displayAxesItems[] = {
    displayControl(ControlKind::checkBox, IDC_AXES_GRID_X, "Grid at &x ticks", 8, 10, 104),
    displayControl(ControlKind::checkBox, IDC_AXES_GRID_Y, "Grid at &y ticks", 120, 10, 104),
    displayControl(ControlKind::checkBox, IDC_AXES_INSIDE, "Ticks &inside", 8, 25, 104),
    displayControl(ControlKind::checkBox, IDC_AXES_MINOR, "&Minor ticks", 120, 25, 104),
    displayText("&Header", 8, 44, 50),
    displayControl(ControlKind::edit, IDC_AXES_HEADER, "", 62, 42, 118),
    displayControl(ControlKind::pushButton, IDC_AXES_USUAL, "Usua&l", 184, 41, 40),
    displayText("Ac&ross", 8, 61, 50),
    displayControl(ControlKind::edit, IDC_AXES_X, "", 62, 59, 162),
    displayText("&Up", 8, 78, 50),
    displayControl(ControlKind::edit, IDC_AXES_Y, "", 62, 76, 162),
    displayText("&Values", 8, 95, 50),
    displayControl(ControlKind::edit, IDC_AXES_VALUE, "", 62, 93, 162),
    displayText("U&nit", 8, 112, 50),
    displayControl(ControlKind::edit, IDC_AXES_UNIT, "", 62, 110, 80),
    displayText("%s: the prefix, as in mJy", 62, 125, 162),
    displayNote,
};
inline constexpr DlgTemplate displayAxesPage =
    displayPage(IDD_DISPLAY_AXES, "Axes and titles", displayAxesItems);

inline constexpr DlgItem displayPresetsItems[] = {
    displayText("&Presets", 8, 10, 130),
    {ControlKind::listBox, IDC_PRESETS_LIST, "", 8, 20, 130, 80, WS_TABSTOP},
    displayControl(ControlKind::pushButton, IDC_PRESETS_USE, "&Use", 146, 20, 78),
    displayControl(ControlKind::pushButton, IDC_PRESETS_REMOVE, "&Remove", 146, 38, 78),
    displayText("&Name", 8, 108, 30),
    displayControl(ControlKind::edit, IDC_PRESETS_NAME, "", 40, 106, 98),
    displayControl(ControlKind::pushButton, IDC_PRESETS_KEEP, "&Keep", 146, 105, 78),
    displayControl(ControlKind::pushButton, IDC_PRESETS_FOR_ALL, "&To all maps", 146, 78, 78),
    displayNote,
};
inline constexpr DlgTemplate displayPresetsPage =
    displayPage(IDD_DISPLAY_PRESETS, "Presets", displayPresetsItems);

}  // namespace pavane

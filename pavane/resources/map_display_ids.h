#pragma once

namespace pavane
{

/// The sheet of a map's display, the dialog of its beam and the window of a dirty beam. Hosts keep
/// these numbers: a new one goes to the end of its block.
enum MapDisplayId : unsigned {
    IDD_BEAM = 10600,
    ID_BEAM,         ///< the command that shows the dialog
    ID_MAP_DISPLAY,  ///< the command that shows the sheet
    ID_BEAM_WINDOW,  ///< the command that shows a dirty beam
    IDD_DISPLAY_COLOURS,
    IDD_DISPLAY_CONTOURS,
    IDD_DISPLAY_BEAM,
    IDD_DISPLAY_AXES,
    IDD_DISPLAY_PRESETS,
    IDC_DISPLAY_NOTE,  ///< on each page and in the dialog

    IDC_BEAM_MAJOR = 10610,  ///< on the page and in the dialog of beams
    IDC_BEAM_MINOR,
    IDC_BEAM_ANGLE,
    IDC_BEAM_UNIT,
    IDC_BEAM_FILL,
    IDC_BEAM_CORNER,
    IDC_BEAM_FIT,
    IDC_BEAM_VIEW,
    IDC_BEAM_LABELS = 10620,  ///< the texts beside them from here on

    IDC_COLOURS_SCALE = 10630,
    IDC_COLOURS_LOW,
    IDC_COLOURS_HIGH,
    IDC_COLOURS_CONTRAST,
    IDC_COLOURS_BIAS,
    IDC_COLOURS_GAMMA,
    IDC_COLOURS_INVERT,
    IDC_COLOURS_PALETTE,

    IDC_CONTOURS_UNIT = 10640,
    IDC_CONTOURS_LEVELS,
    IDC_CONTOURS_COLOUR,
    IDC_CONTOURS_MORE,
    IDC_CONTOURS_WIDTH,

    IDC_AXES_GRID_X = 10648,
    IDC_AXES_GRID_Y,
    IDC_AXES_INSIDE,
    IDC_AXES_MINOR,
    IDC_AXES_HEADER,
    IDC_AXES_X,
    IDC_AXES_Y,
    IDC_AXES_VALUE,
    IDC_AXES_UNIT,
    IDC_AXES_USUAL,

    IDC_PRESETS_LIST = 10660,
    IDC_PRESETS_NAME,
    IDC_PRESETS_USE,
    IDC_PRESETS_KEEP,
    IDC_PRESETS_REMOVE,
    IDC_PRESETS_FOR_ALL
};

}  // namespace pavane

#pragma once

namespace pavane
{

// The sheet of a map's display, the dialog of its beam and the window of a dirty beam.
inline constexpr unsigned IDD_BEAM = 10600;
inline constexpr unsigned ID_BEAM = 10601;         ///< the command that shows the dialog
inline constexpr unsigned ID_MAP_DISPLAY = 10602;  ///< the command that shows the sheet
inline constexpr unsigned ID_BEAM_WINDOW = 10603;  ///< the command that shows a dirty beam
inline constexpr unsigned IDD_DISPLAY_COLOURS = 10604;
inline constexpr unsigned IDD_DISPLAY_CONTOURS = 10605;
inline constexpr unsigned IDD_DISPLAY_BEAM = 10606;
inline constexpr unsigned IDD_DISPLAY_AXES = 10607;
inline constexpr unsigned IDD_DISPLAY_PRESETS = 10608;
inline constexpr unsigned IDC_DISPLAY_NOTE = 10609;  ///< on each page and in the dialog

// On the page and in the dialog of beams.
inline constexpr unsigned IDC_BEAM_MAJOR = 10610;
inline constexpr unsigned IDC_BEAM_MINOR = 10611;
inline constexpr unsigned IDC_BEAM_ANGLE = 10612;
inline constexpr unsigned IDC_BEAM_UNIT = 10613;
inline constexpr unsigned IDC_BEAM_FILL = 10614;
inline constexpr unsigned IDC_BEAM_CORNER = 10615;
inline constexpr unsigned IDC_BEAM_FIT = 10616;
inline constexpr unsigned IDC_BEAM_VIEW = 10617;
inline constexpr unsigned IDC_BEAM_LABELS = 10620;  ///< the texts beside them from here on

inline constexpr unsigned IDC_COLOURS_SCALE = 10630;
inline constexpr unsigned IDC_COLOURS_LOW = 10631;
inline constexpr unsigned IDC_COLOURS_HIGH = 10632;
inline constexpr unsigned IDC_COLOURS_CONTRAST = 10633;
inline constexpr unsigned IDC_COLOURS_BIAS = 10634;
inline constexpr unsigned IDC_COLOURS_GAMMA = 10635;
inline constexpr unsigned IDC_COLOURS_INVERT = 10636;
inline constexpr unsigned IDC_COLOURS_PALETTE = 10637;

inline constexpr unsigned IDC_CONTOURS_UNIT = 10640;
inline constexpr unsigned IDC_CONTOURS_LEVELS = 10641;
inline constexpr unsigned IDC_CONTOURS_COLOUR = 10642;
inline constexpr unsigned IDC_CONTOURS_MORE = 10643;
inline constexpr unsigned IDC_CONTOURS_WIDTH = 10644;

inline constexpr unsigned IDC_AXES_GRID_X = 10648;
inline constexpr unsigned IDC_AXES_GRID_Y = 10649;
inline constexpr unsigned IDC_AXES_INSIDE = 10650;
inline constexpr unsigned IDC_AXES_MINOR = 10651;
inline constexpr unsigned IDC_AXES_HEADER = 10652;
inline constexpr unsigned IDC_AXES_X = 10653;
inline constexpr unsigned IDC_AXES_Y = 10654;
inline constexpr unsigned IDC_AXES_VALUE = 10655;
inline constexpr unsigned IDC_AXES_UNIT = 10656;

inline constexpr unsigned IDC_PRESETS_LIST = 10660;
inline constexpr unsigned IDC_PRESETS_NAME = 10661;
inline constexpr unsigned IDC_PRESETS_USE = 10662;
inline constexpr unsigned IDC_PRESETS_KEEP = 10663;
inline constexpr unsigned IDC_PRESETS_REMOVE = 10664;
inline constexpr unsigned IDC_PRESETS_FOR_ALL = 10665;

}  // namespace pavane

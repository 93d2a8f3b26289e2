#pragma once

namespace pavane
{

// The dialog that plays with the colours of a map, and its controls.
inline constexpr unsigned IDD_PALETTE_PLAY = 10500;
inline constexpr unsigned ID_PALETTE_PLAY = 10501;  ///< the command that shows it
inline constexpr unsigned IDC_PLAY_HISTOGRAM = 10502;
inline constexpr unsigned IDC_PLAY_LOW = 10503;
inline constexpr unsigned IDC_PLAY_HIGH = 10504;
inline constexpr unsigned IDC_PLAY_UNIT = 10505;
inline constexpr unsigned IDC_PLAY_SCALE = 10506;
inline constexpr unsigned IDC_PLAY_CELLS = 10507;
inline constexpr unsigned IDC_PLAY_CONTRAST = 10508;
inline constexpr unsigned IDC_PLAY_BIAS = 10509;
inline constexpr unsigned IDC_PLAY_GAMMA = 10510;
inline constexpr unsigned IDC_PLAY_INVERT = 10511;
inline constexpr unsigned IDC_PLAY_BY_PLANE = 10512;
inline constexpr unsigned IDC_PLAY_PALETTES = 10513;
inline constexpr unsigned IDC_PLAY_SAVE = 10514;
inline constexpr unsigned IDC_PLAY_FOR_ALL = 10515;
inline constexpr unsigned IDC_PLAY_NOTE = 10516;
inline constexpr unsigned IDC_PLAY_RESET = 10517;
inline constexpr unsigned IDC_PLAY_LOW_LABEL = 10530;
inline constexpr unsigned IDC_PLAY_HIGH_LABEL = 10531;
inline constexpr unsigned IDC_PLAY_SCALE_LABEL = 10532;
inline constexpr unsigned IDC_PLAY_CELLS_LABEL = 10533;
inline constexpr unsigned IDC_PLAY_CONTRAST_LABEL = 10534;
inline constexpr unsigned IDC_PLAY_BIAS_LABEL = 10535;
inline constexpr unsigned IDC_PLAY_GAMMA_LABEL = 10536;
inline constexpr unsigned IDC_PLAY_PALETTES_LABEL = 10537;
// The buttons of the range, in the order of playPerCents, and what comes behind them.
inline constexpr unsigned IDC_PLAY_90 = 10520;
inline constexpr unsigned IDC_PLAY_95 = 10521;
inline constexpr unsigned IDC_PLAY_98 = 10522;
inline constexpr unsigned IDC_PLAY_99 = 10523;
inline constexpr unsigned IDC_PLAY_995 = 10524;
inline constexpr unsigned IDC_PLAY_999 = 10525;
inline constexpr unsigned IDC_PLAY_ALL_CELLS = 10526;
inline constexpr unsigned IDC_PLAY_NOISE = 10527;
inline constexpr unsigned IDC_PLAY_ZSCALE = 10528;

}  // namespace pavane

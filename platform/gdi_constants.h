#pragma once

namespace pavane
{

// The numeric values are those of the Win32 drawing interface, so that stored pens and a native
// backend agree with them.

inline constexpr int PS_SOLID = 0, PS_DASH = 1, PS_DOT = 2, PS_DASHDOT = 3, PS_DASHDOTDOT = 4,
                     PS_NULL = 5, PS_INSIDEFRAME = 6;
inline constexpr int HS_HORIZONTAL = 0, HS_VERTICAL = 1, HS_FDIAGONAL = 2, HS_BDIAGONAL = 3,
                     HS_CROSS = 4, HS_DIAGCROSS = 5;
inline constexpr int R2_BLACK = 1, R2_NOTMERGEPEN = 2, R2_MASKNOTPEN = 3, R2_NOTCOPYPEN = 4,
                     R2_MASKPENNOT = 5, R2_NOT = 6, R2_XORPEN = 7, R2_NOTMASKPEN = 8,
                     R2_MASKPEN = 9, R2_NOTXORPEN = 10, R2_NOP = 11, R2_MERGENOTPEN = 12,
                     R2_COPYPEN = 13, R2_MERGEPENNOT = 14, R2_MERGEPEN = 15, R2_WHITE = 16;
inline constexpr int TRANSPARENT = 1, OPAQUE = 2;
inline constexpr int ALTERNATE = 1, WINDING = 2;
inline constexpr int MM_TEXT = 1, MM_ISOTROPIC = 7, MM_ANISOTROPIC = 8;
inline constexpr int NULLREGION = 1, SIMPLEREGION = 2, COMPLEXREGION = 3;
inline constexpr int RGN_AND = 1, RGN_OR = 2, RGN_XOR = 3, RGN_DIFF = 4, RGN_COPY = 5;

inline constexpr int WHITE_BRUSH = 0, LTGRAY_BRUSH = 1, GRAY_BRUSH = 2, DKGRAY_BRUSH = 3,
                     BLACK_BRUSH = 4, NULL_BRUSH = 5, WHITE_PEN = 6, BLACK_PEN = 7, NULL_PEN = 8,
                     SYSTEM_FONT = 13, DEVICE_DEFAULT_FONT = 14, DEFAULT_GUI_FONT = 17;

inline constexpr unsigned SRCCOPY = 0x00CC0020, SRCPAINT = 0x00EE0086, SRCAND = 0x008800C6,
                          SRCINVERT = 0x00660046, PATCOPY = 0x00F00021, PATINVERT = 0x005A0049,
                          DSTINVERT = 0x00550009, BLACKNESS = 0x00000042, WHITENESS = 0x00FF0062;
inline constexpr unsigned DIB_RGB_COLORS = 0, DIB_PAL_COLORS = 1;

inline constexpr unsigned DT_TOP = 0, DT_LEFT = 0, DT_CENTER = 1, DT_RIGHT = 2, DT_VCENTER = 4,
                          DT_BOTTOM = 8, DT_WORDBREAK = 0x10, DT_SINGLELINE = 0x20,
                          DT_NOCLIP = 0x100, DT_CALCRECT = 0x400, DT_NOPREFIX = 0x800,
                          DT_END_ELLIPSIS = 0x8000;

inline constexpr int FW_NORMAL = 400, FW_BOLD = 700;

inline constexpr int HORZSIZE = 4, VERTSIZE = 6, HORZRES = 8, VERTRES = 10, BITSPIXEL = 12,
                     LOGPIXELSX = 88, LOGPIXELSY = 90, PHYSICALWIDTH = 110, PHYSICALHEIGHT = 111,
                     PHYSICALOFFSETX = 112, PHYSICALOFFSETY = 113;

}  // namespace pavane

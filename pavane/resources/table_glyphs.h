#pragma once

namespace pavane
{

// Marks of cells that can be edited or chosen: '#' dark, '+' accent, '.' light, blank none.
inline constexpr int glyphWidth = 13;
inline constexpr int glyphHeight = 12;
inline constexpr int glyphList = 0;    ///< its list can be opened
inline constexpr int glyphNoList = 1;  ///< it cannot
inline constexpr int glyphEdit = 2;    ///< it can be edited
inline constexpr int glyphNoEdit = 3;  ///< it cannot
inline constexpr int glyphRising = 4;  ///< rows are sorted by this column
inline constexpr int glyphFalling = 5;
// clang-format off

inline constexpr const char* const tableGlyphs[][glyphHeight] = {
    {
        "             ",
        "             ",
        "             ",
        "  #########  ",
        "   #######   ",
        "    #####    ",
        "     ###     ",
        "      #      ",
        "             ",
        "             ",
        "             ",
        "             ",
    },
    {
        "             ",
        "             ",
        "             ",
        "  .........  ",
        "   .     .   ",
        "    .   .    ",
        "     . .     ",
        "      .      ",
        "             ",
        "             ",
        "             ",
        "             ",
    },
    {
        "        ##   ",
        "       #++#  ",
        "      #++++# ",
        "     #++++#  ",
        "    #++++#   ",
        "   #++++#    ",
        "  #++++#     ",
        "  ##++#      ",
        "  ####       ",
        "  ##         ",
        "             ",
        "             ",
    },
    {
        "        ..   ",
        "       .  .  ",
        "      .    . ",
        "     .    .  ",
        "    .    .   ",
        "   .    .    ",
        "  .    .     ",
        "  ..  .      ",
        "  ....       ",
        "  ..         ",
        "             ",
        "             ",
    },
    {
        "             ",
        "             ",
        "             ",
        "             ",
        "      #      ",
        "     ###     ",
        "    #####    ",
        "   #######   ",
        "             ",
        "             ",
        "             ",
        "             ",
    },
    {
        "             ",
        "             ",
        "             ",
        "             ",
        "   #######   ",
        "    #####    ",
        "     ###     ",
        "      #      ",
        "             ",
        "             ",
        "             ",
        "             ",
    },
};
// clang-format on

}  // namespace pavane

#pragma once

#include "platform/cursors.h"

namespace pavane
{

// Cursors of the tools of a collection: '#' black, '.' white, blank transparent.
inline constexpr unsigned IDC_TOOL_ZOOM = 10005;  ///< a magnifying glass
inline constexpr unsigned IDC_TOOL_DRAW = 10006;  ///< a cross with an open middle

// clang-format off
inline constexpr const char* const toolZoomRows[] = {
    "                                ",
    "                                ",
    "         .....                  ",
    "      ....###....               ",
    "     ..#########..              ",
    "    ..###.....###..             ",
    "   ..##...   ...##..            ",
    "   .##..  ...  ..##.            ",
    "   .##.   .#.   .##.            ",
    "  ..#..   .#.   ..#..           ",
    "  .##. ....#.... .##.           ",
    "  .##. .#######. .##.           ",
    "  .##. ....#.... .##.           ",
    "  ..#..   .#.   ..#..           ",
    "   .##.   .#.   .##.            ",
    "   .##..  ...  ..##.            ",
    "   ..##...   ...##..            ",
    "    ..###.....#####..           ",
    "     ..#########.###..          ",
    "      ....###.....###..         ",
    "         .....   ..###..        ",
    "                  ..###..       ",
    "                   ..###..      ",
    "                    ..###..     ",
    "                     ..###..    ",
    "                      ..###.    ",
    "                       ..#..    ",
    "                        ...     ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
};

inline constexpr const char* const toolDrawRows[] = {
    "                                ",
    "                                ",
    "              ...               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              ...               ",
    "  ...........................   ",
    "  .##########..#..##########.   ",
    "  ...........................   ",
    "              ...               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              .#.               ",
    "              ...               ",
    "                                ",
    "                                ",
    "                                ",
};
// clang-format on

inline constexpr CursorTemplate toolCursors[] = {
    {IDC_TOOL_ZOOM, 11, 11, toolZoomRows, 32},
    {IDC_TOOL_DRAW, 15, 15, toolDrawRows, 32},
};

}  // namespace pavane

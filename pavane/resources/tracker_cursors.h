#pragma once

#include "platform/cursors.h"

namespace pavane
{

// The cursors of turned shapes and polygons: '#' black, '.' white, blank transparent.
inline constexpr unsigned IDC_TRACKER_TURN = 10030;
inline constexpr unsigned IDC_TRACKER_SIZE = 10031;

// clang-format off
/// An arrow that goes round a centre.
inline constexpr const char* const turnCursorRows[] = {
    "                        ",
    "         .......        ",
    "       ..#######..      ",
    "      .##.......##.  .. ",
    "     .#..       ..#..#. ",
    "    .#.           .###. ",
    "   .#.            .###. ",
    "   .#.           .####. ",
    "  .#.           ....... ",
    "  .#.      .            ",
    "  .#.     .#.           ",
    "  .#.    .###.          ",
    "  .#.     .#.           ",
    "  .#.      .      .#.   ",
    "   .#.           .#.    ",
    "   .#.           .#.    ",
    "    .#.         .#.     ",
    "     .#..     ..#.      ",
    "      .##.....##.       ",
    "       ..#####..        ",
    "         .....          ",
};

/// Four arrow heads: a handle or a vertex goes anywhere.
inline constexpr const char* const sizeCursorRows[] = {
    "          .          ",
    "         .#.         ",
    "        .###.        ",
    "       .#####.       ",
    "       ...#...       ",
    "         .#.         ",
    "         ...         ",
    "   ..           ..   ",
    "  .#.           .#.  ",
    " .##...       ...##. ",
    ".#####.       .#####.",
    " .##...       ...##. ",
    "  .#.           .#.  ",
    "   ..           ..   ",
    "         ...         ",
    "         .#.         ",
    "       ...#...       ",
    "       .#####.       ",
    "        .###.        ",
    "         .#.         ",
    "          .          ",
};
// clang-format on

inline constexpr CursorTemplate trackerCursors[] = {
    {IDC_TRACKER_TURN, 10, 11, turnCursorRows, 21},
    {IDC_TRACKER_SIZE, 10, 10, sizeCursorRows, 21},
};

}  // namespace pavane

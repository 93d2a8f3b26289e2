#pragma once

#include "pavane/resources/resource_ids.h"
#include "platform/cursors.h"

namespace pavane
{

// Pictures of cursors: '#' black, '.' white, blank transparent.
// clang-format off
inline constexpr const char* const selectionDragRows[] = {
    "                                ",
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
    "              ...               ",
    "   ........... . ...........    ",
    "   .#########..#..#########.    ",
    "   ........... . ...........    ",
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
    "              ...               ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
};
inline constexpr const char* const selectionIdleRows[] = {
    "        ...                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "...................             ",
    ".#######. .#######.             ",
    "...................             ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.                     ",
    "        .#.      .............  ",
    "        ...      .##..##..##..  ",
    "                 .#...........  ",
    "                 ...       .#.  ",
    "                 ...       .#.  ",
    "                 .#.       ...  ",
    "                 .#.       ...  ",
    "                 ...       .#.  ",
    "                 ...........#.  ",
    "                 .##..##..##..  ",
    "                 .............  ",
    "                                ",
    "                                ",
    "                                ",
    "                                ",
};
// clang-format on

/// The cursors of the library, by identifier.
inline constexpr CursorTemplate libraryCursors[] = {
    {IDC_SELECTION_DRAG, 15, 15, selectionDragRows, 32},
    {IDC_SELECTION_IDLE, 9, 9, selectionIdleRows, 32},
};

}  // namespace pavane

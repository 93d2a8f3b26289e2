#pragma once

#include "platform/types.h"

namespace pavane
{

// Texts of tables that the user sees; names of files are put behind them.
inline constexpr const char* saveTableTitle = "Save as";
inline constexpr const char* clipboardRefusesText = "The clipboard does not take the text.";
inline constexpr const char* tooMuchForClipboard =
    "These cells are too many for the clipboard, which gets 256 MiB. Save them as text instead.";
inline constexpr const char* clipboardHasNoText = "There is no text on the clipboard.";
// numbers stand before them, the name of a cell behind
inline constexpr const char* cellsNotPasted = " cells could not be pasted. The first of them is ";
inline constexpr const char* cellsNotCleared = " cells cannot be empty. The first of them is ";
inline constexpr const char* beyondTheTable = ", which the table does not have";
inline constexpr const char* pasteStopped = "Pasting was stopped. Cells pasted until then: ";
inline constexpr const char* pasteTooLarge =
    "No more than 256 MiB can be pasted at once. Cells pasted until then: ";
inline constexpr const char* partIsLeft =
    "The table could not be written whole. What was written is in: ";
inline constexpr const char* oldFileStays =
    "The table could not be written whole. The file stays as it was; what was written is in: ";

inline constexpr const char* escapeStops = " (Escape stops)";
inline constexpr const char* sortingRows = "Sorting";
inline constexpr const char* noMemoryToSort = "There is not enough memory to sort the table.";
inline constexpr const char* searchingCells = "Searching";
inline constexpr const char* notFoundInTable = "The table has no such text: ";
inline constexpr const char* searchFromStart = "The search went on from the start of the table.";
inline constexpr const char* searchFromEnd = "The search went on from the end of the table.";
inline constexpr const char* goToRowTitle = "Go to row";
inline constexpr const char* goToRowLabel = "Row";
inline constexpr const char* columnWidthTitle = "Column width";
inline constexpr const char* columnWidthLabel = "Width in pixels";
inline constexpr const char* numberIsOneOf = "This must be a whole number from ";

}  // namespace pavane

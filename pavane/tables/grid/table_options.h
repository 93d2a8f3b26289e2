#pragma once

namespace pavane
{

/// Option bits of a table. Hosts store the values; new ones begin at 0x10000.
enum TableOption : int {
    optHeaderRow = 0x0001,     ///< a header row above the data
    optVertLines = 0x0002,     ///< a line at the right edge of each cell
    optHorzLines = 0x0004,     ///< a line at the bottom edge of each cell
    optRangeSelect = 0x0008,   ///< more than one cell can be selected
    optButtonDown = 0x0010,    ///< from a press in the table to the release of the button
    optDragTimer = 0x0020,     ///< the timer of a drag runs
    optSkipPaint = 0x0040,     ///< an editor is being opened: the next paint waits until it stands
    optNoSelColor = 0x0100,    ///< selected cells keep the colour of the window
    optDragBits = 0x0230,      ///< what ends with the release of the button
    optFlatHeader = 0x0400,    ///< flat headers, cells without background
    optDoubleFocus = 0x1000,   ///< a second frame inside that of the focus cell
    optSizeColumns = 0x10000,  ///< edges in the header can be dragged, a double click there fits
    optSort = 0x20000          ///< a click on a column header sorts the rows
};

}  // namespace pavane

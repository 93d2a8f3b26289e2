#pragma once

#include "apps/view/main_menu.h"
#include "pavane/resources/freq_commands.h"
#include "pavane/resources/mark_commands.h"
#include "pavane/resources/table_commands.h"

#include <iterator>

namespace pavane
{

/// Commands of the data window's menu beside those of tables and plots, and of `ViewCommand`.
enum DataCommand : unsigned {
    idOpenData = 41001,
    idOpenGroups,
    idSaveGroups,
    idSaveGroupsAs,
    idSavePlot,
    idUndo = 41101,
    idRedo,
    idCopy,
    idSelectAll,
    idStopReading = 41201,
    idGoOnReading,
    idNextPart,
    idPreviousPart,
    idNextTab,
    idPreviousTab,
    idTimes,
    idPlotOf = 41301,  ///< one for each DataPlot, in its order
    idNextPanels = 41311,
    idPreviousPanels,
    idMorePanels,
    idFewerPanels,
    idTriangles,
    idDirection,
    idListShown,
    idMeans,
    idNextColours,
    idColoursBy = 41331  ///< one for each UvColour, in its order
};

inline constexpr MenuItem dataFileItems[] = {
    {"&Open...\tCtrl+O", idOpenData, nullptr, 0},
    {"&Recent files", 0, recentItems, std::size(recentItems)},
    menuLine,
    {"Open frequency &groups...\tCtrl+Shift+O", idOpenGroups, nullptr, 0},
    {"&Save frequency groups\tCtrl+S", idSaveGroups, nullptr, 0},
    {"Save frequency groups &as...\tCtrl+Shift+S", idSaveGroupsAs, nullptr, 0},
    menuLine,
    {"Save &table as text...", ID_TABLE_SAVE_ALL, nullptr, 0},
    {"Save se&lection as text...", ID_TABLE_SAVE_SELECTION, nullptr, 0},
    {savePictureText, idSavePlot, nullptr, 0},
    menuLine,
    printItems[0],
    printItems[1],
    printItems[2],
    menuLine,
    {"E&xit\tCtrl+Q", idExit, nullptr, 0},
};

// The keys of the focus cell (Space, Ins, Del) are not in the menu: it would take them from buttons
// and from the plot.

/// Undo, redo, copy and select act on the part with the focus.
inline constexpr MenuItem dataEditItems[] = {
    {"&Undo\tCtrl+Z", idUndo, nullptr, 0},
    {"&Redo\tCtrl+Shift+Z", idRedo, nullptr, 0},
    menuLine,
    {"&Copy\tCtrl+C", idCopy, nullptr, 0},
    tableItemOf(ID_TABLE_COPY_CELLS),
    tableItemOf(ID_TABLE_COPY_ALL),
    {"Select &all\tCtrl+A", idSelectAll, nullptr, 0},
    menuLine,
    tableItemOf(ID_TABLE_FIND),
    tableItemOf(ID_TABLE_FIND_NEXT),
    tableItemOf(ID_TABLE_FIND_PREVIOUS),
    tableItemOf(ID_TABLE_GO_TO_ROW),
};

inline constexpr MenuItem dataMarkItems[] = {
    {"&Mark selected", ID_MARK_SELECTED, nullptr, 0},
    markItems[1],
    markItems[2],
    markItems[3],
    menuLine,
    {"&Times...\tCtrl+Shift+T", idTimes, nullptr, 0},
    menuLine,
    {"Add &group of marked IFs", ID_FREQ_ADD_GROUP, nullptr, 0},
    {"&Delete group", ID_FREQ_DELETE_GROUP, nullptr, 0},
    {"All IFs in one g&roup\tCtrl+1", ID_FREQ_ALL_IN_ONE, nullptr, 0},
    freqItemOf(ID_FREQ_FIXED_STEP),
};

/// What is coloured, in the order of UvColour.
inline constexpr MenuItem colourByItems[] = {
    {"&Nothing", idColoursBy, nullptr, 0},        {"&Baselines", idColoursBy + 1, nullptr, 0},
    {"&Telescopes", idColoursBy + 2, nullptr, 0}, {"&IFs", idColoursBy + 3, nullptr, 0},
    {"&Sources", idColoursBy + 4, nullptr, 0},
};

/// Lines of what is plotted, in the order of DataPlot.
inline constexpr MenuItem dataPlotItems[] = {
    {"&Amplitude against distance\tAlt+1", idPlotOf, nullptr, 0},
    {"Amplitude and phase against &time\tAlt+2", idPlotOf + 1, nullptr, 0},
    {"&Closure phases\tAlt+3", idPlotOf + 2, nullptr, 0},
    {"&Bandpass\tAlt+4", idPlotOf + 3, nullptr, 0},
    {"Closure amp&litudes\tAlt+5", idPlotOf + 4, nullptr, 0},
    {"u&v coverage\tAlt+6", idPlotOf + 5, nullptr, 0},
    {"Amplitude along a &direction...\tAlt+7", idDirection, nullptr, 0},
    menuLine,
    {"T&riangles...\tCtrl+R", idTriangles, nullptr, 0},
    {"Li&st what is shown\tCtrl+L", idListShown, nullptr, 0},
    menuLine,
    {"C&olour by", 0, colourByItems, std::size(colourByItems)},
    {"Ne&xt colours\tAlt+9", idNextColours, nullptr, 0},
    {"M&eans over time...\tAlt+8", idMeans, nullptr, 0},
    menuLine,
    {"&Next panels", idNextPanels, nullptr, 0},
    {"&Previous panels", idPreviousPanels, nullptr, 0},
    {"&More panels on a page", idMorePanels, nullptr, 0},
    {"&Fewer panels on a page", idFewerPanels, nullptr, 0},
};

inline constexpr MenuItem dataViewItems[] = {
    {"Next &tab\tCtrl+PgDown", idNextTab, nullptr, 0},
    {"&Previous tab\tCtrl+PgUp", idPreviousTab, nullptr, 0},
    {"Next p&art\tF6", idNextPart, nullptr, 0},
    {"Previous pa&rt\tShift+F6", idPreviousPart, nullptr, 0},
    menuLine,
    {"&Stop reading", idStopReading, nullptr, 0},
    {"&Go on reading", idGoOnReading, nullptr, 0},
    menuLine,
    {"Zoom &in\t+", idZoomIn, nullptr, 0},
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole plot\t0", ID_WHOLE_MAP, nullptr, 0},
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
};

inline constexpr MenuItem dataItems[] = {
    {"&File", 0, dataFileItems, std::size(dataFileItems)},
    {"&Edit", 0, dataEditItems, std::size(dataEditItems)},
    {"&Marks", 0, dataMarkItems, std::size(dataMarkItems)},
    {"&Plot", 0, dataPlotItems, std::size(dataPlotItems)},
    {"&View", 0, dataViewItems, std::size(dataViewItems)},
    {"&Help", 0, helpItems, std::size(helpItems)},
};

inline constexpr unsigned dataMenuId = 41000;
inline constexpr MenuTemplate dataMenu = {dataMenuId, dataItems, std::size(dataItems)};

}  // namespace pavane

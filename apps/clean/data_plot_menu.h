#pragma once

#include "apps/view/main_menu.h"
#include "pavane/resources/flag_commands.h"
#include "pavane/resources/plot_commands.h"
#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

/// Commands about the data, of the main window and of the windows that plot them. They are larger
/// than those of maps and smaller than those of help, since they wait for nothing that runs.
enum DataPlotCommand : unsigned {
    idPlotDistance = 41451,
    idPlotTime,
    idPlotClosure,
    idOpenFlags = 41461,
    idSaveFlags,
    idRemoveFlags,
    idRoundFlags,  ///< those of the shown round become those of now
    idUseFlags,
    idPredictModel,  ///< where components are too many
    idTriangles = 41471,
    idMoreRows,
    idFewerRows,
    idSavePlotPicture,
    idClosePlot
};

namespace plot_menus
{

inline constexpr MenuItem line = {};

/// Of the main window.
inline constexpr MenuItem data[] = {
    {"Amplitude and phase against &distance\tAlt+1", idPlotDistance, nullptr, 0},
    {"Amplitude and phase against &time\tAlt+2", idPlotTime, nullptr, 0},
    {"&Closure phases\tAlt+3", idPlotClosure, nullptr, 0},
    line,
    {"Open &flags...", idOpenFlags, nullptr, 0},
    {"&Save flags as...", idSaveFlags, nullptr, 0},
    {"R&emove all flags", idRemoveFlags, nullptr, 0},
    {"Flags of the &round become those of now", idRoundFlags, nullptr, 0},
    line,
    {"&Residual with the flags of now", idUseFlags, nullptr, 0},
};

inline constexpr MenuItem flagFile[] = {
    {"&Open flags...\tCtrl+O", idOpenFlags, nullptr, 0},
    {"&Save flags as...\tCtrl+S", idSaveFlags, nullptr, 0},
    line,
    {savePictureText, idSavePlotPicture, nullptr, 0},
    line,
    {"&Close\tCtrl+W", idClosePlot, nullptr, 0},
};
inline constexpr MenuItem flagEdit[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    line,
    {copyPictureText, ID_COPY_TO_CLIPBOARD, nullptr, 0},
    line,
    {"R&emove all flags", idRemoveFlags, nullptr, 0},
    {"Flags of the &round become those of now", idRoundFlags, nullptr, 0},
    line,
    {"Residual with the flags of &now\tF5", idUseFlags, nullptr, 0},
};
inline constexpr MenuItem flags[] = {
    flagToolItems[0],  flagToolItems[1],  line,
    flagScopeItems[0], flagScopeItems[1], flagScopeItems[2],
    flagScopeItems[3], flagScopeItems[4], flagScopeItems[5],
};
inline constexpr MenuItem flagView[] = {
    flagViewItems[0],
    flagViewItems[1],
    flagViewItems[2],
    flagViewItems[3],
    flagViewItems[4],
    flagViewItems[5],
    {"V&isibilities of the model by the engine", idPredictModel, nullptr, 0},
    line,
    {"&Next page\tN", ID_FLAG_NEXT, nullptr, 0},
    {"Pre&vious page\tShift+N", ID_FLAG_PREVIOUS, nullptr, 0},
    {"More baselines on a pa&ge\tShift+M", idMoreRows, nullptr, 0},
    {"&Fewer baselines on a page\tShift+F", idFewerRows, nullptr, 0},
    line,
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole range\t0", ID_WHOLE_MAP, nullptr, 0},
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
};
inline constexpr MenuItem windows[] = {data[0], data[1], data[2]};

inline constexpr MenuItem flagBar[] = {
    {"&File", 0, flagFile, std::size(flagFile)}, {"&Edit", 0, flagEdit, std::size(flagEdit)},
    {"F&lags", 0, flags, std::size(flags)},      {"&View", 0, flagView, std::size(flagView)},
    {"&Plot", 0, windows, std::size(windows)},
};

inline constexpr MenuItem closureFile[] = {
    {savePictureText, idSavePlotPicture, nullptr, 0},
    {copyPictureText, ID_COPY_TO_CLIPBOARD, nullptr, 0},
    line,
    {"&Close\tCtrl+W", idClosePlot, nullptr, 0},
};
inline constexpr MenuItem closureView[] = {
    {"&Triangles...\tCtrl+R", idTriangles, nullptr, 0},
    line,
    {"&Next page\tN", ID_FLAG_NEXT, nullptr, 0},
    {"Pre&vious page\tShift+N", ID_FLAG_PREVIOUS, nullptr, 0},
    {"More panels on a pa&ge\tShift+M", idMoreRows, nullptr, 0},
    {"&Fewer panels on a page\tShift+F", idFewerRows, nullptr, 0},
    line,
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole range\t0", ID_WHOLE_MAP, nullptr, 0},
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
};
inline constexpr MenuItem closureBar[] = {
    {"&File", 0, closureFile, std::size(closureFile)},
    {"&View", 0, closureView, std::size(closureView)},
    {"&Plot", 0, windows, std::size(windows)},
};

}  // namespace plot_menus

inline constexpr MenuTemplate flagPlotMenu = {41450, plot_menus::flagBar,
                                              std::size(plot_menus::flagBar)};
inline constexpr MenuTemplate closurePlotMenu = {41451, plot_menus::closureBar,
                                                 std::size(plot_menus::closureBar)};

}  // namespace pavane

#pragma once

#include "apps/clean/data_plot_menu.h"
#include "apps/view/main_menu.h"

#include <iterator>

namespace pavane
{

/// Commands of the window of pavane-clean beside those of the axis window and those that it has in
/// common with pavane-view (ViewCommand).
enum CleanCommand : unsigned {
    idOpenData = 41001,
    idOpenAreaFile,
    idSaveAreaFile,
    idExport,
    idStudyFacts,
    idDeleteBranch,
    idCloseStudy,
    idAreaSets = 41101,
    idAreasOfRound,  ///< of its components
    idCleanRound = 41201,
    idFinishCycle,
    idStopRound,
    idParameters,
    idBeamShape,
    idSelection,
    idFirstModel,
    idPointModel,
    idEditedModel,
    idGoOn,  ///< from the chosen round
    idSelfCalibrate = 41301,
    idSwitchGains,
    idRemoveGains,
    idGainGraph,
    idGainTable,
    idMeanGains,
    idSaveGains,
    idLoadGains,
    idChain,
    idMapKind = 41401,  ///< one for each MapKind
    idBlink = 41411,
    idCompare,  ///< other rounds with the shown one
    idNextMap,
    idPreviousMap,
    idColoursOfMap,
    idDisplayOfMap,
    idOwnRange,
    idNextPart,
    idPreviousPart
};

namespace menus
{

inline constexpr MenuItem line = menuLine;

inline constexpr MenuItem recent[] = {{"(none yet)", idNoRecent, nullptr, 0}};

inline constexpr MenuItem file[] = {
    {"&Open data or a study...\tCtrl+O", idOpenData, nullptr, 0},
    {"&Recent studies", 0, recent, std::size(recent)},
    line,
    {"Open &areas...\tCtrl+Shift+O", idOpenAreaFile, nullptr, 0},
    {"Save areas a&s...\tCtrl+Shift+S", idSaveAreaFile, nullptr, 0},
    line,
    {"&Export the round...\tCtrl+E", idExport, nullptr, 0},
    {"Si&ze of the study", idStudyFacts, nullptr, 0},
    {"Delete &branch...", idDeleteBranch, nullptr, 0},
    line,
    {savePictureText, idSavePicture, nullptr, 0},
    printItems[0],
    printItems[1],
    printItems[2],
    line,
    {"E&xit\tCtrl+Q", idCloseStudy, nullptr, 0},
};

inline constexpr MenuItem edit[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    line,
    {"Duplica&te areas\tCtrl+D", ID_TRACK_COPY, nullptr, 0},
    {"&Delete areas\tDel", idDelete, nullptr, 0},
    menuItemOf(ID_SELECT_ALL),
    menuItemOf(ID_CLEAR_AREAS),
    line,
    menuItemOf(ID_VERTEX_INSERT),
    menuItemOf(ID_VERTEX_DELETE),
    line,
    {copyPictureText, ID_COPY_TO_CLIPBOARD, nullptr, 0},
};

inline constexpr MenuItem areas[] = {
    menuItemOf(ID_NEVER_CLEAN),
    line,
    menuItemOf(ID_CONTOUR_AREA),
    menuItemOf(ID_CONTOUR_LEVEL),
    {"Areas from &mask...", idAreasOfMask, nullptr, 0},
    {"Areas from c&omponents of the round...", idAreasOfRound, nullptr, 0},
    line,
    menuItemOf(ID_GROW_AREAS),
    menuItemOf(ID_SHRINK_AREAS),
    line,
    {"Se&ts of areas...\tCtrl+T", idAreaSets, nullptr, 0},
};

inline constexpr MenuItem clean[] = {
    {"&Clean\tF5", idCleanRound, nullptr, 0},
    {"&Finish this cycle\tShift+F5", idFinishCycle, nullptr, 0},
    {"&Stop now\tCtrl+F5", idStopRound, nullptr, 0},
    line,
    {"&Parameters...\tF4", idParameters, nullptr, 0},
    {"&Beam shape...\tShift+F4", idBeamShape, nullptr, 0},
    {"Se&lection of data...", idSelection, nullptr, 0},
    {"First &model...", idFirstModel, nullptr, 0},
    {"First model: a point at the pea&k", idPointModel, nullptr, 0},
    {"Round of the &edited components", idEditedModel, nullptr, 0},
    line,
    {"&Go on from the chosen round", idGoOn, nullptr, 0},
};

inline constexpr MenuItem calibrate[] = {
    {"&Self-calibrate...\tF8", idSelfCalibrate, nullptr, 0},
    {"&Chain of gains...\tShift+F8", idChain, nullptr, 0},
    {"Switch the last gains &on or off", idSwitchGains, nullptr, 0},
    {"&Remove the last gains", idRemoveGains, nullptr, 0},
    line,
    {"Gain &graph\tF9", idGainGraph, nullptr, 0},
    {"Gain &table", idGainTable, nullptr, 0},
    {"&Mean gains", idMeanGains, nullptr, 0},
    line,
    {"&Write gains to a file...", idSaveGains, nullptr, 0},
    {"Read gains from a &file...", idLoadGains, nullptr, 0},
};

inline constexpr MenuItem view[] = {
    {"&Residual", idMapKind, nullptr, 0},
    {"Res&tored", idMapKind + 1, nullptr, 0},
    {"&Model", idMapKind + 2, nullptr, 0},
    {"&Dirty", idMapKind + 3, nullptr, 0},
    {"&Beam", idMapKind + 4, nullptr, 0},
    {"M&ask", idMapKind + 5, nullptr, 0},
    line,
    {"Cells of the mas&k\tM", ID_SHOW_CELLS, nullptr, 0},
    {"B&link\tB", idBlink, nullptr, 0},
    {"&Compare others with this round\tCtrl+B", idCompare, nullptr, 0},
    {"&Next map\tCtrl+Page Down", idNextMap, nullptr, 0},
    {"&Previous map\tCtrl+Page Up", idPreviousMap, nullptr, 0},
    line,
    {"Colo&urs...\tP", idColoursOfMap, nullptr, 0},
    {"Map d&isplay...", idDisplayOfMap, nullptr, 0},
    {"Ran&ge of this map\tR", idOwnRange, nullptr, 0},
    {"Areas in pi&ctures", idAreasInPictures, nullptr, 0},
    line,
    menuItemOf(ID_ZOOM_MINUS),
    menuItemOf(ID_WHOLE_MAP),
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
    line,
    {"Ne&xt part\tF6", idNextPart, nullptr, 0},
    {"Pre&vious part\tShift+F6", idPreviousPart, nullptr, 0},
};

inline constexpr MenuItem help[] = {
    {"&Keys and mouse\tF1", idKeys, nullptr, 0},
    {"&About", idAbout, nullptr, 0},
};

inline constexpr MenuItem bar[] = {
    {"&File", 0, file, std::size(file)},
    {"&Edit", 0, edit, std::size(edit)},
    {"&Areas", 0, areas, std::size(areas)},
    {"&CLEAN", 0, clean, std::size(clean)},
    {"Cali&brate", 0, calibrate, std::size(calibrate)},
    {"&Data", 0, plot_menus::data, std::size(plot_menus::data)},
    {"&View", 0, view, std::size(view)},
    {"&Help", 0, help, std::size(help)},
};

}  // namespace menus

inline constexpr unsigned cleanMenuId = 41000;
inline constexpr MenuTemplate cleanMenu = {cleanMenuId, menus::bar, std::size(menus::bar)};

}  // namespace pavane

#pragma once

#include "apps/view/several/maps_menu.h"
#include "pavane/resources/plot_commands.h"
#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

class CMenu;

/// Commands of the main window's menu beside those of the axis window.
enum ViewCommand : unsigned {
    idOpenMap = 40001,
    idOpenAreas,
    idSaveAreas,
    idSaveAreasAs,
    idSkyRegions,
    idSaveMask,
    idSavePicture,
    idAreasOfMask,
    idAreasOfModel,  ///< of the components that are shown
    idPrint,
    idPrintPreview,
    idPageSetup,
    idNoRecent,
    idExit,
    idOpenModel,
    idMapModel,  ///< the components that the map brings along
    idSaveModel,
    idSaveModelAs,
    idDelete = 40101,  ///< the vertex with the focus, or else the areas
    idValues,
    idScale = 40201,  ///< one for each MapScaleKind, in its order
    idContours = 40211,
    idContourLevels,
    idAreasInPictures,
    idZoomIn,
    idModel,
    idNextMapPart,
    idPreviousMapPart,
    idNextPlane,
    idPreviousPlane,
    idPlayPlanes,
    idColours,
    idDisplay,
    idBeam,
    idDirtyBeam,
    idSurface,  ///< the map in a box beside it
    // numbers, names and colours of areas
    idAreaNumbers = 40261,
    idNumbersOfPlanes,
    idEmptyArea,  ///< the area of the row holds no source
    idAreaNames,  ///< on the map
    idAreaName,
    idAreaColour,
    idAreaNoColour,
    idKeys = 40301,
    idAbout,
    idRecent = 40401,   ///< one for each recent file
    idPalette = 40501,  ///< one for each palette
    // of the sky: the grid, then the rest, in one row of numbers
    idSkyGrid = 40601,    ///< the next of SkyGridShown
    idSkyShown = 40602,   ///< one for each of them
    idSkyFrame = 40611,   ///< that of the map, and those behind it in the menu
    idSkyLabels = 40621,  ///< one for each of SkyLabels
    idGoToPosition = 40631,
    idCopyPosition,
    idHeaderCards,
    idOpenMarks = 40641,
    idNoMarks,
    idSaveWork,
    // of what is measured
    idProfile = 40651,
    idSpectrum,
    idHistogram,
    idProfileLine,
    idKeepCurve,
    idForgetCurves,
    idSaveCurve,
    idFitGaussians,
    idFitResidual,
    idLineCorners = 40671,  ///< the next corner of the line gets the focus
    idReadAgain,            ///< the map from its file
    // of the surface beside the map
    idSurfaceStyle = 40701,  ///< one for each of surfaceStyles
    idSurfaceFloor = 40711,  ///< and the SurfaceFloor bits
    idSurfaceHigher = 40721,
    idSurfaceLower,
    idSurfaceFirst,
    idSurfaceSecond,
    idSurfaceNoSecond,
    idSurfaceSameRange,
    idSurfaceColorMap,
    idSurfaceOwnColors
};

inline constexpr const char* copyPictureText = "Copy &picture\tCtrl+C";
inline constexpr const char* goToPositionText = "Go to position...\tCtrl+G";
inline constexpr const char* savePictureText = "Save p&icture...\tCtrl+Shift+P";

inline constexpr MenuItem menuLine = {};

inline constexpr MenuItem recentItems[] = {{"(none yet)", idNoRecent, nullptr, 0}};
/// Filled with the names of the palettes that are found.
inline constexpr MenuItem paletteItems[] = {{"defpal", idPalette, nullptr, 0}};

inline constexpr MenuItem scaleItems[] = {
    {"&Linear", idScale, nullptr, 0},
    {"&Square root", idScale + 1, nullptr, 0},
    {"Lo&garithmic", idScale + 2, nullptr, 0},
    {"&Equalised", idScale + 3, nullptr, 0},
};

inline constexpr MenuItem skyFrameItems[] = {
    {"Of the &map", idSkyFrame, nullptr, 0},      {"&ICRS", idSkyFrame + 1, nullptr, 0},
    {"FK&5 (J2000)", idSkyFrame + 2, nullptr, 0}, {"FK&4 (B1950)", idSkyFrame + 3, nullptr, 0},
    {"&Galactic", idSkyFrame + 4, nullptr, 0},    {"&Ecliptic", idSkyFrame + 5, nullptr, 0},
};

inline constexpr MenuItem skyGridItems[] = {
    {"&Next: off, ticks, lines\tG", idSkyGrid, nullptr, 0},
    menuLine,
    {"&Off", idSkyShown, nullptr, 0},
    {"&Ticks", idSkyShown + 1, nullptr, 0},
    {"&Lines", idSkyShown + 2, nullptr, 0},
    menuLine,
    {"&Frame", 0, skyFrameItems, std::size(skyFrameItems)},
    menuLine,
    {"&Usual labels", idSkyLabels, nullptr, 0},
    {"&Sexagesimal", idSkyLabels + 1, nullptr, 0},
    {"&Degrees", idSkyLabels + 2, nullptr, 0},
    {"Offs&ets", idSkyLabels + 3, nullptr, 0},
};

inline constexpr MenuItem surfaceFloorItems[] = {
    {"&Contours", idSurfaceFloor + 2, nullptr, 0},
    {"C&olours", idSurfaceFloor + 1, nullptr, 0},
    {"&Both", idSurfaceFloor + 3, nullptr, 0},
    {"&None", idSurfaceFloor, nullptr, 0},
};

inline constexpr MenuItem surfaceItems[] = {
    {"&Beside the map\tCtrl+3", idSurface, nullptr, 0},
    menuLine,
    {"&Lattice", idSurfaceStyle, nullptr, 0},
    {"C&olours", idSurfaceStyle + 1, nullptr, 0},
    {"L&ight", idSurfaceStyle + 2, nullptr, 0},
    {"&Contours", idSurfaceStyle + 3, nullptr, 0},
    {"S&kirt", idSurfaceStyle + 4, nullptr, 0},
    {"&Floor", 0, surfaceFloorItems, std::size(surfaceFloorItems)},
    menuLine,
    {"&Higher (Ctrl+Up)", idSurfaceHigher, nullptr, 0},
    {"Lo&wer (Ctrl+Down)", idSurfaceLower, nullptr, 0},
    {"First &view (Home)", idSurfaceFirst, nullptr, 0},
    menuLine,
    {"&Second map on the surface...", idSurfaceSecond, nullptr, 0},
    {"S&ame range for both maps", idSurfaceSameRange, nullptr, 0},
    {"&Remove the second map", idSurfaceNoSecond, nullptr, 0},
    {"Colours of another &map...", idSurfaceColorMap, nullptr, 0},
    {"Ow&n colours again", idSurfaceOwnColors, nullptr, 0},
};

/// What is printed is the part that has the keyboard.
inline constexpr MenuItem printItems[] = {
    {"&Print...\tCtrl+P", idPrint, nullptr, 0},
    {"Print previe&w", idPrintPreview, nullptr, 0},
    {"Page set-&up...", idPageSetup, nullptr, 0},
};

inline constexpr MenuItem fileItems[] = {
    {"&Open...\tCtrl+O", idOpenMap, nullptr, 0},
    {"A&dd map...\tCtrl+Shift+A", idAddMap, nullptr, 0},
    {"&Recent files", 0, recentItems, std::size(recentItems)},
    {"Read the map a&gain\tCtrl+Alt+R", idReadAgain, nullptr, 0},
    menuLine,
    {"Open &areas...\tCtrl+Shift+O", idOpenAreas, nullptr, 0},
    {"&Save areas\tCtrl+S", idSaveAreas, nullptr, 0},
    {"Sav&e areas as...\tCtrl+Shift+S", idSaveAreasAs, nullptr, 0},
    {"Region files in sk&y coordinates", idSkyRegions, nullptr, 0},
    menuLine,
    {"Open mar&ks...", idOpenMarks, nullptr, 0},
    {"&Take marks away", idNoMarks, nullptr, 0},
    menuLine,
    {"Open &components...", idOpenModel, nullptr, 0},
    {"Components o&f the map", idMapModel, nullptr, 0},
    {"Sa&ve components", idSaveModel, nullptr, 0},
    {"Save compo&nents as...", idSaveModelAs, nullptr, 0},
    menuLine,
    {"Save &mask...\tCtrl+M", idSaveMask, nullptr, 0},
    {savePictureText, idSavePicture, nullptr, 0},
    {"Save a&ll as a work file...\tCtrl+Alt+W", idSaveWork, nullptr, 0},
    menuLine,
    printItems[0],
    printItems[1],
    printItems[2],
    menuLine,
    {"E&xit\tCtrl+Q", idExit, nullptr, 0},
};

inline constexpr MenuItem editItems[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    menuLine,
    {"Duplica&te areas\tCtrl+D", ID_TRACK_COPY, nullptr, 0},
    {"&Delete areas\tDel", idDelete, nullptr, 0},
    menuItemOf(ID_SELECT_ALL),
    menuItemOf(ID_CLEAR_AREAS),
    menuLine,
    menuItemOf(ID_VERTEX_INSERT),
    menuItemOf(ID_VERTEX_DELETE),
    {"Area value&s\tF4", idValues, nullptr, 0},
    menuLine,
    {copyPictureText, ID_COPY_TO_CLIPBOARD, nullptr, 0},
};

inline constexpr MenuItem areaItems[] = {
    menuItemOf(ID_NEVER_CLEAN),
    {"N&ame...", idAreaName, nullptr, 0},
    {"Colo&ur...", idAreaColour, nullptr, 0},
    {"Usual colou&r", idAreaNoColour, nullptr, 0},
    menuLine,
    menuItemOf(ID_CONTOUR_AREA),
    menuItemOf(ID_CONTOUR_LEVEL),
    {"Areas from &mask...", idAreasOfMask, nullptr, 0},
    {"Areas from c&omponents...", idAreasOfModel, nullptr, 0},
    menuLine,
    menuItemOf(ID_GROW_AREAS),
    menuItemOf(ID_SHRINK_AREAS),
    menuLine,
    {"Num&bers of areas\tF7", idAreaNumbers, nullptr, 0},
    {"Noise of an em&pty area", idEmptyArea, nullptr, 0},
    {"Numbers of all plan&es", idNumbersOfPlanes, nullptr, 0},
};

inline constexpr MenuItem measureItems[] = {
    {"&Profile along a line\tF8", idProfile, nullptr, 0},
    {"&Line of the profile...\tShift+F8", idProfileLine, nullptr, 0},
    {"&Corners of the line by keys\tCtrl+Alt+L", idLineCorners, nullptr, 0},
    {"&Spectrum\tCtrl+F8", idSpectrum, nullptr, 0},
    {"&Histogram\tCtrl+Shift+F8", idHistogram, nullptr, 0},
    menuLine,
    {"&Keep this curve\tCtrl+K", idKeepCurve, nullptr, 0},
    {"&Forget what was kept", idForgetCurves, nullptr, 0},
    {"Save the &numbers of the curve...", idSaveCurve, nullptr, 0},
    menuLine,
    {"Fit &Gaussians...\tF9", idFitGaussians, nullptr, 0},
    {"Save the map &without them...", idFitResidual, nullptr, 0},
};

inline constexpr MenuItem viewItems[] = {
    {"&Palette", 0, paletteItems, std::size(paletteItems)},
    {"&Scale", 0, scaleItems, std::size(scaleItems)},
    {"Colo&urs...\tP", idColours, nullptr, 0},
    {"Map &display...", idDisplay, nullptr, 0},
    {"Restorin&g beam...", idBeam, nullptr, 0},
    {"Di&rty beam...", idDirtyBeam, nullptr, 0},
    {"&Contours", idContours, nullptr, 0},
    {"Contour &levels...", idContourLevels, nullptr, 0},
    menuLine,
    {"S&ky grid", 0, skyGridItems, std::size(skyGridItems)},
    {goToPositionText, idGoToPosition, nullptr, 0},
    {"Copy position\tCtrl+Shift+G", idCopyPosition, nullptr, 0},
    {"&Header cards...\tCtrl+H", idHeaderCards, nullptr, 0},
    menuLine,
    {"Cells of the &mask\tM", ID_SHOW_CELLS, nullptr, 0},
    {"&Areas in pictures", idAreasInPictures, nullptr, 0},
    {"Show names of areas", idAreaNames, nullptr, 0},
    menuLine,
    {"&Zoom in\t+", idZoomIn, nullptr, 0},
    menuItemOf(ID_ZOOM_MINUS),
    menuItemOf(ID_WHOLE_MAP),
    menuItemOf(ID_VIEW_BACK),
    menuItemOf(ID_VIEW_FORWARD),
    menuLine,
    {"Nex&t plane (Page Down)", idNextPlane, nullptr, 0},
    {"Prev&ious plane (Page Up)", idPreviousPlane, nullptr, 0},
    {"Pla&y the planes", idPlayPlanes, nullptr, 0},
    menuLine,
    {"Sur&face", 0, surfaceItems, std::size(surfaceItems)},
    {"C&omponents\tF5", idModel, nullptr, 0},
    {"&Next part\tF6", idNextMapPart, nullptr, 0},
    {"Pre&vious part\tShift+F6", idPreviousMapPart, nullptr, 0},
};

inline constexpr MenuItem helpItems[] = {
    {"&Keys and mouse\tF1", idKeys, nullptr, 0},
    {"&About", idAbout, nullptr, 0},
};

inline constexpr MenuItem mainItems[] = {
    {"&File", 0, fileItems, std::size(fileItems)},
    {"&Edit", 0, editItems, std::size(editItems)},
    {"&Areas", 0, areaItems, std::size(areaItems)},
    {"&View", 0, viewItems, std::size(viewItems)},
    {"Mea&sure", 0, measureItems, std::size(measureItems)},
    {"&Maps", 0, mapsItems, std::size(mapsItems)},
    {"&Help", 0, helpItems, std::size(helpItems)},
};

/// The popup of a menu bar whose first line has the identifier; null for none.
CMenu* popupOf(CMenu& menu, unsigned id);

inline constexpr unsigned mainMenuId = 40000;
inline constexpr MenuTemplate mainMenu = {mainMenuId, mainItems, std::size(mainItems)};

}  // namespace pavane

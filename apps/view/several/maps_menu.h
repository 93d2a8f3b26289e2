#pragma once

#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

/// Commands of several maps in one window, in one row of numbers.
enum SeveralCommand : unsigned {
    idAddMap = 40801,
    idCloseMap,
    idNextOfMaps,
    idPreviousOfMaps,
    idMapsTabs,  ///< and the others of MapsShown
    idMapsSideBySide,
    idMapsSlider,
    idBlinkMaps,
    idBlinkFaster,
    idBlinkSlower,
    idLinkNext,
    idLinkNothing,  ///< and the others of LinkBy
    idLinkSky,
    idLinkCell,
    idLinkZoom,  ///< and the others of LinkPart
    idLinkPointer,
    idLinkColours,
    idLinkAreas,
    idPairDifference,  ///< and the others of MapPair
    idPairRatio,
    idPairIndex,
    idOtherContours,  ///< the contours of the other map over the current one, or its own
    idMakeRgb,        ///< of three maps, or the ranges of the current one
    idFindShift,
    idResetShifts
};

/// Maps made of the current one, and vectors over it.
enum MakeCommand : unsigned {
    idMakeMoment = 40881,
    idMakeSmooth,
    idMakePolarisation,
    idMakeVelocity,
    idVectors
};

inline constexpr MenuItem makeItems[] = {
    {"&Moments of a cube...\tCtrl+Alt+I", idMakeMoment, nullptr, 0},
    {"Position-&velocity map...\tCtrl+Alt+V", idMakeVelocity, nullptr, 0},
    {"&Larger beam...\tCtrl+Alt+B", idMakeSmooth, nullptr, 0},
    {"&Polarisation...\tCtrl+Alt+U", idMakePolarisation, nullptr, 0},
};

inline constexpr MenuItem mapLinkItems[] = {
    {"By &sky", idLinkSky, nullptr, 0},         {"By &cell", idLinkCell, nullptr, 0},
    {"&Not linked", idLinkNothing, nullptr, 0}, {},
    {"&Zoom", idLinkZoom, nullptr, 0},          {"&Pointer", idLinkPointer, nullptr, 0},
    {"C&olours", idLinkColours, nullptr, 0},    {"&Areas", idLinkAreas, nullptr, 0},
};

/// Talk with other programs by SAMP.
enum SampCommand : unsigned { idSampOn = 40861, idSampMap, idSampPosition };

inline constexpr MenuItem sampItems[] = {
    {"&Connected (SAMP)", idSampOn, nullptr, 0},
    {"Send this &map", idSampMap, nullptr, 0},
    {"Send the &position under the pointer\tCtrl+Alt+P", idSampPosition, nullptr, 0},
};

/// Of the current map and the one before.
inline constexpr MenuItem mapPairItems[] = {
    {"&Difference...", idPairDifference, nullptr, 0},
    {"&Ratio...", idPairRatio, nullptr, 0},
    {"Spectral &index...", idPairIndex, nullptr, 0},
};

inline constexpr MenuItem mapsItems[] = {
    {"&Next map\tB", idNextOfMaps, nullptr, 0},
    {"Pre&vious map\tShift+B", idPreviousOfMaps, nullptr, 0},
    {"&Close map\tCtrl+W", idCloseMap, nullptr, 0},
    {},
    {"One at a time, with &tabs\tCtrl+Alt+1", idMapsTabs, nullptr, 0},
    {"&Side by side\tCtrl+Alt+2", idMapsSideBySide, nullptr, 0},
    {"Sli&der between two\tCtrl+Alt+3", idMapsSlider, nullptr, 0},
    {},
    {"&Blink\tCtrl+B", idBlinkMaps, nullptr, 0},
    {"&Faster (0.2 s at most)\tCtrl+Alt+F", idBlinkFaster, nullptr, 0},
    {"Slo&wer (5 s at most)\tCtrl+Alt+S", idBlinkSlower, nullptr, 0},
    {},
    {"Contours of the ot&her map\tX", idOtherContours, nullptr, 0},
    {},
    {"Next &link: sky, cell, none\tL", idLinkNext, nullptr, 0},
    {"Linked ma&ps", 0, mapLinkItems, std::size(mapLinkItems)},
    {},
    {"Vect&ors of polarisation\tV", idVectors, nullptr, 0},
    {"&Make of this map", 0, makeItems, std::size(makeItems)},
    {"Map of this one &and the one before", 0, mapPairItems, std::size(mapPairItems)},
    {"Three maps as &red, green, blue...", idMakeRgb, nullptr, 0},
    {"Sh&ift of the map before...\tCtrl+Alt+M", idFindShift, nullptr, 0},
    {"All maps wh&ere their files say", idResetShifts, nullptr, 0},
    {},
    {"Other pro&grams", 0, sampItems, std::size(sampItems)},
};

}  // namespace pavane

#pragma once

#include "pavane/resources/plot_commands.h"
#include "platform/menu_template.h"

#include <iterator>

namespace pavane
{

// Commands of the window in which visibilities are flagged.
inline constexpr unsigned ID_FLAG_TOOL = 10311;     ///< flags what a rectangle holds
inline constexpr unsigned ID_RESTORE_TOOL = 10312;  ///< takes those flags back
inline constexpr unsigned ID_FLAG_AMPLITUDES = 10313;
inline constexpr unsigned ID_FLAG_PHASES = 10314;
inline constexpr unsigned ID_FLAG_SPLIT = 10315;  ///< a point for each IF and hand
inline constexpr unsigned ID_FLAG_ERRORS = 10316;
inline constexpr unsigned ID_FLAG_SHOW = 10317;  ///< what is flagged
inline constexpr unsigned ID_FLAG_MODEL = 10318;
inline constexpr unsigned ID_FLAG_BASELINE = 10321;  ///< what a rectangle is about
inline constexpr unsigned ID_FLAG_ANTENNA = 10322;
inline constexpr unsigned ID_FLAG_EVERYTHING = 10323;
inline constexpr unsigned ID_FLAG_IFS = 10324;    ///< all of them, not the point's
inline constexpr unsigned ID_FLAG_HANDS = 10325;  ///< the same
inline constexpr unsigned ID_FLAG_NEXT = 10326;   ///< page
inline constexpr unsigned ID_FLAG_PREVIOUS = 10327;

inline constexpr unsigned IDR_FLAG_MENU = 10013;
inline constexpr MenuItem flagToolItems[] = {
    {"&Flag by rectangles\tF", ID_FLAG_TOOL},
    {"&Restore by rectangles\tR", ID_RESTORE_TOOL},
};
/// What rectangles are about.
inline constexpr MenuItem flagScopeItems[] = {
    {"This &baseline\tB", ID_FLAG_BASELINE},
    {"The ante&nna\tT", ID_FLAG_ANTENNA},
    {"All base&lines\tX", ID_FLAG_EVERYTHING},
    {},
    {"All &IFs\tI", ID_FLAG_IFS},
    {"All &hands\tH", ID_FLAG_HANDS},
};
inline constexpr MenuItem flagViewItems[] = {
    {"&Amplitudes\tA", ID_FLAG_AMPLITUDES},  {"&Phases\tP", ID_FLAG_PHASES},
    {"&Each IF and hand\tS", ID_FLAG_SPLIT}, {"Error bar&s\tE", ID_FLAG_ERRORS},
    {"Fla&gged points\tV", ID_FLAG_SHOW},    {"&Model\tM", ID_FLAG_MODEL},
};
inline constexpr MenuItem flagItems[] = {
    menuItemOf(ID_TRACK_UNDO),
    menuItemOf(ID_TRACK_REDO),
    {},
    flagToolItems[0],
    flagToolItems[1],
    {},
    flagScopeItems[0],
    flagScopeItems[1],
    flagScopeItems[2],
    flagScopeItems[4],
    flagScopeItems[5],
    {},
    flagViewItems[0],
    flagViewItems[1],
    flagViewItems[2],
    flagViewItems[3],
    flagViewItems[4],
    flagViewItems[5],
    {},
    menuItemOf(ID_ZOOM_MINUS),
    {"&Whole range\t0", ID_WHOLE_MAP},
    menuItemOf(ID_COPY_TO_CLIPBOARD),
    menuItemOf(ID_COPY_TO_BMP),
};
inline constexpr MenuItem flagMenu[] = {
    {"Flags", 0, flagItems, static_cast<int>(std::size(flagItems))},
};

}  // namespace pavane

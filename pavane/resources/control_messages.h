#pragma once

namespace pavane
{

// Texts of the small controls.
inline constexpr const char* moreColors = "More...";
inline constexpr const char* chooseColor = "Colour";
inline constexpr const char* copyText = "&Copy\tCtrl+C";
inline constexpr const char* copyAllText = "Copy &all";
inline constexpr const char* selectAllText = "&Select all\tCtrl+A";
inline constexpr const char* findTextItem = "&Find...\tCtrl+F";
inline constexpr const char* findNextItem = "Find &next\tF3";
inline constexpr const char* findName = "Find";
inline constexpr const char* splitterName = "Divider";
inline constexpr const char* progressName = "Progress";
inline constexpr const char* unknownProgress = "under way";

}  // namespace pavane

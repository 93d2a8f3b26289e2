#pragma once

namespace pavane
{

// Texts of the tables of an observation that the user sees.
inline constexpr const char* fillingStopText = "Sto&p reading\tEsc";
inline constexpr const char* fillingGoOnText = "Go on rea&ding";

inline constexpr const char* markTitle = "Choose ";  ///< before the name of a table
inline constexpr const char* markAllText = "&All";
inline constexpr const char* markAllTip = "Mark all rows (Ctrl+M)";
inline constexpr const char* markNoneText = "&None";
inline constexpr const char* markNoneTip = "Take all marks (Ctrl+Shift+M)";
inline constexpr const char* markInvertText = "&Invert";
inline constexpr const char* markInvertTip = "Mark what is not marked, and the reverse (Ctrl+I)";

}  // namespace pavane

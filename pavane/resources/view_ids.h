#pragma once

namespace pavane
{

// Commands that walk through the views of a plot.
inline constexpr unsigned ID_VIEW_BACK = 10301;
inline constexpr unsigned ID_VIEW_FORWARD = 10302;

}  // namespace pavane

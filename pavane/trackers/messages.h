#pragma once

namespace pavane
{

/// More crossings in a row of an area than its filler foresees.
inline constexpr const char* manyAreaFillPoints = "Many Area fill point";

}  // namespace pavane

#pragma once

namespace pavane
{

// Texts that axes show, the first two in message boxes.
inline constexpr char loadRasterFailed[] = "Error load DIB";
inline constexpr char overwritesFile[] = "->> overwrite ";  ///< the path follows
inline constexpr char noData[] = "no data";

}  // namespace pavane

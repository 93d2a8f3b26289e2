#pragma once

namespace pavane
{

// Texts that axes show in message boxes.
inline constexpr char loadRasterFailed[] = "Error load DIB";
inline constexpr char overwritesFile[] = "->> overwrite ";  ///< the path follows

}  // namespace pavane

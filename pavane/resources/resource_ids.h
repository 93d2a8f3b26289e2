#pragma once

namespace pavane
{

// Identifiers of the texts that axes show. Hosts refer to them by number, so they stay.
inline constexpr int IDS_LEVELS = 10002;
inline constexpr int IDS_DECLINATION = 10003;
inline constexpr int IDS_RIGHT_ASCENSION = 10004;
inline constexpr int IDS_PREFIX_FIRST = 10010;  ///< 10^-30; one for each power of a thousand
inline constexpr int IDS_PREFIX_NONE = 10020;
inline constexpr int IDS_PREFIX_LAST = 10030;  ///< 10^30
inline constexpr int IDS_HOURS = 10040;

}  // namespace pavane

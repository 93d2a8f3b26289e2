#pragma once

namespace pavane
{

// Times that the page of time intervals refuses.
inline constexpr const char* invalidStartTime = "Invalid start time.";
inline constexpr const char* invalidStopTime = "Invalid stop time.";
inline constexpr const char* invalidTimeInterval = "Invalid time interval.";
inline constexpr const char* zeroTimeInterval = "Time interval can not be equevalence 0.";
inline constexpr const char* startBehindStop = "Start time must be <= stop time.";

}  // namespace pavane

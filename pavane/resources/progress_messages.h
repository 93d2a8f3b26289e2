#pragma once

namespace pavane
{

// What is told of long jobs.
inline constexpr const char* leftAbout = "about ";
inline constexpr const char* secondsLeft = " s left";
inline constexpr const char* minutesLeft = " min left";
inline constexpr const char* hoursLeft = " h left";
inline constexpr const char* pleaseWait = "Please wait";
inline constexpr const char* jobIsStopping = "Stopping ...";
inline constexpr const char* jobIsDone = "Done";
inline constexpr const char* jobHasStopped = "Stopped";
inline constexpr const char* jobHasFailed = "Failed";
inline constexpr const char* secondsSoFar = " s so far";
inline constexpr const char* listOfJobs = "Jobs";
inline constexpr const char* listOfTexts = "What the job said";
inline constexpr const char* cancelJob = "Cancel";
inline constexpr const char* closeFailed = "Close";
inline constexpr const char* showDetails = "&Details >>";
inline constexpr const char* hideDetails = "<< &Details";

}  // namespace pavane

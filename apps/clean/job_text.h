#pragma once

#include <string>
#include <vector>

namespace pavane
{

class StudyJob;
struct JobState;
struct StudyRound;

/// What an engine tells while it cleans: "22.3 mJy at 255, 256   cycle 2   120 of 200   1:05".
std::string stateText(const JobState& state);
/// Why a job failed, with the last lines of its child.
std::string faultText(const StudyJob& job);
/// Words as a shell would take them.
std::string commandText(const std::vector<std::string>& words);
/// "dirty", "200 it", "residual, gains 1", "model".
std::string roundNameOf(const StudyRound& round);
/// Wavelengths, from the facts of the working data; 0 when they do not tell.
double longestBaseline(const std::string& facts);
/// pavane-ms beside this program when it is there, else the name, looked for along PATH.
std::string dataProgramName();
/// One core less than there are.
int engineThreads();

}  // namespace pavane

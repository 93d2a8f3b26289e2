#pragma once

#include "pavane/imaging/AImagingEngine.h"
#include "pavane/imaging/AStudy.h"

#include <string>
#include <vector>

namespace pavane
{

// What programs are told about a study. All names are relative to its folder.

/// The name without the study's folder in front.
std::string relativeName(const AStudy& study, const std::string& name);

/// A field, from 0, of the first line of the data's facts that has this name.
double studyFact(const AStudy& study, const std::string& name, std::size_t field, double missing);

/// A task on a study with its data, folder of work and centre.
EngineTask studyTask(const AStudy& study, const CleanParameters& parameters, int threads);

/// The words, behind those of the program, that bring the corrected column to these data, and the
/// files that they name. A selection of times is flags of all others: that file is written. 0, with
/// a clause, when a file is not in the study.
int correctWords(const AStudy& study, const DataState& data, std::vector<std::string>& words,
                 std::vector<std::string>& files, std::string& fault);

/// Commands as lines with tabs between the words, and back.
std::string commandLines(const std::vector<std::vector<std::string>>& commands);
std::vector<std::vector<std::string>> commandsOf(const std::string& lines);

}  // namespace pavane

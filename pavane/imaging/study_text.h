#pragma once

#include "pavane/imaging/AStudy.h"

#include <map>
#include <string>
#include <string_view>

namespace pavane
{

/// What study.txt holds.
struct StudyRecord {
    std::string source;  ///< the data file of the user
    std::string uvfits;  ///< for readers of UVFITS; a name in the study or the source; "": none
    StudySettings settings;
    DataTag model, corrected;
    std::string stamp;  ///< of the working data when they were left
    int nextRound = 0;
    std::map<int, std::string> notes;
};

/// How a text of a study was read.
enum class StudyTextKind { good, newer, bad };

/// study.txt: "name value" a line, the first line "# pavane study 1", the last "end".
PAVANE_API std::string studyText(const StudyRecord& record);
/// Reads it, whoever wrote it. Of a newer version the record has what this one knows. `fault` names
/// the line of a bad one.
PAVANE_API StudyTextKind readStudyText(std::string_view text, StudyRecord& record,
                                       std::string& fault);

/// round.txt, in the same form.
PAVANE_API std::string roundText(const StudyRound& round);
PAVANE_API StudyTextKind readRoundText(std::string_view text, StudyRound& round,
                                       std::string& fault);

/// 32 digits that tell contents apart.
PAVANE_API std::string contentKey(std::string_view bytes);
/// "1,2" for chains and IFs.
PAVANE_API std::string joined(const std::vector<int>& numbers);
/// What decides the map of parameters, as text.
PAVANE_API std::string mapWords(const CleanParameters& parameters);

}  // namespace pavane

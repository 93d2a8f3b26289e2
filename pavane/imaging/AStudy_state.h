#pragma once

#include "pavane/imaging/AStudy.h"
#include "pavane/imaging/study_text.h"
#include "tessel/processes.h"

#include <cstdio>
#include <string>
#include <utility>

namespace pavane
{

/// What an open study knows.
struct AStudy::State {
    std::string folder;
    StudyRecord record;
    std::vector<StudyRound> rounds;
    FileHold hold;
    StudyHolder self, child;
    int isOpen = 0;
    int isReadOnly = 0;
    int isNew = 0;  ///< made by this program

    static std::string numbered(int id)
    {
        char digits[16];
        (void)std::snprintf(digits, sizeof digits, "%04d", id);
        return digits;
    }
    std::string roundFolder(int id) const { return folder + "/rounds/" + numbered(id); }
    std::string path(const std::string& name) const { return folder + "/" + name; }
};

/// Sizes that files of a study have at most.
inline constexpr std::int64_t mostStudyText = std::int64_t{64} << 20U;
inline constexpr std::int64_t mostAreas = std::int64_t{256} << 20U;

/// The lock's text, and back; 0 when there is none.
std::string holderText(const StudyHolder& self, const StudyHolder& child);
int readHolderText(const std::string& text, StudyHolder& self, StudyHolder& child);

}  // namespace pavane

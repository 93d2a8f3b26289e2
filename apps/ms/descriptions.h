#pragma once

#include <string>
#include <vector>

namespace pavane_ms
{

/// What the user of a command reads.
struct CommandText {
    const char* name;
    const char* words;  ///< what stands behind its name
    const char* does;   ///< a sentence or two
};

/// The man page, section 1, in the man macros of roff.
std::string manPage(const std::vector<CommandText>& commands);
/// What bash reads to complete commands, their options and names of files.
std::string bashCompletion(const std::vector<CommandText>& commands);

}  // namespace pavane_ms

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// What the user of an option reads.
struct OptionText {
    std::string_view name;    ///< "--size"
    std::string_view letter;  ///< "-h"; empty for most
    std::string_view value;   ///< what its value is called; empty for a switch
    std::string_view text;    ///< what it does, as a part of a sentence
    /// Values to choose from, blanks between; "" when the user knows better.
    std::string_view choices{};
};

/// Options under a heading.
struct OptionGroup {
    std::string heading;
    std::vector<OptionText> options;
};

/// What the user of a program reads: its help and its man page are made of this.
struct ProgramText {
    std::string name;
    std::string purpose;                ///< in a few words
    std::vector<std::string> synopsis;  ///< the ways to call it, without its name
    std::vector<std::string> about;     ///< a sentence or two each
    std::vector<OptionGroup> groups;
    std::vector<std::string> exits;                             ///< what exit status 0, 1 ... mean
    std::vector<std::pair<std::string, std::string>> files;     ///< a name and what it is
    std::vector<std::pair<std::string, std::string>> examples;  ///< what for, and the command
    std::string seeAlso;                                        ///< "pavane-simulate"
};

/// One line that says how the program is called.
std::string usageLine(const ProgramText& program);
/// What --help prints.
std::string helpText(const ProgramText& program);
/// "pavane-view 1.2.3", and a line end.
std::string versionLine(const ProgramText& program);
/// The man page, section 1, in the man macros of roff.
std::string manPage(const ProgramText& program);
/// What bash reads to complete options, values to choose from, and names of files.
std::string bashCompletion(const ProgramText& program);

}  // namespace pavane

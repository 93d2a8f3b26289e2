#pragma once

#include <string>
#include <vector>

namespace pavane
{

struct ViewOptions;

/// A file and what it is to the user: "the map", "--png".
struct NamedFile {
    std::string what;
    std::string name;
};

/// Non-zero when writing one name would write the file of the other: through symbolic links, also
/// broken ones, through hard links, and for files that do not exist yet by folder and name.
int isSameFile(const std::string& a, const std::string& b);

/// The first of `files` that has a name and is the same as `name`; null for none.
const NamedFile* sameFileAmong(const std::string& name, const std::vector<NamedFile>& files);

/// What is wrong with the outputs of a command line: one that is an input, or two that are one
/// file. "" when nothing is.
std::string outputClash(const ViewOptions& options);

}  // namespace pavane

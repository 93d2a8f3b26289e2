#pragma once

#include "tessel/paths.h"

#include <algorithm>
#include <string>

namespace pavane
{

/// What follows the last '.' of a file's name, in small letters (ASCII).
inline std::string fileEnding(const std::string& file)
{
    std::string ending = extensionOf(file);
    std::transform(ending.begin(), ending.end(), ending.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return ending;
}

/// The file's name with another ending, in the same folder.
inline std::string besideFile(const std::string& file, const std::string& ending)
{
    const std::string old = extensionOf(file);
    return (old.empty() ? file + '.' : file.substr(0, file.size() - old.size())) + ending;
}

}  // namespace pavane

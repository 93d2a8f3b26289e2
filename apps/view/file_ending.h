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

}  // namespace pavane

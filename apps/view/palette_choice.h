#pragma once

#include <string>

namespace pavane
{

/// Loads a palette by name or file; without a name the default one, wherever it is found. Non-zero
/// on success; else 0 and `error` is one line with the names that there are.
int choosePalette(const std::string& name, std::string& error);

}  // namespace pavane

#pragma once

#include <string>

namespace pavane
{

struct ViewOptions;

/// Makes the map that the options ask for of others, writes it and the one of its errors, and
/// prints what it is. Non-zero on success; else 0 and `error` is one line that names the file.
int writeMadeMaps(const ViewOptions& options, std::string& error);

}  // namespace pavane

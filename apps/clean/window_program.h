#pragma once

#include "apps/clean/options.h"

#include <string>

namespace pavane
{

/// Shows the window until it is closed. Non-zero on success, else `error` is a line.
int runCleanWindow(char** argv, const CleanOptions& options, std::string& error);

}  // namespace pavane

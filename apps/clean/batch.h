#pragma once

#include "apps/clean/options.h"

#include <string>

namespace pavane
{

/// Does the steps of the command line without a window and prints what rounds came to. Non-zero
/// when all were done; else 0 and `error` is a line. What was done stays in the study.
int runCleanBatch(char** argv, const CleanOptions& options, std::string& error);

}  // namespace pavane

#pragma once

#include "apps/view/options.h"

#include <string>

namespace pavane
{

/// Does with a file of visibilities what the options ask for without a window: reads all input,
/// then writes files and prints numbers. Non-zero on success; else 0 and one line in `error` that
/// names the file.
int runDataBatch(char** argv, const ViewOptions& options, std::string& error);

}  // namespace pavane

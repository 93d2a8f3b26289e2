#pragma once

#include "apps/view/options.h"

#include <string>

namespace pavane
{

/// Shows the window until it is closed. Non-zero when it was shown; else 0 and `error` is a line
/// that says why.
int runWindow(char** argv, const ViewOptions& options, std::string& error);

}  // namespace pavane

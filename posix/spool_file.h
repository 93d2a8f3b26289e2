#pragma once

#include <string>

namespace pavane
{

/// A new name for a finished job on its way to a queue, in the folder for temporary files.
std::string newSpoolName();

/// Removes those of this user that programs which are gone left behind.
void sweepSpoolFiles();

}  // namespace pavane

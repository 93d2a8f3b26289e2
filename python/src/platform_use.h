#pragma once

#include "platform/types.h"

#include <vector>

namespace pavane::python
{

/// Starts the platform for pictures unless it runs. Without the interpreter's lock. Non-zero on
/// success, else `why` says in one line what is missing.
int startPlatform(CString& why);

/// What the library wanted to tell the user since the last call. In Python nothing opens a box.
std::vector<CString> takeMessages();

}  // namespace pavane::python

#pragma once

#include "posix/StopFlag.h"
#include "tessel/api.h"
#include "tessel/progress_function.h"

namespace pavane
{

/// What functions that tell their progress take, for a flag; empty for null.
PAVANE_API ProgressFunction progressOf(const StopFlag* stop);

}  // namespace pavane

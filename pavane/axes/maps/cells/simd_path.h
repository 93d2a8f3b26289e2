#pragma once

#include "tessel/api.h"

namespace pavane
{

/// Which vector instructions a kernel uses. Every path gives the same result; a kernel that has no
/// version for a path uses the next narrower one.
enum class SimdPath { plain, avx2, avx512 };

/// The widest path of this processor.
PAVANE_API SimdPath bestSimdPath();

}  // namespace pavane

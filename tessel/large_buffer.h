#pragma once

#include "tessel/api.h"

#include <cstdint>

namespace pavane
{

/// Memory for big numeric data: aligned to 64 bytes, from 4 MiB on aligned to 2 MiB and advised as
/// huge pages, because fresh small pages cost more than reading the data does. Not initialised.
/// Null when `bytes` is below 1 or there is no memory. Release with `freeLarge`.
PAVANE_API void* allocateLarge(std::int64_t bytes);
PAVANE_API void freeLarge(void* buffer);

/// Asks for huge pages where `bytes` bytes at `buffer`, from 4 MiB on, hold whole ones, before they
/// are first touched. Only a hint.
PAVANE_API void adviseHugePages(void* buffer, std::int64_t bytes);

}  // namespace pavane

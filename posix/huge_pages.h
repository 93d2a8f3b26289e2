#pragma once

#include <cstdint>

namespace pavane
{

/// Asks for huge pages where `bytes` bytes at `buffer`, from 4 MiB on, hold whole ones, before they
/// are first touched. Only a hint.
void hintHugePages(void* buffer, std::int64_t bytes);

}  // namespace pavane

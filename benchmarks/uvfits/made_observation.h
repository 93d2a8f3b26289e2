#pragma once

#include <cstdint>
#include <string>

namespace pavane
{

/// Writes an observation of ten stations, five sources and eight IFs, with its tables, of some
/// `bytes` bytes of groups: 45 baselines every two seconds, in the order of time. Exits on failure.
void makeObservation(const std::string& file, std::int64_t bytes);

}  // namespace pavane

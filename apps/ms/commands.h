#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pavane_ms
{

/// Each does a command with the words behind its name, and throws what goes wrong.
void importData(const std::vector<std::string>& words);
void correctData(const std::vector<std::string>& words);
void exportData(const std::vector<std::string>& words);
void showFacts(const std::vector<std::string>& words);
#ifdef PAVANE_HDF5
void gainsToH5(const std::vector<std::string>& words);
void gainsFromH5(const std::vector<std::string>& words);
#endif

/// A line "name value" on the standard output.
void say(const std::string& name, const std::string& value);
void say(const std::string& name, std::uint64_t value);

}  // namespace pavane_ms

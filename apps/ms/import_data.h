#pragma once

#include "apps/ms/Words.h"

#include <string>
#include <vector>

namespace pavane_ms
{

/// What an import would make, and what it made.
struct ImportCount {
    std::uint64_t rows = 0, cells = 0;
    std::uint64_t leftOut = 0;  ///< groups or rows of no antennas, time or place
    std::vector<std::string> notes;
};

void importUvFits(const std::string& input, const std::string& part, const std::string& output,
                  const Selection& selection, ImportCount& count);
void importMs(const std::string& input, const std::string& part, const std::string& output,
              const Selection& selection, ImportCount& count);

/// Bytes of a working copy with the columns that correcting and imaging add.
std::uint64_t workingSize(std::uint64_t rows, std::uint64_t cells);

/// Non-zero for a folder that holds a table, and for one of a working copy.
int isTable(const std::string& name);
int isWorkingCopy(const std::string& name);

}  // namespace pavane_ms

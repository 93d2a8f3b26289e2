#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"
#include "tessel/map_header.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// Writes an image of four axes and 32-bit floats, a row at a time, for those who do other things
/// between. Whether the file is whole or not there is the matter of who opened it.
class PAVANE_API FitsMapWriter
{
public:
    /// Writes what stands before the cells: the coordinates of `like`, with `isMap` its unit and
    /// beam, and lines of history. The file outlives the writer. Functions return 0 when the file
    /// cannot be written.
    int begin(AFile& file, int rows, int columns, const MapHeader& like, int isMap,
              const std::vector<std::string>& history = {});
    /// The same with axes of these lengths, columns and rows first, and with all other cards given.
    int begin(AFile& file, const std::vector<int>& lengths, const std::vector<std::string>& cards);
    /// The next row, of the first to the last.
    int write(const float* cells);
    /// What stands behind the cells, after the last row.
    int finish();
    /// Why the last of these has just failed, with the system's reason: a clause.
    std::string fault() const;

private:
    AFile* file_ = nullptr;
    std::vector<std::uint32_t> stored_;
    std::int64_t bytes_ = 0;
};

}  // namespace pavane

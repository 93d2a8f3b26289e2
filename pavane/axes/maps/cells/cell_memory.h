#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "platform/types.h"

#include <cstdint>
#include <limits>
#include <memory>

namespace pavane
{

/// What a cell in memory is.
enum class CellType { float32, float64, int8, uint8, int16, uint16, int32, uint32, int64, uint64 };

/// Bytes of a cell.
PAVANE_API int cellBytes(CellType type);

/// Cells in the memory of a host, as arrays of other languages describe them: cell (r, c) begins
/// r * rowBytes + c * columnBytes behind `first`. Both steps may be anything, negative or 0 too,
/// and no cell needs to be aligned. Its value is stored * scale + zero.
struct CellMemory {
    const void* first = nullptr;
    int rows = 0;
    int columns = 0;
    std::int64_t rowBytes = 0;
    std::int64_t columnBytes = 0;
    CellType type = CellType::float32;
    int swapped = 0;  ///< its bytes stand in the order that the machine does not have
    /// The stored value that stands for a blank cell; NaN: none does.
    double blank = std::numeric_limits<double>::quiet_NaN();
    double scale = 1;
    double zero = 0;
    /// Where it is not null, cells whose byte at r * maskRowBytes + c * maskColumnBytes is not zero
    /// are blank.
    const unsigned char* maskFirst = nullptr;
    std::int64_t maskRowBytes = 0;
    std::int64_t maskColumnBytes = 0;
};

/// Makes the access that reads the cells where they are, at each call anew; the host keeps them as
/// long as it. Floats in the machine's order one behind another are read without a copy. 0 and
/// `error` without cells, with a scale that is no number, and without memory.
PAVANE_API int makeCellAccess(const CellMemory& memory, std::unique_ptr<AMatrixAccess>& access,
                              CString& error);

}  // namespace pavane

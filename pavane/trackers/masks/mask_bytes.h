#pragma once

#include "platform/api.h"
#include "tessel/ABitMatrix.h"

#include <cstdint>

namespace pavane
{

/// Writes the mask as a byte a cell, 0 or 1: the bytes of a row one behind another, `rowBytes` from
/// one row to the next. `to` has room for rows() of them and does not overlap the mask.
PAVANE_API void unpackMask(const ABitMatrix& mask, unsigned char* to, std::int64_t rowBytes);

/// Sets the bits of the cells whose byte is not 0 and clears the others: the byte of cell (r, c) is
/// `first` + r * rowBytes + c * columnBytes, steps also negative or 0.
PAVANE_API void packMask(const unsigned char* first, std::int64_t rowBytes,
                         std::int64_t columnBytes, ABitMatrix& mask);

}  // namespace pavane

#pragma once

#include <cstdint>

namespace pavane
{

/// How stored cells become values: stored * scale + zero; whole numbers equal to `blank` are NaN.
struct CellScale {
    double scale = 1;
    double zero = 0;
    int hasBlank = 0;
    std::int64_t blank = 0;
};

/// Turns `count` cells as FITS stores them (BITPIX `bitpix`, highest byte first) into values.
/// Values beyond the range of floats are cut to it. `stored` and `cells` may be the same memory
/// when bitpix is -32.
void convertCells(const void* stored, int bitpix, std::int64_t count, const CellScale& scale,
                  float* cells);

}  // namespace pavane

#pragma once

#include <cstdint>

namespace pavane
{

/// Columns of pixels that RisingStroke works on at a time.
inline constexpr int stripColumns = 16;

/// The loops that smooth curves spend their time in. Every set gives the same values.
struct StrokeKernels {
    /// to[i] = the greatest of from[i + j] + shape[j], j below 2 * half; `shape` is symmetric, its
    /// first half is given. `count` is a multiple of 16; `from` has count + 2 * half items.
    void (*widen)(const float* from, const float* shape, int half, int count, float* to);
    /// Sums the `rows` rows of second differences up twice, clears them, and blends `color`
    /// over pixels as far as they are covered. A sum of 2^20 covers a pixel.
    void (*blend)(std::uint32_t* differences, int rows, std::uint32_t color, std::uint32_t* pixels,
                  std::ptrdiff_t stride, int columns, int skipped);
};

/// Those for this processor.
const StrokeKernels& strokeKernels();

}  // namespace pavane

#pragma once

#include <cstddef>
#include <cstdint>

namespace pavane
{

/// Columns of pixels that RisingStroke works on at a time.
inline constexpr int stripColumns = 16;
/// No curve: far beyond everything that can be seen.
inline constexpr float nowhere = -1e9F;
/// Sum of the differences that covers a pixel.
inline constexpr std::uint32_t wholePixel = 1 << 16;

/// The loops that the covering of pixels by smooth curves spends its time in. Every set gives the
/// same values.
struct StrokeKernels {
    /// to[i] = the greatest of from[i + j] + shape[j], j below 2 * half; `shape` is symmetric, its
    /// first half is given. `count` is a multiple of 16; `from` has count + 2 * half items.
    void (*widen)(const float* from, const float* shape, int half, int count, float* to);
    /// Adds the differences along y of what a strip covers whose columns have `parts` parts each,
    /// a power of 2. A part is covered from row -low to row high, or not at all where these are
    /// nowhere. Row 1 of the differences is row 0 of the `height` rows of the picture. Widens
    /// `firstRow` and `lastRow`, which is excluded. `ends` takes 4 x 16 x `parts` items.
    void (*cover)(const float* low, const float* high, int parts, int height, std::int32_t* ends,
                  std::uint32_t* differences, int& firstRow, int& lastRow);
    /// Sums the `rows` rows of differences up, clears them, and blends `color` over pixels as far
    /// as they are covered.
    void (*blend)(std::uint32_t* differences, int rows, std::uint32_t color, std::uint32_t* pixels,
                  std::ptrdiff_t stride, int columns, int skipped);
};

/// Those for this processor.
const StrokeKernels& strokeKernels();

}  // namespace pavane

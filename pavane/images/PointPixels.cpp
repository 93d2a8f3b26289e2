#include "pavane/images/PointPixels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

namespace pavane
{

namespace
{

constexpr std::int64_t mostBits = std::int64_t{1} << 30;
constexpr int wordBits = 64;
constexpr std::int64_t block = 256;  ///< points looked at together

/// How the bits of points are found.
struct BitPlaces {
    double xFirst, xSpan, xLength;
    double yFirst, ySpan, yLength;
    std::int32_t rowBits;
    std::int32_t none;  ///< for points outside
};

/// The bit of each of `n` points, a multiple of 8.
using FindPlaces = void (*)(const double* x, const double* y, std::int64_t n, const BitPlaces& to,
                            std::uint32_t* places);

namespace plain
{
#include "pavane/images/point_places.inc"
}

#if defined(__x86_64__)
#pragma GCC push_options
#pragma GCC target("avx2")
namespace avx2
{
#include "pavane/images/point_places.inc"
}
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("avx512f,avx512bw,avx512vl,avx512dq")
namespace avx512
{
#include "pavane/images/point_places.inc"
}
#pragma GCC pop_options
#endif

FindPlaces widestPlaces()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq"))
        return avx512::bitPlaces;
    if (__builtin_cpu_supports("avx2"))
        return avx2::bitPlaces;
#endif
    return plain::bitPlaces;
}

/// Pixels from the start of a scale to its end, both included; 0 for one that has none.
int pixelsOf(const CurveScale& scale)
{
    const bool fine = std::isfinite(scale.first) && std::isfinite(scale.span) &&
                      scale.length >= 0 && scale.length < static_cast<double>(mostBits);
    return fine ? static_cast<int>(scale.length + 0.5) + 1 : 0;
}

/// The values of a block on a linear scale.
void takeBlock(const CurvePoints& points, std::int64_t from, std::int64_t n, bool logX, bool logY,
               double* x, double* y)
{
    for (std::int64_t i = 0; i < n; ++i) {
        x[i] = logX ? std::log10(points.xAt(from + i)) : points.xAt(from + i);
        y[i] = logY ? std::log10(points.y[from + i]) : points.y[from + i];
    }
    // what is left of the last vector
    std::fill(x + n, x + block, std::numeric_limits<double>::quiet_NaN());
    std::fill(y + n, y + block, std::numeric_limits<double>::quiet_NaN());
}

}  // namespace

PointPixels::PointPixels(const CurveScale& xScale, const CurveScale& yScale)
    : xScale_(xScale), yScale_(yScale), columns_(pixelsOf(xScale)), rows_(pixelsOf(yScale)),
      xBase_(xScale.base), yBase_(yScale.base), xSign_(xScale.sign < 0 ? -1 : 1),
      ySign_(yScale.sign < 0 ? -1 : 1)
{
    const auto holds = [](std::int64_t base, int sign, int length) {
        const std::int64_t end = base + std::int64_t{sign} * length;
        return end > std::numeric_limits<int>::min() && end < std::numeric_limits<int>::max();
    };
    rowWords_ = (std::int64_t{columns_} + wordBits - 1) / wordBits;
    if (words() == 0 || words() > mostBits / wordBits || !holds(xBase_, xSign_, columns_) ||
        !holds(yBase_, ySign_, rows_))
        return;
    // one more, whose bits stand for all points outside
    words_.reset(new (std::nothrow) std::uint64_t[static_cast<std::size_t>(words() + 1)]());
}

void PointPixels::add(const CurvePoints& points)
{
    if (!isUsable() || !points.y)
        return;
    static const FindPlaces placesOf = widestPlaces();
    const BitPlaces to{xScale_.first,
                       xScale_.span,
                       xScale_.length,
                       yScale_.first,
                       yScale_.span,
                       yScale_.length,
                       static_cast<std::int32_t>(rowWords_ * wordBits),
                       static_cast<std::int32_t>(words() * wordBits)};
    std::uint32_t places[block];
    double x[block];
    double y[block];
    std::uint64_t* const bits = words_.get();
    const bool plain = points.x && !xScale_.logarithmic && !yScale_.logarithmic;
    for (std::int64_t i = 0; i < points.n; i += block) {
        const std::int64_t n = std::min(block, points.n - i);
        if (plain && n == block) {
            placesOf(points.x + i, points.y + i, block, to, places);
        } else {
            takeBlock(points, i, n, xScale_.logarithmic, yScale_.logarithmic, x, y);
            placesOf(x, y, block, to, places);
        }
        for (const std::uint32_t place : places)
            bits[place / wordBits] |= std::uint64_t{1} << (place % wordBits);
    }
    bits[words()] = 0;
}

/// The first column from `column` on of which the bit is as `set` says; columns() when none is.
int PointPixels::next(int row, int column, int set) const
{
    const std::uint64_t* const words = words_.get() + row * rowWords_;
    while (column < columns_) {
        const std::uint64_t word = set ? words[column / wordBits] : ~words[column / wordBits];
        const std::uint64_t rest = word >> (column % wordBits);
        if (rest)
            return std::min(columns_, column + std::countr_zero(rest));
        column = (column / wordBits + 1) * wordBits;
    }
    return columns_;
}

}  // namespace pavane

#pragma once

#include "pavane/images/curve_raster.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>
#include <memory>

namespace pavane
{

/// The pixels of a plot that hold any of many points: one bit each, whatever the order and number
/// of the points.
class PAVANE_API PointPixels
{
public:
    /// The pixels that the scales reach, from first to last value. Without memory for them, or
    /// with more than 2^30, there are none: isUsable tells.
    PointPixels(const CurveScale& xScale, const CurveScale& yScale);
    int isUsable() const { return words_ != nullptr; }
    /// Sets the pixels of the points, those that lie outside the scales and those with a value
    /// that is not finite left out; the pixel of each is that of CurveScale::pixel.
    void add(const CurvePoints& points);
    /// Calls use(first, last, y) for all runs of set pixels, both ends included, in rows from
    /// above; first and last are ascending pixels.
    template <typename Use>
    void forRuns(Use&& use) const
    {
        for (int j = 0; j < rows_; ++j) {
            const int row = ySign_ > 0 ? j : rows_ - 1 - j;
            for (int from = next(row, 0, 1); from < columns_;) {
                const int end = next(row, from, 0);
                const int a = xBase_ + (xSign_ > 0 ? from : 1 - end);
                use(a, a + end - 1 - from, yBase_ + ySign_ * row);
                from = next(row, end, 1);
            }
        }
    }

private:
    std::int64_t words() const { return rowWords_ * rows_; }
    int next(int row, int column, int set) const;

    CurveScale xScale_;
    CurveScale yScale_;
    int columns_ = 0;
    int rows_ = 0;
    int xBase_;
    int yBase_;
    int xSign_;
    int ySign_;
    std::int64_t rowWords_ = 0;
    std::unique_ptr<std::uint64_t[]> words_;  ///< offsets from the starts of the scales
};

}  // namespace pavane

#pragma once

#include "pavane/maps/float_keys.h"
#include "pavane/maps/map_picture.h"
#include "pavane/maps/row_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace pavane
{

/// Indices of values on any scale, by comparison with the values at which colours change. A table
/// over the upper bits of the values' keys tells where to start comparing, so that nearly all
/// values need one comparison, whatever the scale.
class ThresholdTable
{
public:
    ThresholdTable(const MapScale& scale, int count) : thresholds_(static_cast<std::size_t>(count))
    {
        thresholds_[0] = -std::numeric_limits<float>::infinity();
        for (std::size_t i = 1; i < thresholds_.size(); ++i)
            thresholds_[i] =
                std::max(thresholds_[i - 1],
                         static_cast<float>(scale.value(static_cast<double>(i) / count)) + 0.0f);
        if (count < 2)
            return;
        firstKey_ = orderedKey(thresholds_[1]);
        const std::uint32_t span = orderedKey(thresholds_.back()) - firstKey_;
        shift_ = std::max(0, static_cast<int>(std::bit_width(span)) - 16);
        start_.resize((span >> shift_) + 1);
        std::uint32_t index = 0;
        for (std::uint32_t place = 0; place < start_.size(); ++place) {
            while (index + 1 < thresholds_.size() &&
                   orderedKey(thresholds_[index + 1]) - firstKey_ <= place << shift_)
                ++index;
            start_[place] = static_cast<unsigned char>(index);
        }
    }
    // adding 0 makes one zero of the two
    int of(float value) const
    {
        if (thresholds_.size() < 2 || !(value >= thresholds_[1]))
            return 0;
        const std::size_t place = (orderedKey(value + 0.0f) - firstKey_) >> shift_;
        std::size_t index = start_[std::min(place, start_.size() - 1)];
        while (index + 1 < thresholds_.size() && value >= thresholds_[index + 1])
            ++index;
        return static_cast<int>(index);
    }

private:
    std::vector<float> thresholds_;
    std::vector<unsigned char> start_;  ///< of keys from that of the second threshold on
    std::uint32_t firstKey_ = 0;
    int shift_ = 0;
};

/// Turns rows of values into rows of indices; minus infinity is a cell without a value.
class RowPainter
{
public:
    RowPainter(const MapScale& scale, const MapColors& colors, SimdPath path)
        : colors_(colors), kernels_(rowKernels(path)), low_(static_cast<float>(scale.low())),
          step_(static_cast<float>(colors.count / (scale.high() - scale.low()))),
          // a first index other than 0, or a range beyond what float holds, has no vector form
          linear_(scale.kind() == MapScaleKind::linear && colors.first == 0 &&
                  std::isfinite(step_) && step_ > 0 && scale.high() - scale.low() < 1e38 &&
                  std::fabs(scale.low()) < 1e38),
          table_(scale, linear_ ? 1 : colors.count)
    {
    }
    void paint(const float* values, int count, unsigned char* indices) const
    {
        const auto blank = static_cast<unsigned char>(colors_.blank);
        if (linear_) {
            kernels_.quantize(values, count, low_, step_, colors_.count - 1, blank, indices);
            return;
        }
        for (int i = 0; i < count; ++i)
            indices[i] = values[i] == -std::numeric_limits<float>::infinity()
                             ? blank
                             : static_cast<unsigned char>(colors_.first + table_.of(values[i]));
    }

private:
    MapColors colors_;
    const RowKernels& kernels_;
    float low_;
    float step_;
    int linear_;
    ThresholdTable table_;
};

/// The pixels of a direction that show anything are neighbours: first to end - 1.
inline CellSpan coveredPixels(const PixelCells& cells)
{
    CellSpan covered{0, cells.pixels()};
    while (covered.first < covered.end && cells.groupOf(covered.first) < 0)
        ++covered.first;
    while (covered.first < covered.end && cells.groupOf(covered.end - 1) < 0)
        --covered.end;
    return covered;
}

/// Writes the picture of `x` and `y` into `bits` (as paintMap does): `indexRow(group, indices)`
/// gives the indices of a group of rows, one for each group of `x`.
template <typename IndexRow>
void paintRows(const PixelCells& x, const PixelCells& y, unsigned char* bits, std::ptrdiff_t stride,
               const RowKernels& kernels, const IndexRow& indexRow)
{
    /// The expanding kernel may read this far beyond a row of indices.
    constexpr std::size_t expandMargin = 16;
    const CellSpan pixels = coveredPixels(x);
    const int width = pixels.end - pixels.first;
    std::vector<int> groups;
    for (int i = pixels.first; i < pixels.end; ++i)
        groups.push_back(x.groupOf(i));
    const bool inOrder = width == x.groups() && width > 0 && groups.front() == 0;
    std::vector<unsigned char> indices(static_cast<std::size_t>(x.groups()) + expandMargin);
    const unsigned char* painted = nullptr;
    int paintedGroup = -1;
    for (int j = 0; j < y.pixels(); ++j) {
        if (y.groupOf(j) < 0)
            continue;
        unsigned char* target = bits + j * stride + pixels.first;
        if (painted && paintedGroup == y.groupOf(j)) {
            std::copy_n(painted, width, target);
            continue;
        }
        if (inOrder) {
            indexRow(y.groupOf(j), target);
        } else {
            indexRow(y.groupOf(j), indices.data());
            kernels.expand(indices.data(), groups.data(), width, target);
        }
        painted = target;
        paintedGroup = y.groupOf(j);
    }
}

}  // namespace pavane

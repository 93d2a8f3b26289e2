#pragma once

#include "pavane/axes/maps/cells/map_picture.h"
#include "pavane/axes/maps/cells/rank_kernels.h"
#include "pavane/axes/maps/cells/row_kernels.h"
#include "pavane/axes/maps/cells/threshold_table.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace pavane
{

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

    /// The indices of cells as ranks: 1 more, and 0 for a cell that is not finite.
    void rank(const float* cells, int count, unsigned char* ranks, SimdPath path) const
    {
        if (linear_)
            rankKernels(path).rank(cells, count, low_, step_, colors_.count - 1, ranks);
        else
            table_.rank(cells, count, ranks);
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

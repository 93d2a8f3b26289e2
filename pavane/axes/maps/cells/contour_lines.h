#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/simd_path.h"
#include "platform/geometry.h"
#include "tessel/progress_function.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace pavane
{

class CrossingPool;

/// Bytes that the lines of one map and the work of tracing them may take: 256 MiB at first, and
/// again for 0 or less. A setting of the module, asked once by each tracing that has no limit of
/// its own. Any thread may call both.
PAVANE_API std::int64_t GetContourMemory();
PAVANE_API void SetContourMemory(std::int64_t bytes);

/// One contour: `count` points of ContourLines::points() from `first` on. A closed line does not
/// repeat its first point at its end.
struct ContourLine {
    int level = 0;  ///< index of the level
    int closed = 0;
    std::int64_t first = 0;
    std::int64_t count = 0;
};

/// Contours of a map as joined lines in matrix cells: x is the column and y the row, and cell
/// centres are whole numbers. Walking along a line the higher values lie on the left (x to the
/// right, y upwards).
///
/// The map is taken as linear along the lines between neighbouring centres. A cell equal to a level
/// counts as above it. Where two opposite corners of a square of centres lie above a level and the
/// other two below, the mean of the four decides which pair is joined. Lines end at the border of
/// the map and beside cells that are not finite, and nowhere else.
class PAVANE_API ContourLines
{
public:
    /// A level with more points than this is left out, however much memory there is: it lies in the
    /// noise of a large map and would be drawn as a solid area.
    static constexpr std::int64_t mostPoints = std::int64_t{1} << 25;
    static constexpr int mostLevels = 250;

    /// Traces `levels` (any order; those that are not finite have no lines), lines in the order of
    /// the levels. Each row is read once as long as all lines fit into GetContourMemory() with what
    /// tracing them takes; else the levels with the most crossings are left out and the others are
    /// traced in bands. Non-zero on success; 0, and empty, without memory, with more than 250
    /// levels or when `progress` gives up; it hears of each row of each way over the cells.
    int trace(const AMatrixAccess& cells, const std::vector<double>& levels,
              SimdPath path = bestSimdPath(), const ProgressFunction& progress = {});

    /// Carries all points elsewhere: `place` moves one, or answers 0 where there is no place for
    /// it. Lines end there, and where two points that are neighbours come to lie farther apart than
    /// `farthest`. 0, and without lines, without memory.
    int carry(const std::function<int(CPointF&)>& place, double farthest);

    /// A limit of these lines' own in place of GetContourMemory(); none for 0 or less.
    void setMemory(std::int64_t bytes) { memory_ = bytes; }
    /// What the last tracing was allowed; the limit in force before the first.
    std::int64_t memory() const;

    const std::vector<ContourLine>& lines() const { return lines_; }
    const CPointF* points(const ContourLine& line) const { return points_.data() + line.first; }
    std::int64_t pointCount() const { return pointCount_; }
    /// Non-zero when the level was left out for its number of points, see trace.
    int isLeftOut(int level) const { return leftOut_[static_cast<std::size_t>(level)]; }

private:
    /// What a tracing goes by.
    struct Task {
        const AMatrixAccess& cells;
        const std::vector<double>& levels;
        SimdPath path;
        const ProgressFunction& progress;
        std::int64_t memory;
    };
    int traceBand(const Task& task, const std::vector<int>& band, std::int64_t blocks,
                  int& isTooMuch);
    int traceInBands(const Task& task);
    void takeLevel(CrossingPool& pool, int level);

    std::vector<ContourLine> lines_;
    AMatrix<CPointF> points_;
    std::int64_t pointCount_ = 0;
    std::vector<char> leftOut_;
    std::int64_t memory_ = 0;
    std::int64_t usedMemory_ = 0;
};

}  // namespace pavane

#include "pavane/axes/maps/cells/contour_lines.h"

#include "pavane/axes/maps/cells/contour_plan.h"
#include "pavane/axes/maps/cells/crossing_pool.h"
#include "pavane/axes/maps/cells/level_kernels.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>

namespace pavane
{

namespace
{

constexpr std::int64_t usualMemory = std::int64_t{256} << 20;
std::atomic<std::int64_t> contourMemory = usualMemory;

static_assert(CrossingPool::mostCrossings == ContourLines::mostPoints);
static_assert(sizeof(Crossing) == crossingBytes);
// The lines grow in a vector, which may take twice what they need, and have six points or more as a
// rule even in noise.
static_assert(pointBytes >= sizeof(CPointF) + 2 * sizeof(ContourLine) / 6);

/// Goes up the map row by row and links the crossings of each square of four centres.
///
/// The edges of a square are numbered from the bottom against the clock: 0 bottom, 1 right, 2 top,
/// 3 left; corner i lies where edge i starts. A segment starts at an edge that leads from a high to
/// a low corner and ends at one that leads from low to high, so that it has the high side on its
/// left. Crossings on bottom and left edges were made by the squares there, if these had four
/// values.
class ContourTracer
{
public:
    /// `levels` rise; their crossings may take `blocks` blocks of a pool.
    ContourTracer(const AMatrixAccess& cells, const std::vector<double>& levels,
                  std::int64_t blocks)
        : columns_(cells.columns()), levels_(levels), pools_(levels.size()), blocks_(blocks),
          onRow_(levels.size() * static_cast<std::size_t>(columns_)), onColumn_(levels.size()),
          cells_(cells)
    {
        for (const double level : levels)
            thresholds_.push_back(contourThreshold(level));
        for (auto& row : levelRows_)
            row.assign(static_cast<std::size_t>(columns_) + sizeof(std::uint64_t), blankLevel);
    }
    int trace(SimdPath path, const ProgressFunction& progress);

    std::vector<CrossingPool>& pools() { return pools_; }
    /// After a failure: whether it was for the limit and not for want of memory.
    int isTooMuch() const { return isTooMuch_; }

private:
    struct Row {
        const float* values = nullptr;
        const unsigned char* levels = nullptr;
    };

    void traceRow();
    void traceSquare(int column);
    void traceLevel(int column, int level, int high, int madeBelow, int madeLeft);
    int crossing(int edge, int column, int level);
    void link(int from, int to, int level);
    int centreIsHigh(int column, int level) const;
    double part(float from, float to, int level) const
    {
        const double start = static_cast<double>(from);
        return (levels_[static_cast<std::size_t>(level)] - start) /
               (static_cast<double>(to) - start);
    }
    std::size_t slot(int level, int column) const
    {
        return static_cast<std::size_t>(level) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(column);
    }

    int columns_;
    const std::vector<double>& levels_;
    std::vector<float> thresholds_;
    std::vector<CrossingPool> pools_;
    std::int64_t blocks_;
    std::vector<int> onRow_;     ///< crossing of each level right of each centre of the lower row
    std::vector<int> onColumn_;  ///< crossing of each level on the left edge of the square
    const AMatrixAccess& cells_;
    std::vector<unsigned char> levelRows_[3];
    Row below_, low_, high_;
    int row_ = 0;
    int edges_[4] = {};
    int failed_ = 0;
    int isTooMuch_ = 0;
};

int ContourTracer::trace(SimdPath path, const ProgressFunction& progress)
{
    RowReader readers[2] = {RowReader(cells_), RowReader(cells_)};
    for (int r = 0; r < cells_.rows() && !failed_; ++r) {
        auto& levels = levelRows_[r % 3];
        below_ = low_;
        low_ = high_;
        high_ = {readers[r % 2].row(r), levels.data()};
        if (!high_.values || (progress && !progress(static_cast<double>(r) / cells_.rows())))
            return 0;
        countLevels(high_.values, columns_, thresholds_.data(),
                    static_cast<int>(thresholds_.size()), levels.data(), path);
        row_ = r - 1;
        if (r > 0)
            traceRow();
    }
    return !failed_;
}

/// Most squares lie between two levels; eight of them at a time are passed over.
void ContourTracer::traceRow()
{
    using Eight = std::uint64_t;
    const auto eightAt = [](const unsigned char* levels) {
        Eight word;
        std::memcpy(&word, levels, sizeof word);
        return word;
    };
    constexpr int step = sizeof(Eight);
    const int squares = columns_ - 1;
    for (int c = 0; c < squares; c += step) {
        const Eight corner = eightAt(low_.levels + c);
        Eight differs = (corner ^ eightAt(low_.levels + c + 1)) |
                        (corner ^ eightAt(high_.levels + c)) |
                        (corner ^ eightAt(high_.levels + c + 1));
        if constexpr (std::endian::native == std::endian::little) {
            while (differs) {
                const int i = std::countr_zero(differs) / 8;
                if (c + i < squares)
                    traceSquare(c + i);
                differs &= ~(Eight{255} << (8 * i));
            }
        } else if (differs) {
            for (int i = c; i < std::min(c + step, squares); ++i)
                traceSquare(i);
        }
    }
}

void ContourTracer::traceSquare(int column)
{
    const int corner[4] = {low_.levels[column], low_.levels[column + 1], high_.levels[column + 1],
                           high_.levels[column]};
    const auto [least, most] = std::minmax({corner[0], corner[1], corner[2], corner[3]});
    if (most == blankLevel)
        return;
    const int madeBelow =
        row_ > 0 && below_.levels[column] != blankLevel && below_.levels[column + 1] != blankLevel;
    const int madeLeft = column > 0 && low_.levels[column - 1] != blankLevel &&
                         high_.levels[column - 1] != blankLevel;
    for (int level = least; level < most; ++level) {
        const int high = (corner[0] > level) | (corner[1] > level) << 1 | (corner[2] > level) << 2 |
                         (corner[3] > level) << 3;
        traceLevel(column, level, high, madeBelow, madeLeft);
    }
}

void ContourTracer::traceLevel(int column, int level, int high, int madeBelow, int madeLeft)
{
    const auto k = static_cast<std::size_t>(level);
    int start[2], end[2];
    int starts = 0, ends = 0;
    for (int edge = 0; edge < 4; ++edge) {
        const int from = high >> edge & 1;
        const int to = high >> ((edge + 1) & 3) & 1;
        if (from == to)
            continue;
        if (edge == 0 && madeBelow)
            edges_[edge] = onRow_[slot(level, column)];
        else if (edge == 3 && madeLeft)
            edges_[edge] = onColumn_[k];
        else
            edges_[edge] = crossing(edge, column, level);
        if (edges_[edge] < 0)
            return;
        (from ? start[starts++] : end[ends++]) = edge;
    }
    if (starts == 1) {
        link(edges_[start[0]], edges_[end[0]], level);
    } else {
        // a start joined with the edge after it cuts off a low corner, with the edge before it a
        // high one
        const int turn = centreIsHigh(column, level) ? 1 : 3;
        link(edges_[start[0]], edges_[(start[0] + turn) & 3], level);
        link(edges_[start[1]], edges_[(start[1] + turn) & 3], level);
    }
    if ((high >> 1 & 1) != (high >> 2 & 1))
        onColumn_[k] = edges_[1];
    if ((high >> 2 & 1) != (high >> 3 & 1))
        onRow_[slot(level, column)] = edges_[2];
}

int ContourTracer::crossing(int edge, int column, int level)
{
    const auto k = static_cast<std::size_t>(level);
    CPointF at{static_cast<double>(column + (edge == 1)), static_cast<double>(row_ + (edge == 2))};
    if (edge == 0 || edge == 2) {
        const float* values = edge == 0 ? low_.values : high_.values;
        at.x += part(values[column], values[column + 1], level);
    } else {
        const int c = column + (edge == 1);
        at.y += part(low_.values[c], high_.values[c], level);
    }
    const int made = pools_[k].add(at, blocks_);
    if (made < 0) {
        failed_ = 1;
        isTooMuch_ = blocks_ < 0 || pools_[k].count() >= CrossingPool::mostCrossings;
    }
    return made;
}

void ContourTracer::link(int from, int to, int level)
{
    CrossingPool& pool = pools_[static_cast<std::size_t>(level)];
    pool[from].next = to;
    pool[to].hasPrevious = 1;
}

int ContourTracer::centreIsHigh(int column, int level) const
{
    const double sum =
        static_cast<double>(low_.values[column]) + static_cast<double>(low_.values[column + 1]) +
        static_cast<double>(high_.values[column]) + static_cast<double>(high_.values[column + 1]);
    return sum / 4 >= levels_[static_cast<std::size_t>(level)];
}

std::size_t asSize(int i) { return static_cast<std::size_t>(i); }

constexpr int taken = -2;

/// Writes the line that starts at crossing `start` and marks its crossings as taken. Returns the
/// number of points; points on top of their predecessor are dropped.
std::int64_t takeLine(CrossingPool& pool, int start, CPointF* to)
{
    std::int64_t count = 0;
    for (int i = start; i >= 0 && pool[i].next != taken;) {
        Crossing& crossing = pool[i];
        if (count < 1 || !(to[count - 1] == crossing.at))
            to[count++] = crossing.at;
        i = crossing.next;
        crossing.next = taken;
    }
    return count;
}

}  // namespace

std::int64_t GetContourMemory() { return contourMemory; }
void SetContourMemory(std::int64_t bytes) { contourMemory = bytes > 0 ? bytes : usualMemory; }

std::int64_t ContourLines::memory() const
{
    return usedMemory_ > 0 ? usedMemory_ : memory_ > 0 ? memory_ : GetContourMemory();
}

int ContourLines::trace(const AMatrixAccess& cells, const std::vector<double>& levels,
                        SimdPath path, const ProgressFunction& progress)
{
    lines_.clear();
    points_ = AMatrix<CPointF>();
    pointCount_ = 0;
    leftOut_.assign(levels.size(), 0);
    if (levels.size() > mostLevels)
        return 0;
    if (cells.rows() < 2 || cells.columns() < 2 || levels.empty())
        return 1;
    std::vector<double> numbered = levels;
    for (double& level : numbered)
        level = level == level ? level : std::numeric_limits<double>::infinity();
    std::vector<int> all(levels.size());
    std::iota(all.begin(), all.end(), 0);
    usedMemory_ = memory_ > 0 ? memory_ : GetContourMemory();
    const std::int64_t blocks = usedMemory_ / (crossingBlock * (crossingBytes + pointBytes));
    int isTooMuch = 0;
    const Task task{cells, numbered, path, progress, usedMemory_};
    const int traced = traceBand(task, all, blocks, isTooMuch) || (isTooMuch && traceInBands(task));
    if (!traced) {
        lines_.clear();
        points_ = AMatrix<CPointF>();
        pointCount_ = 0;
    }
    return traced;
}

/// Traces the levels `band` and appends their lines in its order.
int ContourLines::traceBand(const Task& task, const std::vector<int>& band, std::int64_t blocks,
                            int& isTooMuch)
{
    const std::vector<double>& levels = task.levels;
    std::vector<int> rising = band;
    std::stable_sort(rising.begin(), rising.end(),
                     [&](int a, int b) { return levels[asSize(a)] < levels[asSize(b)]; });
    std::vector<double> values;
    std::vector<std::size_t> placeOf(levels.size());
    for (const int level : rising) {
        placeOf[asSize(level)] = values.size();
        values.push_back(levels[asSize(level)]);
    }
    ContourTracer tracer(task.cells, values, blocks);
    if (!tracer.trace(task.path, task.progress)) {
        isTooMuch = tracer.isTooMuch();
        return 0;
    }
    std::int64_t crossings = 0;
    for (CrossingPool& pool : tracer.pools())
        crossings += pool.count();
    isTooMuch = crossings > std::numeric_limits<int>::max();
    if (isTooMuch ||
        (points_.cells() < 1 && crossings > 0 && !points_.allocate(1, static_cast<int>(crossings))))
        return 0;
    for (const int level : band) {
        if (task.progress && !task.progress(1))
            return 0;
        takeLevel(tracer.pools()[placeOf[asSize(level)]], level);
    }
    return 1;
}

/// Traces as many levels as the memory allows, a few at a time.
int ContourLines::traceInBands(const Task& task)
{
    const std::vector<double>& levels = task.levels;
    std::vector<double> rising = levels;
    std::sort(rising.begin(), rising.end());
    std::vector<std::int64_t> ofRising;
    if (!countCrossings(task.cells, rising, task.path, ofRising))
        return 0;
    std::vector<std::int64_t> crossings;
    for (const double level : levels)
        crossings.push_back(ofRising[static_cast<std::size_t>(
            std::lower_bound(rising.begin(), rising.end(), level) - rising.begin())]);
    const ContourPlan plan = planContours(crossings, mostPoints, task.memory);
    if (plan.mostPoints > 0 && !points_.allocate(1, static_cast<int>(plan.mostPoints)))
        return 0;
    leftOut_.assign(levels.size(), 1);
    for (const std::vector<int>& band : plan.bands) {
        for (const int level : band)
            leftOut_[asSize(level)] = 0;
        int isTooMuch = 0;
        if (!traceBand(task, band, std::numeric_limits<int>::max(), isTooMuch))
            return 0;
    }
    return 1;
}

/// Open lines are walked from the crossings that nothing leads to; what is left then is closed.
void ContourLines::takeLevel(CrossingPool& pool, int level)
{
    for (const int closed : {0, 1}) {
        for (int i = 0; i < pool.count(); ++i) {
            if (pool[i].next == taken || (!closed && pool[i].hasPrevious))
                continue;
            CPointF* to = points_.data() + pointCount_;
            std::int64_t count = takeLine(pool, i, to);
            if (closed && count > 1 && to[count - 1] == to[0])
                --count;
            if (count < 2)
                continue;  // the level touches a single cell from below
            lines_.push_back({level, closed, pointCount_, count});
            pointCount_ += count;
        }
    }
}

}  // namespace pavane

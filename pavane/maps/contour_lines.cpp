#include "pavane/maps/contour_lines.h"

#include "pavane/maps/crossing_pool.h"
#include "pavane/maps/level_kernels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>

namespace pavane
{

namespace
{

/// The least float that is not below `level`, so that floats compare with it as with the level.
float thresholdOf(double level)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (!(std::fabs(level) <= static_cast<double>(std::numeric_limits<float>::max())))
        return level < 0 ? -infinity : infinity;
    const float nearest = static_cast<float>(level);
    return static_cast<double>(nearest) < level ? std::nextafterf(nearest, infinity) : nearest;
}

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
    ContourTracer(const AMatrixAccess& cells, const std::vector<double>& levels)
        : columns_(cells.columns()), levels_(levels), pools_(levels.size()),
          leftOut_(levels.size()), onRow_(levels.size() * static_cast<std::size_t>(columns_)),
          onColumn_(levels.size()), cells_(cells)
    {
        for (const double level : levels)
            thresholds_.push_back(thresholdOf(level));
        for (auto& row : levelRows_)
            row.assign(static_cast<std::size_t>(columns_) + sizeof(std::uint64_t), blankLevel);
    }
    int trace(SimdPath path);

    std::vector<CrossingPool>& pools() { return pools_; }
    const std::vector<char>& leftOut() const { return leftOut_; }

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
    std::vector<char> leftOut_;
    std::vector<int> onRow_;     ///< crossing of each level right of each centre of the lower row
    std::vector<int> onColumn_;  ///< crossing of each level on the left edge of the square
    const AMatrixAccess& cells_;
    std::vector<unsigned char> levelRows_[3];
    Row below_, low_, high_;
    int row_ = 0;
    int edges_[4] = {};
    int failed_ = 0;
};

int ContourTracer::trace(SimdPath path)
{
    RowReader readers[2] = {RowReader(cells_), RowReader(cells_)};
    for (int r = 0; r < cells_.rows() && !failed_; ++r) {
        auto& levels = levelRows_[r % 3];
        below_ = low_;
        low_ = high_;
        high_ = {readers[r % 2].row(r), levels.data()};
        if (!high_.values)
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
        if (leftOut_[static_cast<std::size_t>(level)])
            continue;
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
    if (pools_[k].count() >= ContourLines::mostPoints) {
        leftOut_[k] = 1;
        pools_[k].clear();
        return -1;
    }
    const int made = pools_[k].add(at);
    failed_ |= made < 0;
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

int ContourLines::trace(const AMatrixAccess& cells, const std::vector<double>& levels,
                        SimdPath path)
{
    lines_.clear();
    points_ = AMatrix<CPointF>();
    pointCount_ = 0;
    leftOut_.assign(levels.size(), 0);
    if (levels.size() > mostLevels)
        return 0;
    if (cells.rows() < 2 || cells.columns() < 2 || levels.empty())
        return 1;
    std::vector<std::size_t> order(levels.size());
    std::iota(order.begin(), order.end(), 0);
    std::vector<double> numbered = levels;
    for (double& level : numbered)
        level = level == level ? level : std::numeric_limits<double>::infinity();
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return numbered[a] < numbered[b]; });
    std::vector<double> sorted;
    for (const std::size_t i : order)
        sorted.push_back(numbered[i]);
    ContourTracer tracer(cells, sorted);
    if (!tracer.trace(path))
        return 0;
    std::vector<std::size_t> placeOf(levels.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        placeOf[order[i]] = i;
    std::int64_t crossings = 0;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const std::size_t i = placeOf[level];
        leftOut_[level] = tracer.leftOut()[i] ||
                          crossings + tracer.pools()[i].count() > std::numeric_limits<int>::max();
        crossings += leftOut_[level] ? 0 : tracer.pools()[i].count();
    }
    if (crossings < 1)
        return 1;
    if (!points_.allocate(1, static_cast<int>(crossings)))
        return 0;
    for (std::size_t level = 0; level < levels.size(); ++level)
        if (!leftOut_[level])
            takeLevel(tracer.pools()[placeOf[level]], static_cast<int>(level));
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

#include "pavane/axes/box/HiddenLines.h"

#include "pavane/axes/maps/cells/pixel_cells.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr BoxPoint gap{nan, nan, nan};

/// The height at a place as the triangle gives it that a place beside it lies in.
double heightBeside(const SurfaceGrid& grid, const CPointF& at, const CPointF& beside)
{
    const auto square = [](double place, int centres) {
        return static_cast<int>(std::clamp(place, 0.0, std::max(centres - 2.0, 0.0)));
    };
    const int c = square(beside.x, grid.columns()), r = square(beside.y, grid.rows());
    const int right = std::min(c + 1, grid.columns() - 1), up = std::min(r + 1, grid.rows() - 1);
    const double x = at.x - c, y = at.y - r;
    const double low = grid.height(c, r), high = grid.height(right, up);
    if (beside.x - c >= beside.y - r) {
        const double side = grid.height(right, r);
        return low + (side - low) * x + (high - side) * y;
    }
    const double side = grid.height(c, up);
    return low + (side - low) * y + (high - side) * x;
}

/// Where a line that runs from one value to another passes whole numbers, in parts of it.
void addCrossings(double from, double to, std::vector<double>& parts)
{
    const double low = std::min(from, to), high = std::max(from, to);
    if (!(high - low > 1e-12))
        return;
    double whole = std::floor(low) + 1;
    while (whole < high)
        parts.push_back((whole++ - from) / (to - from));
}

class Drape
{
public:
    explicit Drape(const SurfaceGrid& grid) : grid_(grid) {}
    void stretch(const CPointF& from, const CPointF& to)
    {
        double first = 0, last = 1;
        cut(from.x, to.x, grid_.columns() - 1, first, last);
        cut(from.y, to.y, grid_.rows() - 1, first, last);
        if (!(first < last)) {
            end();
            return;
        }
        const CPointF a = mix(from, to, first), b = mix(from, to, last);
        parts_ = {0, 1};
        addCrossings(a.x, b.x, parts_);
        addCrossings(a.y, b.y, parts_);
        addCrossings(a.x - a.y, b.x - b.y, parts_);
        std::sort(parts_.begin(), parts_.end());
        for (std::size_t k = 1; k < parts_.size(); ++k)
            if (parts_[k] > parts_[k - 1])
                piece(mix(a, b, parts_[k - 1]), mix(a, b, parts_[k]));
        if (last < 1)
            end();
    }
    void end()
    {
        if (!points_.empty() && std::isfinite(points_.back().s))
            points_.push_back(gap);
    }
    std::vector<BoxPoint> take() { return std::move(points_); }

private:
    static CPointF mix(const CPointF& a, const CPointF& b, double part)
    {
        return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
    }
    static void cut(double from, double to, double most, double& first, double& last)
    {
        if (from == to) {
            if (!(from >= 0 && from <= most))
                last = -1;
            return;
        }
        const double a = -from / (to - from), b = (most - from) / (to - from);
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
    }
    void piece(const CPointF& from, const CPointF& to)
    {
        const CPointF middle = mix(from, to, 0.5);
        const BoxPoint a{grid_.p(from.x), grid_.q(from.y), heightBeside(grid_, from, middle)};
        const BoxPoint b{grid_.p(to.x), grid_.q(to.y), heightBeside(grid_, to, middle)};
        if (!(a.s == a.s) || !(b.s == b.s)) {
            end();
            return;
        }
        if (points_.empty() || !std::isfinite(points_.back().s))
            points_.push_back(a);
        points_.push_back(b);
    }

    const SurfaceGrid& grid_;
    std::vector<BoxPoint> points_;
    std::vector<double> parts_;
};

template <typename Use>
void eachStretch(std::span<const CPointF> points, int closed, const Use& use)
{
    for (std::size_t k = 0; k + 1 < points.size(); ++k)
        use(points[k], points[k + 1]);
    if (closed && points.size() > 2)
        use(points.back(), points.front());
}

/// The cells of a direction that the lines of a lattice stand for.
class LatticeLines
{
public:
    /// `distance` is that of neighbouring rows in the picture.
    LatticeLines(int rows, double distance, double spacing) : rows_(rows)
    {
        const double apart = std::max(1.0, std::ceil(spacing / std::max(distance, 1e-9) - 1e-9));
        count_ = rows < 2 ? rows : std::max(2, static_cast<int>((rows - 1) / apart) + 1);
    }
    int count() const { return count_; }
    int row(int line) const
    {
        if (count_ < 2)
            return 0;
        return static_cast<int>(
            std::floor(static_cast<double>(line) * (rows_ - 1) / (count_ - 1) + 0.5));
    }
    CellSpan span(int line) const
    {
        return {line > 0 ? (row(line - 1) + row(line) + 1) / 2 : 0,
                line + 1 < count_ ? (row(line) + row(line + 1) + 1) / 2 : rows_};
    }

private:
    int rows_;
    int count_;
};

/// Takes the height farther from the floor.
class Farthest
{
public:
    explicit Farthest(double floor) : floor_(floor) {}
    void take(float height, int at)
    {
        const double away = std::fabs(static_cast<double>(height) - floor_);
        if (!(away > away_))
            return;
        away_ = away;
        height_ = height;
        at_ = at;
    }
    bool isEmpty() const { return away_ < 0; }
    double height() const { return static_cast<double>(height_); }
    int at() const { return at_; }

private:
    double floor_;
    double away_ = -1;
    float height_ = 0;
    int at_ = 0;
};

/// A line of a lattice from its heights, one for each centre along it. Centres that share half a
/// pixel become the farthest of them; the ends stay.
template <typename Place>
std::vector<BoxPoint> lineOf(const std::vector<Farthest>& heights, double pixels, double floor,
                             const Place& place)
{
    const int count = static_cast<int>(heights.size());
    const int shared = std::clamp(static_cast<int>(0.5 / std::max(pixels, 1e-9)), 1, count);
    std::vector<BoxPoint> points;
    for (int first = 0; first < count;) {
        const bool isEnd = first == 0 || first + 1 == count;
        const int end = isEnd ? first + 1 : std::min(first + shared, count - 1);
        Farthest farthest(floor);
        for (int k = first; k < end; ++k) {
            const Farthest& height = heights[static_cast<std::size_t>(k)];
            if (!height.isEmpty())
                farthest.take(static_cast<float>(height.height()), k);
        }
        if (!farthest.isEmpty())
            points.push_back(place(farthest.at(), farthest.height()));
        else if (!points.empty() && std::isfinite(points.back().s))
            points.push_back(gap);
        first = end;
    }
    return points;
}

}  // namespace

std::vector<BoxPoint> drapeLine(const SurfaceGrid& grid, std::span<const CPointF> points,
                                int closed)
{
    Drape drape(grid);
    if (grid.isEmpty())
        return {};
    eachStretch(points, closed, [&](const CPointF& from, const CPointF& to) {
        if (std::isfinite(from.x + from.y + to.x + to.y))
            drape.stretch(from, to);
        else
            drape.end();
    });
    return drape.take();
}

std::vector<BoxPoint> flatLine(const SurfaceGrid& grid, std::span<const CPointF> points, double s,
                               int closed)
{
    std::vector<BoxPoint> line;
    for (const CPointF& at : points)
        line.push_back({grid.p(at.x), grid.q(at.y), s});
    if (closed && line.size() > 2)
        line.push_back(line.front());
    return line;
}

SurfaceLattice latticeOf(const SurfaceGrid& grid, const BoxView& view, double spacing, int peaks)
{
    SurfaceLattice lattice;
    if (grid.isEmpty())
        return lattice;
    const BoxTransform& t = view.transform();
    const double stepP = grid.stepP(), stepQ = grid.stepQ();
    const CPointF column{t.xp * stepP, t.yp * stepP}, row{t.xq * stepQ, t.yq * stepQ};
    const double columnSize = std::hypot(column.x, column.y), rowSize = std::hypot(row.x, row.y);
    const double area = std::fabs(column.x * row.y - column.y * row.x);
    const auto apart = [area](double along, double across) {
        return along > 0 ? area / along : across;
    };
    const double floor = grid.floor();
    // a line rises to what stands out among its rows and would be lost; on a slope it stays on the
    // surface
    const auto isPeak = [&grid, floor](int c, int r, int toColumn, int toRow) {
        const auto away = [&](int x, int y) {
            return std::fabs(static_cast<double>(grid.height(x, y)) - floor);
        };
        for (const int sign : {-1, 1}) {
            const int x = c + sign * toColumn, y = r + sign * toRow;
            if (x >= 0 && y >= 0 && x < grid.columns() && y < grid.rows() &&
                away(x, y) > away(c, r))
                return false;
        }
        return true;
    };
    const LatticeLines rows(grid.rows(), apart(columnSize, rowSize), spacing);
    std::vector<Farthest> heights;
    for (int line = 0; line < rows.count(); ++line) {
        heights.assign(static_cast<std::size_t>(grid.columns()), Farthest(floor));
        const int own = rows.row(line);
        const CellSpan span = peaks ? rows.span(line) : CellSpan{own, own + 1};
        for (int r = span.first; r < span.end; ++r)
            for (int c = 0; c < grid.columns(); ++c)
                if (r == own || isPeak(c, r, 0, 1))
                    heights[static_cast<std::size_t>(c)].take(grid.height(c, r), r);
        lattice.alongX.push_back(lineOf(heights, columnSize, floor, [&](int c, double s) {
            return BoxPoint{grid.p(c), grid.q(own), s};
        }));
    }
    const LatticeLines columns(grid.columns(), apart(rowSize, columnSize), spacing);
    for (int line = 0; line < columns.count(); ++line) {
        heights.assign(static_cast<std::size_t>(grid.rows()), Farthest(floor));
        const int own = columns.row(line);
        const CellSpan span = peaks ? columns.span(line) : CellSpan{own, own + 1};
        for (int r = 0; r < grid.rows(); ++r)
            for (int c = span.first; c < span.end; ++c)
                if (c == own || isPeak(c, r, 1, 0))
                    heights[static_cast<std::size_t>(r)].take(grid.height(c, r), c);
        lattice.alongY.push_back(lineOf(heights, rowSize, floor, [&](int r, double s) {
            return BoxPoint{grid.p(own), grid.q(r), s};
        }));
    }
    return lattice;
}

}  // namespace pavane

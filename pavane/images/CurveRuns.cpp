#include "pavane/images/CurveRuns.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

// Runs shorter than this are looked at point by point; it is not worth working out their column.
constexpr std::int64_t shortRun = 8;
// How far from its rounding limit, in pixels, a value surely falls on its column.
constexpr double safety = 1e-6;

ValueRange existing(const CurveScale& scale)
{
    constexpr double greatest = std::numeric_limits<double>::max();
    return {scale.logarithmic ? std::numeric_limits<double>::denorm_min() : -greatest, greatest};
}

// The value that lies `offset` pixels from the start of the scale, as near as doubles tell.
double valueAt(const CurveScale& scale, double offset)
{
    const double v = scale.first + offset / scale.length * scale.span;
    return scale.logarithmic ? std::pow(10.0, v) : v;
}

}  // namespace

int CurveScale::pixel(double v) const
{
    const double w = ((logarithmic ? std::log10(v) : v) - first) / span;
    const long long offset = truncated(w * length + 0.5);
    return saturatedSum(base, sign < 0 ? -offset : offset);
}

CurveRuns::CurveRuns(const CurvePoints& points, const CurveScale& xScale, const CurveScale& yScale,
                     int left, int right)
    : points_(points), xScale_(xScale), yScale_(yScale), xExists_(existing(xScale)),
      yExists_(existing(yScale)), left_(std::max(left, std::numeric_limits<int>::min() + 1)),
      right_(std::min(right, std::numeric_limits<int>::max() - 1))
{
}

bool CurveRuns::exists(std::int64_t i) const
{
    return xExists_.holds(points_.xAt(i)) && yExists_.holds(points_.y[i]);
}

int CurveRuns::columnOf(double x) const
{
    return std::clamp(xScale_.pixel(x), left_ - 1, right_ + 1);
}

ValueRange CurveRuns::surelyOn(int column) const
{
    constexpr ValueRange none{1, 0};
    const double offset =
        (static_cast<double>(column) - xScale_.base) * (xScale_.sign < 0 ? -1 : 1);
    double a = valueAt(xScale_, offset - 0.5 + safety);
    double b = valueAt(xScale_, offset + 0.5 - safety);
    if (a > b)
        std::swap(a, b);
    // Rounding never turns the order of values round: what lies between two values of a column is
    // on it too. Beside the picture the column has no outer limit.
    if (!(xExists_.holds(a) && xExists_.holds(b)) || columnOf(a) != column || columnOf(b) != column)
        return none;
    if (column < left_ || column > right_)
        (columnOf(xExists_.least) == column ? a : b) =
            columnOf(xExists_.least) == column ? xExists_.least : xExists_.greatest;
    return columnOf(a) == column && columnOf(b) == column ? ValueRange{a, b} : none;
}

std::int64_t CurveRuns::scan(std::int64_t from, const ValueRange& inside, ValueRange& spread) const
{
    if (points_.x)
        return from + scanInside(points_.x + from, points_.y + from, points_.n - from, inside,
                                 yExists_, spread);
    // equal steps only go one way, so the points inside end where a search by halves says
    std::int64_t end = from;
    for (std::int64_t past = points_.n; end < past;) {
        const std::int64_t middle = end + (past - end) / 2;
        if (inside.holds(points_.xAt(middle)))
            end = middle + 1;
        else
            past = middle;
    }
    return from + scanInside(nullptr, points_.y + from, end - from, inside, yExists_, spread);
}

bool CurveRuns::next(CurveRun& run)
{
    const std::int64_t n = points_.n;
    const std::int64_t before = at_;
    while (at_ < n && !exists(at_))
        ++at_;
    if (at_ >= n)
        return false;
    run.startsPiece = at_ > before || at_ == 0;
    const std::int64_t start = at_;
    const double firstY = points_.y[start];
    const int column = columnOf(points_.xAt(start));
    run.isVisible = column >= left_ && column <= right_;
    ValueRange spread{firstY, firstY};
    ValueRange inside{1, 0};
    for (++at_; at_ < n;) {
        if (at_ - start == shortRun)
            inside = surelyOn(column);
        if (at_ - start >= shortRun && inside.least <= inside.greatest) {
            at_ = scan(at_, inside, spread);
            if (at_ >= n)
                break;
        }
        if (!exists(at_) || columnOf(points_.xAt(at_)) != column)
            break;
        spread.least = std::min(spread.least, points_.y[at_]);
        spread.greatest = std::max(spread.greatest, points_.y[at_]);
        ++at_;
    }
    const std::int64_t last = at_ - 1;
    run.first =
        CPoint(run.isVisible ? column : xScale_.pixel(points_.xAt(start)), yScale_.pixel(firstY));
    run.last = run.first;
    if (last > start)
        run.last = CPoint(run.isVisible ? column : xScale_.pixel(points_.xAt(last)),
                          yScale_.pixel(points_.y[last]));
    run.top = run.bottom = run.first.y;
    if (run.isVisible && last > start) {
        const int one = yScale_.pixel(spread.least);
        const int other = yScale_.pixel(spread.greatest);
        run.top = std::min(one, other);
        run.bottom = std::max(one, other);
    }
    return true;
}

}  // namespace pavane

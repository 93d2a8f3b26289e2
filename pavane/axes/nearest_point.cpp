#include "pavane/axes/nearest_point.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{
namespace
{

/// The first of the points whose x is not below `x`; points.n when all are.
std::int64_t firstNotBelow(const CurvePoints& points, double x)
{
    std::int64_t first = 0;
    std::int64_t count = points.n;
    while (count > 0) {
        const std::int64_t half = count / 2;
        if (points.xAt(first + half) < x) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

/// Keeps the nearer of point i and the best so far; false for a gap.
struct Nearest {
    const CurvePoints& points;
    double x;
    std::int64_t best = -1;
    double distance = std::numeric_limits<double>::infinity();

    bool take(std::int64_t i)
    {
        const double d = std::fabs(points.xAt(i) - x);
        if (!std::isfinite(d) || !std::isfinite(points.y[i]))
            return false;
        if (d < distance || (d == distance && i < best)) {
            distance = d;
            best = i;
        }
        return true;
    }
};

}  // namespace

int pointsRise(const CurvePoints& points)
{
    if (!points.x)
        return points.xStep >= 0 && std::isfinite(points.xStep) && std::isfinite(points.xFirst);
    for (std::int64_t i = 0; i < points.n; ++i)
        if (!std::isfinite(points.x[i]) || (i > 0 && points.x[i] < points.x[i - 1]))
            return 0;
    return 1;
}

int nearestInX(const CurvePoints& points, double x, int rising)
{
    Nearest nearest{points, x};
    if (!points.y || !std::isfinite(x))
        return -1;
    if (!rising) {
        for (std::int64_t i = 0; i < points.n; ++i)
            nearest.take(i);
        return static_cast<int>(nearest.best);
    }
    const std::int64_t place = firstNotBelow(points, x);
    std::int64_t after = place;
    while (after < points.n && !nearest.take(after))
        ++after;
    std::int64_t before = place - 1;
    while (before >= 0 && !nearest.take(before))
        --before;
    if (nearest.best >= 0 && nearest.best < place)  // the first of those at the same x
        for (std::int64_t i = nearest.best - 1; i >= 0 && points.xAt(i) == points.xAt(nearest.best);
             --i)
            nearest.take(i);
    return static_cast<int>(nearest.best);
}

}  // namespace pavane

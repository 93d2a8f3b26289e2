#include "pavane/axes/box/BoxDrawing.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Nearer than this, in box units, counts as on the sheet itself.
constexpr double onSheet = 1e-9;

/// Height of a segment at p; not a number beside it.
double heightAt(const BoxPoint& a, const BoxPoint& b, double p)
{
    if (!((a.p <= p && p <= b.p) || (b.p <= p && p <= a.p)))
        return NAN;
    return a.p == b.p ? std::max(a.s, b.s) : a.s + (b.s - a.s) * (p - a.p) / (b.p - a.p);
}

}  // namespace

int BoxCurtain::hides(const BoxPoint& at, const BoxPoint& sight) const
{
    if (line.size() < 2 || sight.q == 0)
        return 0;
    const double steps = (at.q - line.front().q) / sight.q;
    if (!(steps > onSheet))
        return 0;
    const double p = at.p - steps * sight.p;
    const double s = at.s - steps * sight.s;
    if (!(s > floor + onSheet && s < top))
        return 0;
    if (rises) {
        const auto next =
            std::upper_bound(line.begin(), line.end(), p,
                             [](double value, const BoxPoint& point) { return value < point.p; });
        return next != line.begin() && next != line.end() && heightAt(next[-1], *next, p) > s;
    }
    for (std::size_t i = 1; i < line.size(); ++i)
        if (heightAt(line[i - 1], line[i], p) > s)
            return 1;
    return 0;
}

}  // namespace pavane

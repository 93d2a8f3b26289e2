#include "pavane/measures/maps/bicubic.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
/// Places nearer to a centre are on it, in cells: positions round by about that.
constexpr double onCentre = 1e-5;

/// The four cells about a place along one axis, and what each counts.
struct Taps {
    int first = 0;
    double weights[4] = {};

    explicit Taps(double at)
    {
        const double whole = std::floor(at);
        const double nearest = std::round(at);
        if (std::fabs(at - nearest) < onCentre) {
            first = static_cast<int>(nearest) - 1;
            weights[1] = 1;
            return;
        }
        first = static_cast<int>(whole) - 1;
        const double t = at - whole;
        weights[0] = t * (t * (1 - t / 2) - 0.5);
        weights[1] = t * t * (1.5 * t - 2.5) + 1;
        weights[2] = t * (t * (2 - 1.5 * t) + 0.5);
        weights[3] = t * t * (t / 2 - 0.5);
    }
};

}  // namespace

float bicubicAt(const AMatrix<float>& cells, double column, double row)
{
    // also what is no number
    if (!(column > -1 && column < cells.columns() && row > -1 && row < cells.rows()))
        return blank;
    const Taps x(column), y(row);
    double sum = 0;
    for (int j = 0; j < 4; ++j) {
        if (y.weights[j] == 0)
            continue;
        const int r = y.first + j;
        if (r < 0 || r >= cells.rows())
            return blank;
        double along = 0;
        for (int i = 0; i < 4; ++i) {
            if (x.weights[i] == 0)
                continue;
            const int c = x.first + i;
            if (c < 0 || c >= cells.columns())
                return blank;
            along += x.weights[i] * static_cast<double>(cells(r, c));
        }
        sum += y.weights[j] * along;
    }
    return std::isfinite(sum) ? static_cast<float>(sum) : blank;
}

}  // namespace pavane

#include "pavane/measures/fits/fit_start.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

/// The cells without the model.
std::vector<float> residualOf(const GaussianModel& model, const FitCells& cells)
{
    std::vector<float> left = cells.values;
    SourceRow buffer;
    for (int r = 0; r < cells.rows; ++r) {
        float* const row = left.data() + std::int64_t{r} * cells.columns;
        const float* const weights = cells.weightsOf(r);
        for (int c = 0; c < cells.columns; ++c)
            row[c] -= static_cast<float>(model.background) * weights[c];
        for (const CellSource& source : model.sources) {
            fillRow(source, cells.firstRow + r, cells.firstColumn, cells.columns, buffer);
            for (int c = buffer.first; c < buffer.end; ++c)
                row[c] -= weights[c] *
                          static_cast<float>(source.height * buffer.e[static_cast<std::size_t>(c)]);
        }
    }
    return left;
}

}  // namespace

CellSource startOfSource(const GaussianModel& model, const FitCells& cells, const Symmetric2* beam)
{
    std::vector<float> left = residualOf(model, cells);
    std::size_t peak = 0;
    for (std::size_t i = 0; i < left.size(); ++i)
        if (std::fabs(left[i]) > std::fabs(left[peak]))
            peak = i;
    const auto columns = static_cast<std::size_t>(cells.columns);
    const std::size_t peakRow = peak / columns;
    CellSource source;
    source.height = static_cast<double>(left[peak]);
    const double half = source.height / 2;
    const double sign = half < 0 ? -1 : 1;
    // the cells about it that reach half of it, each taken off as it is found
    std::vector<std::size_t> found = {peak};
    left[peak] = 0;
    double n = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const std::size_t at = found[i];
        const double dx = static_cast<double>(at % columns) - static_cast<double>(peak % columns);
        const std::size_t row = at / columns;
        const double dy = static_cast<double>(row) - static_cast<double>(peakRow);
        n += 1;
        x += dx;
        y += dy;
        xx += dx * dx;
        xy += dx * dy;
        yy += dy * dy;
        const auto take = [&](int isThere, std::size_t next) {
            if (!isThere || !(static_cast<double>(left[next]) * sign >= half * sign) ||
                left[next] == 0)
                return;
            left[next] = 0;
            found.push_back(next);
        };
        take(at % columns > 0, at - 1);
        take(at % columns + 1 < columns, at + 1);
        take(at >= columns, at - columns);
        take(at + columns < left.size(), at + columns);
    }
    x /= n;
    y /= n;
    source.x = cells.firstColumn + static_cast<double>(peak % columns) + x;
    source.y = cells.firstRow + static_cast<double>(peakRow) + y;
    // an ellipse that is filled evenly has a sixteenth of its squared widths as covariance, and a
    // cell is wide itself
    constexpr double perVariance = 16, ofCell = 1.0 / 12;
    Symmetric2 widths = {perVariance * (xx / n - x * x + ofCell), perVariance * (xy / n - x * y),
                         perVariance * (yy / n - y * y + ofCell)};
    if (beam) {
        const SourceShape own = shapeOf(*beam);
        if (model.isShapeFixed || n < std::numbers::pi / 8 * own.major * own.minor)
            widths = *beam;
    }
    setWidths(widths, source);
    return source;
}

}  // namespace pavane

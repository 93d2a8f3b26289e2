#include "pavane/measures/fits/fit_errors.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

/// Correlations below it, which make up this part of all of them, are left out.
constexpr double leastCorrelation = 1e-3;
/// Cells of the narrow width of a beam to each that N is summed over.
constexpr double cellsPerSum = 3;

/// The derivatives of one row of cells by all parameters, as far as they are seen.
struct SlopeRow {
    int first = 0, end = 0;  ///< columns
    std::vector<std::vector<float>> slopes;
};

void fillSlopes(const GaussianModel& model, const FitCells& cells, int row, SourceRow& buffer,
                SlopeRow& made)
{
    const int columns = cells.columns, per = model.perSource();
    made.slopes.resize(static_cast<std::size_t>(model.parameters()));
    for (std::vector<float>& slope : made.slopes)
        slope.assign(static_cast<std::size_t>(columns), 0);
    made.first = model.hasBackground ? 0 : columns;
    made.end = model.hasBackground ? columns : 0;
    const float* const weights = cells.weightsOf(row);
    for (std::size_t s = 0; s < model.sources.size(); ++s) {
        const CellSource& source = model.sources[s];
        fillRow(source, cells.firstRow + row, cells.firstColumn, columns, buffer);
        if (buffer.end <= buffer.first)
            continue;
        made.first = std::min(made.first, buffer.first);
        made.end = std::max(made.end, buffer.end);
        const double dy = cells.firstRow + row - source.y;
        for (int c = buffer.first; c < buffer.end; ++c) {
            const auto at = static_cast<std::size_t>(c);
            const double dx = c + cells.firstColumn - source.x;
            const double e = buffer.e[at] * static_cast<double>(weights[c]);
            const double f = e * source.height;
            const double all[] = {e,
                                  2 * f * (source.xx * dx + source.xy * dy),
                                  2 * f * (source.xy * dx + source.yy * dy),
                                  -f * dx * dx,
                                  -2 * f * dx * dy,
                                  -f * dy * dy};
            for (int p = 0; p < per; ++p)
                made.slopes[s * static_cast<std::size_t>(per) + static_cast<std::size_t>(p)][at] =
                    static_cast<float>(all[p]);
        }
    }
    if (model.hasBackground)
        std::copy_n(weights, columns, made.slopes.back().begin());
}

/// Exponent of the correlation: that of the beam at half the squared distance.
struct Correlation {
    Symmetric2 q;
    double at(double dx, double dy) const
    {
        return std::exp(-(q.xx * dx * dx + 2 * q.xy * dx * dy + q.yy * dy * dy) / 2);
    }
    /// The farthest that it is seen along y.
    int reach() const
    {
        const double left = q.yy - q.xy * q.xy / q.xx;
        return static_cast<int>(std::min(std::sqrt(-2 * std::log(leastCorrelation) / left), 1e6));
    }
    /// The columns from which to which it is seen in a row.
    void span(double dy, int& first, int& last) const
    {
        const double middle = -q.xy / q.xx * dy;
        const double height = (q.yy - q.xy * q.xy / q.xx) * dy * dy;
        const double rest = (-2 * std::log(leastCorrelation) - height) / q.xx;
        const double half = rest > 0 ? std::sqrt(rest) : -1;
        first = static_cast<int>(std::ceil(std::max(middle - half, -1e6)));
        last = static_cast<int>(std::floor(std::min(middle + half, 1e6)));
    }
};

/// J'NJ without the part of each cell with itself, halved: sums over pairs of cells, the second one
/// behind the first.
class PairSums
{
public:
    PairSums(const GaussianModel& model, const FitCells& cells, const Correlation& correlation,
             int apart)
        : model_(model), cells_(cells), correlation_(correlation), apart_(apart),
          // beyond the map there is nobody
          reach_(std::min(correlation.reach(), cells.rows - 1)),
          rows_(static_cast<std::size_t>(reach_) + 1),
          sums_(static_cast<std::size_t>(model.parameters()))
    {
    }

    SquareMatrix find()
    {
        SquareMatrix made(model_.parameters());
        for (int row = 0; row < std::min(reach_, cells_.rows); ++row)
            fillSlopes(model_, cells_, row, buffer_, at(row));
        for (int row = 0; row < cells_.rows; ++row) {
            if (row + reach_ < cells_.rows)
                fillSlopes(model_, cells_, row + reach_, buffer_, at(row + reach_));
            const SlopeRow& own = at(row);
            if (own.end <= own.first)
                continue;
            for (std::vector<float>& sum : sums_)
                sum.assign(static_cast<std::size_t>(own.end - own.first), 0);
            for (int dy = 0; dy <= reach_ && row + dy < cells_.rows; dy += apart_)
                addPairs(own, at(row + dy), dy);
            for (std::size_t p = 0; p < sums_.size(); ++p)
                for (std::size_t q = 0; q < sums_.size(); ++q) {
                    double sum = 0;
                    for (std::size_t i = 0; i < sums_[q].size(); ++i)
                        sum += static_cast<double>(
                                   own.slopes[p][i + static_cast<std::size_t>(own.first)]) *
                               static_cast<double>(sums_[q][i]);
                    made(static_cast<int>(p), static_cast<int>(q)) += sum;
                }
        }
        return made;
    }

private:
    SlopeRow& at(int row) { return rows_[static_cast<std::size_t>(row) % rows_.size()]; }
    void addPairs(const SlopeRow& own, const SlopeRow& other, int dy)
    {
        int from = 0, to = 0;
        correlation_.span(dy, from, to);
        // of the same row those to the right: the others are the same pairs
        from = dy == 0 ? apart_ : from + (apart_ - from % apart_) % apart_;
        from = std::max(from, other.first - own.end);
        from += (apart_ - from % apart_) % apart_;
        to = std::min(to, other.end - own.first);
        for (int dx = from; dx <= to; dx += apart_) {
            const int first = std::max(own.first, other.first - dx);
            const int count = std::min(own.end, other.end - dx) - first;
            const auto part = static_cast<float>(correlation_.at(dx, dy));
            for (std::size_t p = 0; count > 0 && p < sums_.size(); ++p) {
                float* const sum = sums_[p].data() + (first - own.first);
                const float* const slope = other.slopes[p].data() + first + dx;
                for (int i = 0; i < count; ++i)
                    sum[i] += part * slope[i];
            }
        }
    }

    const GaussianModel& model_;
    const FitCells& cells_;
    const Correlation correlation_;
    const int apart_;
    const int reach_;
    std::vector<SlopeRow> rows_;  ///< as far as pairs reach, in turn
    std::vector<std::vector<float>> sums_;
    SourceRow buffer_;
};

}  // namespace

int covarianceOf(const GaussianModel& model, const FitCells& cells, const SquareMatrix& squares,
                 const Symmetric2* beam, SquareMatrix& covariance)
{
    SquareMatrix inverse;
    if (!invertSymmetric(squares, inverse))
        return 0;
    covariance = inverse;
    if (!beam)
        return 1;
    CellSource shape;
    setWidths(*beam, shape);
    const int apart =
        std::max(1, static_cast<int>(std::min(shapeOf(*beam).minor / cellsPerSum, 1e6)));
    const SquareMatrix pairs =
        PairSums(model, cells, {{shape.xx, shape.xy, shape.yy}}, apart).find();
    SquareMatrix all(model.parameters());
    const double area = double{1} * apart * apart;
    for (int p = 0; p < all.size(); ++p)
        for (int q = 0; q < all.size(); ++q)
            all(p, q) =
                area * (pairs(p, q) + pairs(q, p) + (q >= p ? squares(p, q) : squares(q, p)));
    covariance = product(product(inverse, all), inverse);
    return 1;
}

}  // namespace pavane

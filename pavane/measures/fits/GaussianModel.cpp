#include "pavane/measures/fits/GaussianModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace pavane
{

namespace
{

/// Exponents from here on are nothing, and would be numbers that processors are slow with.
constexpr double mostExponent = 69;
constexpr double leastPart = 1e-30;
/// Functions of a row from which the derivatives by all parameters of a source are made: the
/// exponentials times 1, dx and dx^2.
constexpr int perRow = 3;

double dot(const double* a, const double* b, int count)
{
    using Doubles = double __attribute__((vector_size(32)));
    constexpr int lanes = 4;
    Doubles sum = {};
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        Doubles x, y;
        std::memcpy(&x, a + i, sizeof x);
        std::memcpy(&y, b + i, sizeof y);
        sum += x * y;
    }
    double all = (sum[0] + sum[1]) + (sum[2] + sum[3]);
    for (; i < count; ++i)
        all += a[i] * b[i];
    return all;
}

/// A derivative in a row: factors of the functions of its source.
using Factors = std::array<double, perRow>;

/// Derivatives of a source by its parameters, `dy` below its place.
std::array<Factors, 6> derivatives(const CellSource& s, double dy)
{
    const double h = s.height;
    return {{{1, 0, 0},
             {2 * h * s.xy * dy, 2 * h * s.xx, 0},
             {2 * h * s.yy * dy, 2 * h * s.xy, 0},
             {0, 0, -h},
             {0, -2 * h * dy, 0},
             {-h * dy * dy, 0, 0}}};
}

}  // namespace

void GaussianModel::move(const std::vector<double>& change)
{
    auto next = change.begin();
    for (CellSource& s : sources) {
        for (double* const parameter : {&s.height, &s.x, &s.y})
            *parameter += *next++;
        if (!isShapeFixed)
            for (double* const parameter : {&s.xx, &s.xy, &s.yy})
                *parameter += *next++;
    }
    if (hasBackground)
        background += *next;
}

void fillRow(const CellSource& source, double y, int firstColumn, int columns, SourceRow& row)
{
    row.e.resize(static_cast<std::size_t>(columns));
    row.first = row.end = 0;
    const double dy = y - source.y;
    // where the row is the highest
    const double top = source.x - source.xy / source.xx * dy - firstColumn;
    const int start = static_cast<int>(std::lround(std::clamp(top, 0.0, columns - 1.0)));
    const double dx = start + firstColumn - source.x;
    const double exponent = source.xx * dx * dx + 2 * source.xy * dx * dy + source.yy * dy * dy;
    if (!(exponent < mostExponent))
        return;
    double* const e = row.e.data();
    e[start] = std::exp(-exponent);
    const double fall = std::exp(-2 * source.xx);
    const double slope = 2 * source.xx * dx + 2 * source.xy * dy;
    int c = start;
    for (double next = std::exp(-slope - source.xx); c + 1 < columns && e[c] > leastPart; ++c) {
        e[c + 1] = e[c] * next;
        next *= fall;
    }
    row.end = c + 1;
    c = start;
    for (double next = std::exp(slope - source.xx); c > 0 && e[c] > leastPart; --c) {
        e[c - 1] = e[c] * next;
        next *= fall;
    }
    row.first = c;
}

void GaussianSums::find(const GaussianModel& model, const FitCells& cells)
{
    const int n = model.parameters();
    squares_ = SquareMatrix(n);
    slopes_.assign(static_cast<std::size_t>(n), 0);
    residual_ = 0;
    rows_.resize(model.sources.size());
    basis_.resize(model.sources.size() * perRow + 1);
    for (std::vector<double>& function : basis_)
        function.resize(static_cast<std::size_t>(cells.columns));
    left_.resize(static_cast<std::size_t>(cells.columns));
    gram_ = SquareMatrix(static_cast<int>(basis_.size()));
    for (int row = 0; row < cells.rows; ++row)
        addRow(model, cells, row);
}

void GaussianSums::addRow(const GaussianModel& model, const FitCells& cells, int row)
{
    const int columns = cells.columns;
    const float* const weights = cells.weightsOf(row);
    const float* const values = cells.valuesOf(row);
    double* const left = left_.data();
    for (int c = 0; c < columns; ++c)
        left[c] =
            static_cast<double>(values[c]) - model.background * static_cast<double>(weights[c]);
    const auto count = static_cast<int>(model.sources.size());
    const int functions = model.isShapeFixed ? 2 : perRow;
    const double y = cells.firstRow + row;
    for (int s = 0; s < count; ++s) {
        const CellSource& source = model.sources[static_cast<std::size_t>(s)];
        SourceRow& own = rows_[static_cast<std::size_t>(s)];
        fillRow(source, y, cells.firstColumn, columns, own);
        double* const b[] = {basis_[static_cast<std::size_t>(s * perRow)].data(),
                             basis_[static_cast<std::size_t>(s * perRow + 1)].data(),
                             basis_[static_cast<std::size_t>(s * perRow + 2)].data()};
        const double origin = source.x - cells.firstColumn;
        for (int c = own.first; c < own.end; ++c) {
            const double e = own.e[static_cast<std::size_t>(c)] * static_cast<double>(weights[c]);
            const double dx = c - origin;
            b[0][c] = e;
            b[1][c] = e * dx;
            b[2][c] = e * dx * dx;
            left[c] -= source.height * e;
        }
    }
    residual_ += dot(left, left, columns);
    // sums of products of the functions of the row, then of the derivatives made of them
    std::array<Factors, 6> mine{}, others{};
    const int per = model.perSource();
    const int last = per * count;
    double* const ones = basis_.back().data();
    if (model.hasBackground)
        for (int c = 0; c < columns; ++c)
            ones[c] = static_cast<double>(weights[c]);
    for (int s = 0; s < count; ++s) {
        const SourceRow& own = rows_[static_cast<std::size_t>(s)];
        if (own.end <= own.first)
            continue;
        mine = derivatives(model.sources[static_cast<std::size_t>(s)],
                           y - model.sources[static_cast<std::size_t>(s)].y);
        const auto function = [&](int source, int i, int at) {
            return basis_[static_cast<std::size_t>(source * perRow + i)].data() + at;
        };
        Factors withLeft{}, withOnes{};
        for (int i = 0; i < functions; ++i) {
            const double* const f = function(s, i, own.first);
            withLeft[static_cast<std::size_t>(i)] = dot(f, left + own.first, own.end - own.first);
            if (model.hasBackground)
                withOnes[static_cast<std::size_t>(i)] =
                    dot(f, ones + own.first, own.end - own.first);
        }
        for (int p = 0; p < per; ++p)
            for (std::size_t i = 0; i < perRow; ++i) {
                const double factor = mine[static_cast<std::size_t>(p)][i];
                slopes_[static_cast<std::size_t>(s * per + p)] += factor * withLeft[i];
                if (model.hasBackground)
                    squares_(s * per + p, last) += factor * withOnes[i];
            }
        for (int t = s; t < count; ++t) {
            const SourceRow& other = rows_[static_cast<std::size_t>(t)];
            const int first = std::max(own.first, other.first);
            const int width = std::min(own.end, other.end) - first;
            if (width <= 0)
                continue;
            double products[perRow][perRow] = {};
            for (int i = 0; i < functions; ++i)
                for (int k = t == s ? i : 0; k < functions; ++k)
                    products[i][k] = dot(function(s, i, first), function(t, k, first), width);
            if (t == s)
                for (int i = 0; i < functions; ++i)
                    for (int k = 0; k < i; ++k)
                        products[i][k] = products[k][i];
            others = derivatives(model.sources[static_cast<std::size_t>(t)],
                                 y - model.sources[static_cast<std::size_t>(t)].y);
            for (int p = 0; p < per; ++p) {
                const Factors& a = mine[static_cast<std::size_t>(p)];
                double sums[perRow] = {};
                for (std::size_t k = 0; k < perRow; ++k)
                    for (std::size_t i = 0; i < perRow; ++i)
                        sums[k] += a[i] * products[i][k];
                for (int q = t == s ? p : 0; q < per; ++q) {
                    const Factors& b = others[static_cast<std::size_t>(q)];
                    squares_(s * per + p, t * per + q) +=
                        sums[0] * b[0] + sums[1] * b[1] + sums[2] * b[2];
                }
            }
        }
    }
    if (model.hasBackground) {
        squares_(last, last) += dot(ones, ones, columns);
        slopes_[static_cast<std::size_t>(last)] += dot(ones, left, columns);
    }
}

}  // namespace pavane

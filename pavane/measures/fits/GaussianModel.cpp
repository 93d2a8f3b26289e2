#include "pavane/measures/fits/GaussianModel.h"

#include "pavane/axes/maps/cells/simd_path.h"

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
using Doubles = double __attribute__((vector_size(32)));
constexpr int lanes = 4;

double sumOf(const Doubles& x) { return (x[0] + x[1]) + (x[2] + x[3]); }

double dot(const double* a, const double* b, int count)
{
    Doubles sum = {};
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        Doubles x, y;
        std::memcpy(&x, a + i, sizeof x);
        std::memcpy(&y, b + i, sizeof y);
        sum += x * y;
    }
    double all = sumOf(sum);
    for (; i < count; ++i)
        all += a[i] * b[i];
    return all;
}

using Derivatives = GaussianSums::Derivatives;
using Term = GaussianSums::Term;

/// Derivatives of a source by its parameters, each a sum of two terms at most.
Derivatives derivatives(const CellSource& s)
{
    const double h = s.height;
    return {{{{{1, 0, 0}, {}}},
             {{{2 * h * s.xx, 1, 0}, {2 * h * s.xy, 0, 1}}},
             {{{2 * h * s.xy, 1, 0}, {2 * h * s.yy, 0, 1}}},
             {{{-h, 2, 0}, {}}},
             {{{-2 * h, 1, 1}, {}}},
             {{{-h, 0, 2}, {}}}}};
}

/// Sums over a row: e e x^i, e l x^i and e w x^i.
struct RowMoments {
    double squares[5], left[3], ones[3];
};

/// Four columns at a time, which begin `dx` from the source.
template <int hasOnes>
[[gnu::always_inline]] inline void momentsOf(const double* e, const double* left,
                                             const double* ones, int count, double dx,
                                             RowMoments& sums)
{
    Doubles s0 = {}, s1 = {}, s2 = {}, s3 = {}, s4 = {}, l0 = {}, l1 = {}, l2 = {};
    Doubles w0 = {}, w1 = {}, w2 = {};
    Doubles x = {0.0, 1.0, 2.0, 3.0};
    x += dx;
    const auto add = [&](const Doubles& value, const Doubles& rest, const Doubles& weight)
        __attribute__((always_inline))
    {
        Doubles product = value * value;
        s0 += product;
        s1 += product *= x;
        s2 += product *= x;
        s3 += product *= x;
        s4 += product *= x;
        product = value * rest;
        l0 += product;
        l1 += product *= x;
        l2 += product *= x;
        if constexpr (hasOnes) {
            product = value * weight;
            w0 += product;
            w1 += product *= x;
            w2 += product *= x;
        }
        x += lanes;
    };
    Doubles value = {}, rest = {}, weight = {};
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        std::memcpy(&value, e + i, sizeof value);
        std::memcpy(&rest, left + i, sizeof rest);
        if constexpr (hasOnes)
            std::memcpy(&weight, ones + i, sizeof weight);
        add(value, rest, weight);
    }
    if (i < count) {
        const auto bytes = static_cast<std::size_t>(count - i) * sizeof(double);
        value = rest = weight = Doubles{};
        std::memcpy(&value, e + i, bytes);
        std::memcpy(&rest, left + i, bytes);
        std::memcpy(&weight, ones + i, bytes);
        add(value, rest, weight);
    }
    sums = {{sumOf(s0), sumOf(s1), sumOf(s2), sumOf(s3), sumOf(s4)},
            {sumOf(l0), sumOf(l1), sumOf(l2)},
            {sumOf(w0), sumOf(w1), sumOf(w2)}};
}

__attribute__((target("avx2"))) void momentsWide(const double* e, const double* left,
                                                 const double* ones, int count, double dx,
                                                 int hasOnes, RowMoments& sums)
{
    (hasOnes ? momentsOf<1>(e, left, ones, count, dx, sums)
             : momentsOf<0>(e, left, ones, count, dx, sums));
}

void findMoments(const double* e, const double* left, const double* ones, int count, double dx,
                 int hasOnes, RowMoments& sums)
{
    static const int isWide = bestSimdPath() != SimdPath::plain;
    if (isWide)
        momentsWide(e, left, ones, count, dx, hasOnes, sums);
    else if (hasOnes)
        momentsOf<1>(e, left, ones, count, dx, sums);
    else
        momentsOf<0>(e, left, ones, count, dx, sums);
}

void addMoments(const RowMoments& row, double dy, GaussianSums::SourceMoments& all)
{
    double power = 1;
    for (int j = 0; j < 5; ++j, power *= dy) {
        for (int i = 0; i + j < 5; ++i)
            all.squares[i][j] += row.squares[i] * power;
        for (int i = 0; i + j < 3; ++i) {
            all.left[i][j] += row.left[i] * power;
            all.ones[i][j] += row.ones[i] * power;
        }
    }
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
    own_.assign(model.sources.size(), {});
    const auto columns = static_cast<std::size_t>(cells.columns);
    left_.resize(columns);
    ones_.resize(columns);
    for (int row = 0; row < cells.rows; ++row)
        addRow(model, cells, row);
    const int per = model.perSource();
    for (int s = 0; s < static_cast<int>(model.sources.size()); ++s)
        addOwn(model, s * per, own_[static_cast<std::size_t>(s)],
               derivatives(model.sources[static_cast<std::size_t>(s)]));
}

void GaussianSums::addRow(const GaussianModel& model, const FitCells& cells, int row)
{
    const int columns = cells.columns;
    const float* const weights = cells.weightsOf(row);
    const float* const values = cells.valuesOf(row);
    double* const left = left_.data();
    double* const ones = ones_.data();
    for (int c = 0; c < columns; ++c) {
        ones[c] = static_cast<double>(weights[c]);
        left[c] = static_cast<double>(values[c]) - model.background * ones[c];
    }
    const double y = cells.firstRow + row;
    for (std::size_t s = 0; s < model.sources.size(); ++s) {
        const CellSource& source = model.sources[s];
        SourceRow& own = rows_[s];
        fillRow(source, y, cells.firstColumn, columns, own);
        double* const e = own.e.data();
        for (int c = own.first; c < own.end; ++c) {
            e[c] *= ones[c];
            left[c] -= source.height * e[c];
        }
    }
    residual_ += dot(left, left, columns);
    for (std::size_t s = 0; s < model.sources.size(); ++s) {
        const SourceRow& own = rows_[s];
        if (own.end <= own.first)
            continue;
        const CellSource& source = model.sources[s];
        const double dx = own.first + cells.firstColumn - source.x;
        RowMoments sums;
        findMoments(own.e.data() + own.first, left + own.first, ones + own.first,
                    own.end - own.first, dx, model.hasBackground, sums);
        addMoments(sums, y - source.y, own_[s]);
        for (std::size_t t = s + 1; t < model.sources.size(); ++t)
            addPair(model, cells, y, s, t);
    }
    if (model.hasBackground) {
        const int last = model.parameters() - 1;
        squares_(last, last) += dot(ones, ones, columns);
        slopes_[static_cast<std::size_t>(last)] += dot(ones, left, columns);
    }
}

/// The derivatives of two sources with each other.
void GaussianSums::addPair(const GaussianModel& model, const FitCells& cells, double y,
                           std::size_t s, std::size_t t)
{
    const SourceRow &one = rows_[s], &two = rows_[t];
    const CellSource &a = model.sources[s], &b = model.sources[t];
    const int first = std::max(one.first, two.first), end = std::min(one.end, two.end);
    double products[3][3] = {};
    for (int c = first; c < end; ++c) {
        const auto at = static_cast<std::size_t>(c);
        const double x = c + cells.firstColumn;
        const double e = one.e[at] * two.e[at];
        const double ax = x - a.x, bx = x - b.x;
        const double powers[] = {e, e * ax, e * ax * ax};
        for (std::size_t i = 0; i < 3; ++i) {
            products[i][0] += powers[i];
            products[i][1] += powers[i] * bx;
            products[i][2] += powers[i] * bx * bx;
        }
    }
    if (first >= end)
        return;
    const int per = model.perSource();
    const Derivatives mine = derivatives(a), others = derivatives(b);
    const double ay[] = {1, y - a.y, (y - a.y) * (y - a.y)};
    const double by[] = {1, y - b.y, (y - b.y) * (y - b.y)};
    for (int p = 0; p < per; ++p)
        for (int q = 0; q < per; ++q)
            for (const Term& f : mine[static_cast<std::size_t>(p)])
                for (const Term& g : others[static_cast<std::size_t>(q)])
                    squares_(static_cast<int>(s) * per + p, static_cast<int>(t) * per + q) +=
                        f.factor * g.factor * products[f.x][g.x] * ay[f.y] * by[g.y];
}

void GaussianSums::addOwn(const GaussianModel& model, int first, const SourceMoments& own,
                          const Derivatives& slopes)
{
    const int per = model.perSource();
    const int last = model.parameters() - 1;
    const auto begin = static_cast<std::size_t>(first);
    for (int p = 0; p < per; ++p)
        for (const Term& f : slopes[static_cast<std::size_t>(p)]) {
            slopes_[begin + static_cast<std::size_t>(p)] += f.factor * own.left[f.x][f.y];
            if (model.hasBackground)
                squares_(first + p, last) += f.factor * own.ones[f.x][f.y];
            for (int q = p; q < per; ++q)
                for (const Term& g : slopes[static_cast<std::size_t>(q)])
                    squares_(first + p, first + q) +=
                        f.factor * g.factor * own.squares[f.x + g.x][f.y + g.y];
        }
}

}  // namespace pavane

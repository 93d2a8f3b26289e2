#include "pavane/axes/maps/cells/map_reduction.h"

#include "pavane/axes/maps/cells/row_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr int lanes = 16;
/// Rows that one call of the folding kernel takes.
constexpr int foldedRows = 4;

float greatestOf(const float* values, int count)
{
    float greatest = -infinity;
    for (int i = 0; i < count; ++i)
        greatest = values[i] > greatest ? values[i] : greatest;
    return greatest;
}

/// Greatest value of each group of a row that starts at the first column of `x`.
///
/// The row is folded with itself at distances 1, 2, 4 ... until an item holds the greatest of as
/// many columns as the largest power of two that every inner group has; two such items that overlap
/// then make a group. The two outermost groups may be narrower and are taken before that.
class GroupMaxima
{
public:
    explicit GroupMaxima(const PixelCells& x) : x_(x), columns_(x.endCell() - x.firstCell())
    {
        int shortest = columns_;
        for (int g = 1; g + 1 < x.groups(); ++g)
            shortest = std::min(shortest, x.span(g).end - x.span(g).first);
        while (width_ * 2 <= shortest)
            width_ *= 2;
    }
    /// How many items of minus infinity have to follow the row.
    int padding() const { return width_; }
    void take(float* row, float* maxima, const RowKernels& kernels) const
    {
        const int last = x_.groups() - 1;
        const float first = ofSpan(row, x_.span(0));
        maxima[last] = ofSpan(row, x_.span(last));
        for (int distance = 1; distance < width_; distance *= 2)
            kernels.pairwise(row, columns_, distance);
        for (int g = 1; g < last; ++g)
            maxima[g] = ofItems(row, x_.span(g));
        maxima[0] = first;
    }

private:
    float ofSpan(const float* row, CellSpan span) const
    {
        return greatestOf(row + (span.first - x_.firstCell()), span.end - span.first);
    }
    float ofItems(const float* row, CellSpan span) const
    {
        const float* item = row + (span.first - x_.firstCell());
        const float* const last = item + (span.end - span.first - width_);
        float greatest = *last;
        for (; item < last; item += width_)
            greatest = *item > greatest ? *item : greatest;
        return greatest;
    }

    const PixelCells& x_;
    int columns_;
    int width_ = 1;
};

/// Rows `span` of `cells` folded into one row of greatest values of `count` columns from `first`
/// on.
int foldSpan(const AMatrixAccess& cells, RowReader& rows, CellSpan span, int first, int count,
             float* greatest, float* least, const RowKernels& kernels)
{
    const float* row[foldedRows];
    for (int r = span.first; r < span.end;) {
        int n = 0;
        for (; n < foldedRows && r + n < span.end; ++n) {
            row[n] = cells.floatRow(r + n);
            if (!row[n])
                break;
            row[n] += first;
        }
        if (n < 1) {
            const float* copied = rows.row(r);
            if (!copied)
                return 0;
            row[0] = copied + first;
            n = 1;
        }
        kernels.fold(row, n, count, greatest, r == span.first, least);
        r += n;
    }
    return 1;
}

}  // namespace

int MapReduction::reduce(const AMatrixAccess& cells, const PixelCells& x, const PixelCells& y,
                         SharedPixel shared, SimdPath path)
{
    least_ = 1;
    greatest_ = 0;
    values_ = AMatrix<float>();
    if (x.groups() < 1 || y.groups() < 1 || x.endCell() > cells.columns() ||
        y.endCell() > cells.rows() || !values_.allocate(y.groups(), x.groups()))
        return 0;
    RowReader rows(cells);
    const int done = shared == SharedPixel::greatest ? reduceGreatest(cells, rows, x, y, path)
                                                     : reduceMean(rows, x, y);
    if (!done)
        values_ = AMatrix<float>();
    return done;
}

int MapReduction::reduceGreatest(const AMatrixAccess& cells, RowReader& rows, const PixelCells& x,
                                 const PixelCells& y, SimdPath path)
{
    const RowKernels& kernels = rowKernels(path);
    const GroupMaxima groups(x);
    const int columns = x.endCell() - x.firstCell();
    AMatrix<float> folded(1, columns + groups.padding());
    if (folded.cells() < 1)
        return 0;
    folded.fill(-infinity);
    float least[lanes];
    float greatest[lanes];
    float ignored[lanes];
    std::fill_n(least, lanes, infinity);
    std::fill_n(ignored, lanes, infinity);
    std::fill_n(greatest, lanes, -infinity);
    for (int g = 0; g < y.groups(); ++g) {
        float* target = values_.row(g);
        float* row = x.oneToOne() ? target : folded.data();
        if (!foldSpan(cells, rows, y.span(g), x.firstCell(), columns, row, least, kernels))
            return 0;
        if (!x.oneToOne())
            groups.take(row, target, kernels);
        kernels.range(target, x.groups(), ignored, greatest);
    }
    least_ = *std::min_element(least, least + lanes);
    greatest_ = *std::max_element(greatest, greatest + lanes);
    return 1;
}

int MapReduction::reduceMean(RowReader& rows, const PixelCells& x, const PixelCells& y)
{
    std::vector<double> sums(static_cast<std::size_t>(x.groups()));
    std::vector<int> counts(sums.size());
    least_ = infinity;
    greatest_ = -infinity;
    for (int g = 0; g < y.groups(); ++g) {
        std::fill(sums.begin(), sums.end(), 0.0);
        std::fill(counts.begin(), counts.end(), 0);
        for (int r = y.span(g).first; r < y.span(g).end; ++r) {
            const float* row = rows.row(r);
            if (!row)
                return 0;
            for (std::size_t i = 0; i < sums.size(); ++i) {
                const CellSpan span = x.span(static_cast<int>(i));
                for (int c = span.first; c < span.end; ++c)
                    if (std::isfinite(row[c])) {
                        sums[i] += static_cast<double>(row[c]);
                        ++counts[i];
                    }
            }
        }
        for (std::size_t i = 0; i < sums.size(); ++i) {
            const float mean = counts[i] ? static_cast<float>(sums[i] / counts[i]) : -infinity;
            values_(g, static_cast<int>(i)) = mean;
            if (counts[i]) {
                least_ = std::min(least_, mean);
                greatest_ = std::max(greatest_, mean);
            }
        }
    }
    return 1;
}

}  // namespace pavane

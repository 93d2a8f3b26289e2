#include "pavane/maps/MapRanks.h"

#include "pavane/maps/index_rows.h"

#include <cstring>

namespace pavane
{

namespace
{

constexpr int lanes = 16;

/// Rows that are folded in one go.
constexpr int foldedRows = 4;

template <int rows>
inline __attribute__((always_inline)) void foldOf(const unsigned char* const* row, int count,
                                                  unsigned char* __restrict greatest)
{
    const unsigned char* const first = row[0];
    const unsigned char* const second = row[rows > 1 ? 1 : 0];
    const unsigned char* const third = row[rows > 2 ? 2 : 0];
    const unsigned char* const fourth = row[rows > 3 ? 3 : 0];
    for (int i = 0; i < count; ++i)
        greatest[i] = std::max(std::max(first[i], second[i]), std::max(third[i], fourth[i]));
}

/// Items become the greatest of 1 to 4 rows, none of which is `greatest`.
inline __attribute__((always_inline)) void foldAny(const unsigned char* const* row, int rows,
                                                   int count, unsigned char* greatest)
{
    switch (rows) {
    case 1:
        return foldOf<1>(row, count, greatest);
    case 2:
        return foldOf<2>(row, count, greatest);
    case 3:
        return foldOf<3>(row, count, greatest);
    default:
        return foldOf<4>(row, count, greatest);
    }
}

using FoldRows = void (*)(const unsigned char* const*, int, int, unsigned char*);

void foldPlain(const unsigned char* const* row, int rows, int count, unsigned char* greatest)
{
    foldAny(row, rows, count, greatest);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void foldWide(const unsigned char* const* row, int rows, int count,
                                              unsigned char* greatest)
{
    foldAny(row, rows, count, greatest);
}
#endif

FoldRows foldFor(SimdPath path)
{
#if defined(__x86_64__)
    if (path != SimdPath::plain)
        return foldWide;
#else
    (void)path;
#endif
    return foldPlain;
}

void ranksToIndices(unsigned char* row, int count, unsigned char shift, unsigned char blank)
{
    for (int i = 0; i < count; ++i)
        row[i] = row[i] ? static_cast<unsigned char>(row[i] + shift) : blank;
}

/// The greatest of each item and the one `distance` behind it.
void foldPairs(const unsigned char* row, int distance, int count, unsigned char* greatest)
{
    for (int i = 0; i < count; ++i)
        greatest[i] = std::max(row[i], row[i + distance]);
}

/// Greatest rank of each group of a row that starts at the first column of `x`. Inner groups of n
/// cells are two items that overlap, each the greatest of the largest power of two cells up to n.
class GroupRanks
{
public:
    explicit GroupRanks(const PixelCells& x) : x_(x), columns_(x.endCell() - x.firstCell())
    {
        int shortest = columns_;
        for (int g = 1; g + 1 < x.groups(); ++g)
            shortest = std::min(shortest, x.span(g).end - x.span(g).first);
        while (width_ * 2 <= shortest)
            width_ *= 2;
        for (int g = 0; g < x.groups(); ++g) {
            const CellSpan span = x.span(g);
            plain_ =
                plain_ && (g < 1 || g + 1 == x.groups() || span.end - span.first <= 2 * width_);
            ends_.push_back({span.first - x.firstCell(), span.end - x.firstCell() - width_});
        }
    }

    /// `row` and `spare` are used up.
    void take(unsigned char* row, unsigned char* spare, unsigned char* greatest) const
    {
        const int last = x_.groups() - 1;
        const unsigned char first = ofSpan(row, 0);
        const unsigned char final = ofSpan(row, last);
        for (int distance = 1; distance < width_; distance *= 2) {
            foldPairs(row, distance, columns_ - distance, spare);
            std::swap(row, spare);
        }
        const Ends* const ends = ends_.data();
        if (plain_)
            for (int g = 1; g < last; ++g)
                greatest[g] = std::max(row[ends[g].first], row[ends[g].last]);
        else
            for (int g = 1; g < last; ++g)
                greatest[g] = ofItems(row, ends[g]);
        greatest[0] = first;
        greatest[last] = last > 0 ? final : first;
    }

private:
    /// Where the first and the last item of a group start.
    struct Ends {
        int first = 0;
        int last = 0;
    };
    unsigned char ofSpan(const unsigned char* row, int group) const
    {
        const CellSpan span = x_.span(group);
        return *std::max_element(row + (span.first - x_.firstCell()),
                                 row + (span.end - x_.firstCell()));
    }
    unsigned char ofItems(const unsigned char* row, Ends ends) const
    {
        unsigned char greatest = row[ends.last];
        for (int i = ends.first; i < ends.last; i += width_)
            greatest = std::max(greatest, row[i]);
        return greatest;
    }

    const PixelCells& x_;
    int columns_;
    int width_ = 1;
    bool plain_ = true;
    std::vector<Ends> ends_;
};

}  // namespace

int MapRanks::set(const AMatrixAccess& cells, const MapScale& scale, int count, SimdPath path)
{
    clear();
    if (count < 1 || count > 226 || !ranks_.allocate(cells.rows(), cells.columns()))
        return 0;
    const RowKernels& kernels = rowKernels(path);
    // the index of a cell without a value wraps around to rank 0
    const RowPainter painter(scale, {0, count, 255}, path);
    RowReader rows(cells);
    std::vector<float> finite(static_cast<std::size_t>(cells.columns()) + lanes);
    float least[lanes] = {};
    for (int r = 0; r < cells.rows(); ++r) {
        const float* const row = rows.row(r);
        if (!row) {
            clear();
            return 0;
        }
        kernels.fold(&row, 1, cells.columns(), finite.data(), 1, least);
        unsigned char* const ranks = ranks_.row(r);
        painter.paint(finite.data(), cells.columns(), ranks);
        for (int c = 0; c < cells.columns(); ++c)
            ++ranks[c];
    }
    return 1;
}

int MapRanks::paint(const PixelCells& x, const PixelCells& y, const MapColors& colors,
                    unsigned char* bits, std::ptrdiff_t stride, SimdPath path) const
{
    if (x.groups() < 1 || y.groups() < 1 || x.endCell() > ranks_.columns() ||
        y.endCell() > ranks_.rows())
        return 0;
    const auto blank = static_cast<unsigned char>(colors.blank);
    const auto shift = static_cast<unsigned char>(colors.first - 1);
    const GroupRanks groups(x);
    const FoldRows fold = foldFor(path);
    const int first = x.firstCell();
    const int columns = x.endCell() - first;
    std::vector<unsigned char> folded(static_cast<std::size_t>(columns));
    std::vector<unsigned char> spare(folded.size());
    paintRows(x, y, bits, stride, rowKernels(path), [&](int group, unsigned char* row) {
        const CellSpan span = y.span(group);
        const auto size = static_cast<std::size_t>(columns);
        const unsigned char* rows[foldedRows];
        for (int r = span.first; r < span.end;) {
            int n = 0;
            if (r > span.first) {
                folded.swap(spare);  // what was folded before is one of the rows
                rows[n++] = spare.data();
            }
            for (; n < foldedRows && r < span.end; ++n, ++r)
                rows[n] = ranks_.row(r) + first;
            fold(rows, n, columns, folded.data());
        }
        if (x.oneToOne())
            std::memcpy(row, folded.data(), size);
        else
            groups.take(folded.data(), spare.data(), row);
        ranksToIndices(row, x.groups(), shift, blank);
    });
    return 1;
}

}  // namespace pavane

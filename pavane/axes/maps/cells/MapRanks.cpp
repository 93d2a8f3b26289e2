#include "pavane/axes/maps/cells/MapRanks.h"

#include "pavane/axes/maps/cells/index_rows.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Rows that are folded in one go.
constexpr int foldedRows = 4;

void ranksToIndices(const unsigned char* ranks, int count, unsigned char shift, unsigned char blank,
                    unsigned char* __restrict indices)
{
    for (int i = 0; i < count; ++i)
        indices[i] = ranks[i] ? static_cast<unsigned char>(ranks[i] + shift) : blank;
}

/// Greatest rank of each group of a row that starts at the first column of `x`. Inner groups of n
/// cells are two items that overlap, each the greatest of the largest power of two cells up to n.
class GroupRanks
{
public:
    GroupRanks(const PixelCells& x, SimdPath path)
        : x_(x), columns_(x.endCell() - x.firstCell()), kernels_(rankKernels(path))
    {
        int shortest = columns_;
        for (int g = 1; g + 1 < x.groups(); ++g)
            shortest = std::min(shortest, x.span(g).end - x.span(g).first);
        while (width_ * 2 <= shortest)
            width_ *= 2;
        bool plain = true;
        for (int g = 0; g < x.groups(); ++g) {
            const CellSpan span = x.span(g);
            const bool outer = g < 1 || g + 1 == x.groups();
            plain = plain && (outer || span.end - span.first <= 2 * width_);
            const int first = std::min(span.first - x.firstCell(), columns_ - width_);
            ends_.push_back({first, std::max(first, span.end - x.firstCell() - width_)});
        }
        if (plain && kernels_.join)
            shuffleItems();
    }
    /// How many bytes `greatest` needs.
    std::size_t room() const { return ends_.size() + ItemShuffles::groupsOfBlock; }
    /// `row` and `spare` are used up.
    void take(unsigned char* row, unsigned char* spare, unsigned char* greatest) const
    {
        const int last = x_.groups() - 1;
        const unsigned char first = ofSpan(row, 0);
        const unsigned char final = ofSpan(row, last);
        for (int distance = 1; distance < width_; distance *= 2) {
            kernels_.pairs(row, distance, columns_ - distance, spare);
            std::swap(row, spare);
        }
        if (!items_.blocks.empty())
            kernels_.join(row, items_, greatest);
        else
            for (int g = 1; g < last; ++g)
                greatest[g] = ofItems(row, ends_[static_cast<std::size_t>(g)]);
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

    /// Without blocks where groups lie so far apart that shuffling all bytes between costs more.
    void shuffleItems()
    {
        constexpr int mostChunks = 12;
        constexpr int bytes = 16;
        constexpr unsigned char nowhere = 0x80;
        for (std::size_t g = 0; g < ends_.size(); g += ItemShuffles::groupsOfBlock) {
            const std::size_t end = std::min(g + ItemShuffles::groupsOfBlock, ends_.size());
            const int base = ends_[g].first;
            const int chunks = (ends_[end - 1].last - base) / bytes + 1;
            if (chunks > mostChunks) {
                items_.blocks.clear();
                return;
            }
            items_.blocks.push_back({base, chunks, static_cast<int>(items_.shuffles.size())});
            for (int chunk = 0; chunk < chunks; ++chunk) {
                ItemShuffles::Shuffle shuffle;
                std::fill_n(shuffle.places, 2 * bytes, nowhere);
                const auto put = [&](std::size_t to, int item) {
                    if ((item - base) / bytes == chunk)
                        shuffle.places[to] = static_cast<unsigned char>((item - base) % bytes);
                };
                for (std::size_t i = g; i < end; ++i) {
                    put(i - g, ends_[i].first);
                    put(i - g + bytes, ends_[i].last);
                }
                items_.shuffles.push_back(shuffle);
            }
        }
    }

    const PixelCells& x_;
    int columns_;
    const RankKernels& kernels_;
    int width_ = 1;
    std::vector<Ends> ends_;
    ItemShuffles items_;
};

}  // namespace

int MapRanks::set(const AMatrixAccess& cells, const MapScale& scale, int count, SimdPath path)
{
    // the same memory again, if it fits: fresh pages cost as much as reading the cells
    if (ranks_.rows() != cells.rows() || ranks_.columns() != cells.columns())
        clear();
    if (count < 1 || count > 226 || (isEmpty() && !ranks_.allocate(cells.rows(), cells.columns())))
        return clear(), 0;
    const RowPainter painter(scale, {0, count, 0}, path);
    RowReader rows(cells);
    for (int r = 0; r < cells.rows(); ++r) {
        const float* const row = rows.row(r);
        if (!row)
            return clear(), 0;
        painter.rank(row, cells.columns(), ranks_.row(r), path);
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
    const GroupRanks groups(x, path);
    const RankKernels& kernels = rankKernels(path);
    const int first = x.firstCell();
    const int columns = x.endCell() - first;
    std::vector<unsigned char> folded(static_cast<std::size_t>(columns + rankMargin));
    std::vector<unsigned char> spare(folded.size());
    std::vector<unsigned char> greatest(groups.room());
    paintRows(x, y, bits, stride, rowKernels(path), [&](int group, unsigned char* row) {
        const CellSpan span = y.span(group);
        const unsigned char* rows[foldedRows];
        for (int r = span.first; r < span.end;) {
            int n = 0;
            if (r > span.first) {
                folded.swap(spare);  // what was folded before is one of the rows
                rows[n++] = spare.data();
            }
            for (; n < foldedRows && r < span.end; ++n, ++r)
                rows[n] = ranks_.row(r) + first;
            kernels.fold(rows, n, columns, std::ptrdiff_t{n} * ranks_.columns(), folded.data());
        }
        const unsigned char* ranks = folded.data();
        if (!x.oneToOne()) {
            groups.take(folded.data(), spare.data(), greatest.data());
            ranks = greatest.data();
        }
        ranksToIndices(ranks, x.groups(), shift, blank, row);
    });
    return 1;
}

}  // namespace pavane

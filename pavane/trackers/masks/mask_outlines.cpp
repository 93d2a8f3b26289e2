#include "pavane/trackers/masks/mask_outlines.h"

#include "pavane/trackers/masks/cell_regions.h"
#include "pavane/trackers/masks/scan_fill.h"
#include "pavane/trackers/masks/thin_outline.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;

/// Cells of a part of the map whose first cell is at (x, y).
struct Piece {
    CPoint at;
    ABitMatrix cells;
};

struct NoMemory : std::bad_alloc {
};

struct Stopped : std::bad_alloc {
};
void lookAt(const StopFlag* stop)
{
    if (isStopped(stop))
        throw Stopped();  // caught where outlines are asked for
}

ABitMatrix newMatrix(int rows, int columns)
{
    ABitMatrix made(rows, columns);
    if (made.rows() != rows)
        throw NoMemory();  // caught where outlines are asked for
    return made;
}

Piece pieceOf(const std::vector<CellRun>& runs)
{
    CRect box(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 0, 0);
    for (const CellRun& run : runs) {
        box.left = std::min(box.left, run.first);
        box.right = std::max(box.right, run.last + 1);
        box.top = std::min(box.top, run.row);
        box.bottom = std::max(box.bottom, run.row + 1);
    }
    Piece piece{{box.left, box.top}, newMatrix(box.Height(), box.Width())};
    for (const CellRun& run : runs)
        piece.cells.setSpan(run.row - box.top, run.first - box.left, run.last - box.left);
    return piece;
}

/// The parts of `cells`, at `at` in the map, that hang together by sides; `cells` is empty then.
void takePieces(ABitMatrix& cells, CPoint at, const StopFlag* stop, const auto& take)
{
    std::vector<CellRun> runs;
    for (int row = 0; row < cells.rows(); ++row)
        for (std::int64_t w = 0; w < cells.rowWords(); ++w)
            while (const Word word = cells.row(row)[w]) {
                runs.clear();
                flood(
                    row, static_cast<int>(w) * bits + std::countr_zero(word),
                    [&](int r, int c) { return cells.get(r, c); },
                    [&](const CellRun& run) {
                        lookAt(stop);
                        runs.push_back(run);
                        for (int c = run.first; c <= run.last; ++c)
                            cells.set(run.row, c, 0);
                    });
                Piece piece = pieceOf(runs);
                piece.at = {piece.at.x + at.x, piece.at.y + at.y};
                take(std::move(piece));
            }
}

/// The part of `from` that a piece lies in.
ABitMatrix windowOf(const ABitMatrix& from, const Piece& piece)
{
    ABitMatrix window = newMatrix(piece.cells.rows(), piece.cells.columns());
    const std::int64_t first = piece.at.x / bits;
    const int shift = piece.at.x % bits;
    const int used = window.columns() % bits;
    for (int r = 0; r < window.rows(); ++r) {
        const Word* const source = from.row(r + piece.at.y);
        Word* const to = window.row(r);
        for (std::int64_t w = 0; w < window.rowWords(); ++w) {
            to[w] = source[first + w] >> shift;
            if (shift && first + w + 1 < from.rowWords())
                to[w] |= source[first + w + 1] << (bits - shift);
        }
        if (used)
            to[window.rowWords() - 1] &= ~Word{0} >> (bits - used);
    }
    return window;
}

/// a and b where `wanted`, else a without b; of one size.
ABitMatrix combined(const ABitMatrix& a, const ABitMatrix& b, bool wanted)
{
    ABitMatrix result = newMatrix(a.rows(), a.columns());
    for (int r = 0; r < a.rows(); ++r)
        for (std::int64_t w = 0; w < a.rowWords(); ++w)
            result.row(r)[w] = a.row(r)[w] & (wanted ? b.row(r)[w] : ~b.row(r)[w]);
    return result;
}

bool isEmpty(const ABitMatrix& m) { return m.count() == 0; }

/// The cells on the way round a piece, keeping its outside on the left, where the way turns. Cells
/// that hang together by sides are all passed or enclosed.
std::vector<CPoint> wayRound(const ABitMatrix& cells, const StopFlag* stop)
{
    static constexpr CPoint steps[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    CPoint start{0, 0};
    while (!cells.get(0, start.x))
        ++start.x;
    const auto isFree = [&](CPoint p, int d) {
        return cells.get(p.y + steps[d].y, p.x + steps[d].x) != 0;
    };
    std::vector<CPoint> way{start};
    const auto next = [&](CPoint p, int d) {
        for (const int turn : {3, 0, 1})
            if (isFree(p, (d + turn) % 4))
                return (d + turn) % 4;
        return (d + 2) % 4;
    };
    const int first = isFree(start, 0) ? 0 : 1;
    if (!isFree(start, first))
        return way;
    CPoint at = start;
    int direction = first;
    do {
        at = {at.x + steps[direction].x, at.y + steps[direction].y};
        const int turned = next(at, direction);
        if (turned != direction) {
            lookAt(stop);
            way.push_back(at);
        }
        direction = turned;
    } while (at != start || direction != first);
    way.pop_back();  // the start, where the way always turns
    return way;
}

class OutlineMaker
{
public:
    OutlineMaker(const ABitMatrix& mask, const OutlineRules& rules,
                 std::vector<MaskOutline>& outlines)
        : mask_(mask), rules_(rules), outlines_(outlines),
          cleared_(newMatrix(mask.rows(), mask.columns()))
    {
    }

    void run()
    {
        ABitMatrix left = mask_;
        if (left.rows() != mask_.rows())
            throw NoMemory();
        takePieces(left, {0, 0}, rules_.stop,
                   [this](Piece piece) { outline(std::move(piece), 0); });
    }

private:
    /// One polygon for a piece, or those of its halves.
    void outline(Piece whole, int isHole)
    {
        std::vector<Piece> pieces;
        pieces.push_back(std::move(whole));
        while (!pieces.empty()) {
            const Piece piece = std::move(pieces.back());
            pieces.pop_back();
            if (!take(piece, isHole))
                halve(piece, pieces);
        }
    }

    void halve(const Piece& piece, std::vector<Piece>& pieces) const
    {
        const int rows = piece.cells.rows();
        const int columns = piece.cells.columns();
        const bool byRows = rows >= columns;
        for (const int second : {0, 1}) {
            ABitMatrix half = newMatrix(rows, columns);
            const int firstRow = byRows && second ? rows / 2 : 0;
            const int endRow = byRows && !second ? rows / 2 : rows;
            const int middle = columns / 2;
            for (int r = firstRow; r < endRow; ++r)
                half.setSpan(r, !byRows && second ? middle : 0,
                             !byRows && !second ? middle - 1 : columns - 1);
            half = combined(half, piece.cells, true);
            takePieces(half, piece.at, rules_.stop,
                       [&](Piece part) { pieces.push_back(std::move(part)); });
        }
    }

    /// 0 where it takes more than one polygon.
    int take(const Piece& piece, int isHole)
    {
        std::vector<CPoint> way = wayRound(piece.cells, rules_.stop);
        const auto most = static_cast<std::size_t>(std::max(rules_.mostVertices, 4));
        if (rules_.isExact && way.size() > most)
            return 0;
        ABitMatrix filled = newMatrix(piece.cells.rows(), piece.cells.columns());
        int overflow = fill(way, filled);
        if ((rules_.isExact && overflow) || !isEmpty(combined(piece.cells, filled, false)))
            return 0;
        const ABitMatrix own = windowOf(mask_, piece);
        const int mayEnclose = !isHole && rules_.withHoles;
        if (!mayEnclose && !isEmpty(combined(filled, own, isHole != 0)))
            return 0;
        if (overflow || way.size() > most)
            smooth(way, most, piece);
        MaskOutline& made = outlines_.emplace_back();
        made.isHole = isHole;
        for (const CPoint p : way)
            made.cells.push_back({p.x + piece.at.x, p.y + piece.at.y});
        if (mayEnclose)
            takeHoles(piece, combined(filled, own, false));
        return 1;
    }

    int fill(const std::vector<CPoint>& way, ABitMatrix& filled) const
    {
        int overflow = 0;
        if (!fillPolygon(filled, way.data(), static_cast<int>(way.size()), rules_.mostCrossings,
                         overflow))
            throw NoMemory();
        return overflow;
    }

    /// Until there are few enough vertices and crossings.
    void smooth(std::vector<CPoint>& way, std::size_t most, const Piece& piece) const
    {
        constexpr double growth = 1.3;
        const std::vector<CPoint> whole = way;
        for (double distance = 0.75;; distance *= growth) {
            lookAt(rules_.stop);
            way = thinOutline(whole, distance);
            ABitMatrix filled = newMatrix(piece.cells.rows(), piece.cells.columns());
            if (way.size() <= 3 || (way.size() <= most && !fill(way, filled)))
                return;
        }
    }

    /// What is enclosed and not in the mask; a hole in an island of another is met twice.
    void takeHoles(const Piece& piece, ABitMatrix enclosed)
    {
        enclosed = combined(enclosed, windowOf(cleared_, piece), false);
        takePieces(enclosed, piece.at, rules_.stop, [this](Piece hole) {
            for (int r = 0; r < hole.cells.rows(); ++r)
                for (int c = 0; c < hole.cells.columns(); ++c)
                    if (hole.cells.get(r, c))
                        cleared_.set(r + hole.at.y, c + hole.at.x);
            outline(std::move(hole), 1);
        });
    }

    const ABitMatrix& mask_;
    const OutlineRules& rules_;
    std::vector<MaskOutline>& outlines_;
    ABitMatrix cleared_;
};

}  // namespace

int outlinesOfMask(const ABitMatrix& mask, const OutlineRules& rules,
                   std::vector<MaskOutline>& outlines)
{
    outlines.clear();
    if (!mask.rows())
        return 1;
    try {
        OutlineMaker(mask, rules, outlines).run();
    } catch (const std::bad_alloc&) {
        outlines.clear();
        return 0;
    }
    return 1;
}

int fillOutlines(const std::vector<MaskOutline>& outlines, ABitMatrix& mask)
{
    mask.setAll(0);
    int overflow = 0;
    const auto fill = [&](int isHole) {
        return std::all_of(outlines.begin(), outlines.end(), [&](const MaskOutline& outline) {
            return outline.isHole != isHole ||
                   fillPolygon(mask, outline.cells.data(), static_cast<int>(outline.cells.size()),
                               std::numeric_limits<int>::max(), overflow);
        });
    };
    if (!fill(0))
        return 0;
    mask.invert();
    const int done = fill(1);
    mask.invert();
    return done;
}

}  // namespace pavane

#include "pavane/axes/box/soft_edges.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

namespace
{

/// Bits of a pixel: an outline runs between it and the one below, or the one to the right of it.
constexpr unsigned char below = 1;
constexpr unsigned char beside = 2;

/// Which neighbours belong together.
class Outlines
{
public:
    Outlines(const std::array<int, 2>& columns, int apart) : columns_(columns), apart_(apart) {}
    bool arePartedBy(const SurfacePixel& a, const SurfacePixel& b) const
    {
        if (a.part != b.part || a.second != b.second)
            return true;
        if (a.part == SurfacePart::nothing)
            return false;
        const std::int64_t columns = std::max(columns_[a.second & 1], 1);
        const std::int64_t way = std::abs(std::int64_t{a.cell} - std::int64_t{b.cell});
        if (way <= apart_ || std::abs(way - columns) <= apart_)
            return false;
        const std::int64_t rows = (way + columns / 2) / columns;
        return rows > apart_ || std::abs(way - rows * columns) > apart_;
    }

private:
    std::array<int, 2> columns_;
    std::int64_t apart_;
};

/// Part `share` of 256 of the other colour.
std::uint32_t mixed(std::uint32_t color, std::uint32_t other, unsigned share)
{
    constexpr std::uint32_t odd = 0x00FF00FF;
    const std::uint32_t rest = 256 - share;
    const std::uint32_t a = ((color & odd) * rest + (other & odd) * share) >> 8 & odd;
    const std::uint32_t b = (color >> 8 & odd) * rest + (other >> 8 & odd) * share;
    return a | (b & ~odd);
}

/// One direction of an image: u runs along the outlines that are looked for, between v and v + 1.
struct Lines {
    const AMatrix<unsigned char>& marks;  ///< a row for each v
    unsigned char along, across;  ///< of the outlines looked for, and of those that end them
    int leastRun;
    const std::uint32_t* from;
    std::ptrdiff_t fromU, fromV;
    std::uint32_t* to;
    std::ptrdiff_t toU, toV;

    bool has(unsigned char bit, int u, int v) const
    {
        return u >= 0 && v >= 0 && u < marks.columns() && v < marks.rows() && (marks(v, u) & bit);
    }
};

/// Where a run of an outline goes on one step off: into v (1), into v + 1 (-1), or nowhere (0), as
/// at a corner. `border` is the pixel whose right side ends the run, `next` the first one beyond.
int turnAt(const Lines& lines, int border, int next, int v)
{
    const bool up = lines.has(lines.across, border, v);
    const bool down = lines.has(lines.across, border, v + 1);
    if (up == down || !lines.has(lines.along, next, up ? v - 1 : v + 1))
        return 0;
    return up ? 1 : -1;
}

/// Cuts off the triangle between half of a run, from `end` on by `step`, and its line; `turn` tells
/// on which side.
void softenHalf(const Lines& lines, int end, int step, int v, int length, int turn)
{
    if (turn == 0)
        return;
    const double half = 0.5 * length;
    const int changed = turn > 0 ? v : v + 1, other = turn > 0 ? v + 1 : v;
    for (int k = 0; k < half; ++k) {
        // the line is (half - t) / length high at t
        const double last = std::min(k + 1.0, half);
        const double area = (last - k) * (half - 0.5 * (k + last)) / length;
        const std::ptrdiff_t u = end + step * k;
        std::uint32_t& pixel = lines.to[u * lines.toU + changed * lines.toV];
        pixel = mixed(pixel, lines.from[u * lines.fromU + other * lines.fromV],
                      static_cast<unsigned>(256 * area));
    }
}

void softenLines(const Lines& lines)
{
    const int count = lines.marks.columns();
    for (int v = 0; v + 1 < lines.marks.rows(); ++v) {
        const unsigned char* const marks = lines.marks.row(v);
        for (int u = 0; u < count; ++u) {
            if (!(marks[u] & lines.along))
                continue;
            const int first = u;
            while (u + 1 < count && (marks[u + 1] & lines.along))
                ++u;
            const int length = u - first + 1;
            if (length < lines.leastRun)
                continue;
            softenHalf(lines, first, 1, v, length, turnAt(lines, first - 1, first - 1, v));
            softenHalf(lines, u, -1, v, length, turnAt(lines, u, u + 1, v));
        }
    }
}

}  // namespace

void softenEdges(const SurfaceRaster& raster, const std::array<int, 2>& columns, int apart,
                 std::uint32_t* image, std::ptrdiff_t stride)
{
    const int width = raster.width(), height = raster.height();
    AMatrix<unsigned char> inRows(height, width), inColumns(width, height);
    AMatrix<std::uint32_t> plain(height, width);
    if (inRows.cells() < 1 || inColumns.cells() < 1 || plain.cells() < 1)
        return;
    inRows.fill(0);
    inColumns.fill(0);
    const Outlines outlines(columns, apart);
    for (int x = 0; x < width; ++x) {
        const int right = std::min(x + 1, width - 1);
        const SurfaceRaster::Extent a = raster.extent(x), b = raster.extent(right);
        const SurfacePixel* const here = raster.column(x);
        const SurfacePixel* const next = raster.column(right);
        // beyond these nothing is beside nothing
        const int first = std::max(0, std::min(a.first, b.first) - 1);
        const int end = std::min(height, std::max(a.end, b.end));
        for (int y = first; y < end; ++y) {
            const int isAbove = outlines.arePartedBy(here[y], here[std::min(y + 1, height - 1)]);
            const int isLeft = outlines.arePartedBy(here[y], next[y]);
            if (isAbove || isLeft)
                inRows(y, x) = inColumns(x, y) =
                    static_cast<unsigned char>((isAbove ? below : 0) | (isLeft ? beside : 0));
        }
    }
    for (int y = 0; y < height; ++y)
        std::copy_n(image + y * stride, width, plain.row(y));
    // both directions read the plain image; its rows follow one another from the top
    softenLines({inRows, below, beside, 1, plain.data(), 1, width, image, 1, stride});
    // single steps of both directions are a diagonal, which is done
    softenLines({inColumns, beside, below, 2, plain.data(), width, 1, image, stride, 1});
}

}  // namespace pavane

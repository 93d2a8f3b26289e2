#include "platform/core/CDC_state.h"
#include "platform/core/dib.h"
#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace pavane
{

namespace
{

/// The drawing mode that combines source and old pixel as a raster operation does; 0 for none.
int modeOf(unsigned rop)
{
    switch (rop) {
    case SRCCOPY:
        return R2_COPYPEN;
    case SRCPAINT:
        return R2_MERGEPEN;
    case SRCAND:
        return R2_MASKPEN;
    case SRCINVERT:
        return R2_XORPEN;
    default:
        return 0;
    }
}

constexpr int magnitude(int v) { return v < 0 ? -v : v; }

/// One axis of a stretched picture: the device pixels that it covers and the cell each shows.
struct StretchedAxis {
    int first = 0;  ///< visible pixels first .. last-1
    int last = 0;
    std::vector<int> cells;  ///< of each visible pixel; -1 outside the source
    StretchedAxis(int at, int size, int source, int sourceSize, int sourceLimit, int low, int high)
    {
        const std::int64_t length = std::abs(std::int64_t{size});
        const std::int64_t cellCount = std::abs(std::int64_t{sourceSize});
        if (length == 0 || cellCount == 0)
            return;
        // a negative size runs from the start towards smaller pixels
        const std::int64_t begin = size > 0 ? at : std::int64_t{at} - length + 1;
        first = static_cast<int>(std::clamp<std::int64_t>(begin, low, high));
        last = static_cast<int>(std::clamp<std::int64_t>(begin + length, low, high));
        cells.reserve(static_cast<std::size_t>(last - first));
        for (int p = first; p < last; ++p) {
            const std::int64_t i = size > 0 ? std::int64_t{p} - at : std::int64_t{at} - p;
            std::int64_t cell = sampledCell(i, cellCount, length);
            cell = sourceSize > 0 ? source + cell : std::int64_t{source} - 1 - cell;
            cells.push_back(cell >= 0 && cell < sourceLimit ? static_cast<int>(cell) : -1);
        }
    }
    /// Non-zero when every pixel shows the cell after that of the pixel before.
    int isPlain() const
    {
        for (std::size_t i = 0; i < cells.size(); ++i)
            if (cells[i] < 0 || cells[i] != cells[0] + static_cast<int>(i))
                return 0;
        return !cells.empty();
    }
    /// Each source cell once, for a device that stretches by itself; `mirrored`: the last one
    /// first.
    static StretchedAxis cellByCell(int start, int size, bool mirrored, int limit)
    {
        const int from = mirrored ? saturated(Wide{start} + size) : start;
        return {0, magnitude(size), from, mirrored ? -size : size, limit, 0, limit};
    }
};

/// Paints a stretched picture, axes in pixels; rowOf(row)(column) gives the pixel of a source cell.
template <class RowOf>
void paintStretched(const PixelPainter& painter, const PixelSurface& surface,
                    const StretchedAxis& xs, const StretchedAxis& ys, int mode, RowOf rowOf)
{
    const int ratio = surface.ratio;
    for (int y = ys.first; y < ys.last; ++y) {
        const int row = ys.cells[static_cast<std::size_t>(y - ys.first)];
        if (row < 0)
            continue;
        const auto pixelAt = rowOf(row);
        const int unitsEnd = (xs.last + ratio - 1) / ratio;
        painter.clipped(y / ratio, xs.first / ratio, unitsEnd, [&](int unitY, int a, int b) {
            surface.touch({a, unitY, b, unitY + 1});
            std::uint32_t* const pixels = surface.row(y);
            const int end = std::min(b * ratio, xs.last);
            for (int x = std::max(a * ratio, xs.first); x < end; ++x) {
                const int column = xs.cells[static_cast<std::size_t>(x - xs.first)];
                if (column < 0)
                    continue;
                const std::uint32_t source = pixelAt(column);
                pixels[x] = mode == R2_COPYPEN ? source & 0xFFFFFF
                                               : PixelOperation::of(mode, source)(pixels[x]);
            }
        });
    }
}

/// Copies units of `from` at (sx, sy) to `target` of `to`; both have the same ratio.
void copyUnits(const PixelPainter& painter, const PixelSurface& to, const CRect& target,
               const PixelSurface& from, int sx, int sy)
{
    // the part that the source has
    CRect available(saturated(Wide{target.left} - sx), saturated(Wide{target.top} - sy),
                    saturated(Wide{target.left} - sx + from.width),
                    saturated(Wide{target.top} - sy + from.height));
    if (!available.IntersectRect(available, target))
        return;
    painter.clippedRects(available, [&](const CRect& part) {
        to.touch(part);
        const std::uint32_t* source =
            from.at(part.left - target.left + sx, part.top - target.top + sy);
        std::uint32_t* pixels = to.at(part.left, part.top);
        const auto bytes = static_cast<std::size_t>(part.Width()) *
                           static_cast<std::size_t>(to.ratio) * sizeof(std::uint32_t);
        for (int row = part.Height() * to.ratio; row > 0; --row) {
            std::memcpy(pixels, source, bytes);
            source += from.stride;
            pixels += to.stride;
        }
    });
}

/// Shifts the units of one surface that land in `target`; returns those that were painted.
CRect moveUnits(const PixelPainter& painter, const PixelSurface& surface, const CRect& target,
                int dx, int dy, const Region* clip)
{
    CRect source(target.left - dx, target.top - dy, target.right - dx, target.bottom - dy);
    const CRect whole(0, 0, surface.width, surface.height);
    CRect part;
    if (!source.IntersectRect(source, whole) ||
        !part.IntersectRect(
            {source.left + dx, source.top + dy, source.right + dx, source.bottom + dy},
            painter.bounds()))
        return {};
    const int k = surface.ratio;
    if (clip && clip->kind() == COMPLEXREGION) {
        // one part of the clip could cover what another has yet to read
        const CRect from(part.left - dx, part.top - dy, part.right - dx, part.bottom - dy);
        std::vector<std::uint32_t> copy(surface.row(from.top * k),
                                        surface.row(from.bottom * k - 1) +
                                            std::ptrdiff_t{surface.width} * k);
        const PixelSurface before{copy.data(), surface.width, from.Height(), surface.stride, k};
        copyUnits(painter, surface, part, before, from.left, 0);
        return part;
    }
    const auto bytes = static_cast<std::size_t>(part.Width() * k) * sizeof(std::uint32_t);
    const int rows = part.Height() * k;
    // rows go in the order in which none is covered before it was read
    for (int i = 0; i < rows; ++i) {
        const int y = part.top * k + (dy > 0 ? rows - 1 - i : i);
        std::memmove(surface.row(y) + std::ptrdiff_t{part.left} * k,
                     surface.row(y - dy * k) + std::ptrdiff_t{part.left - dx} * k, bytes);
    }
    return part;
}

CRect timesRatio(const CRect& r, int ratio)
{
    return {r.left * ratio, r.top * ratio, r.right * ratio, r.bottom * ratio};
}

int timesRatio(int units, int ratio) { return saturated(Wide{units} * ratio); }

/// A row of a bitmap: `colors` is null when the pixels hold their colours themselves.
struct DIBRow {
    const unsigned char* line;
    const std::uint32_t* colors;
    std::uint32_t operator()(int column) const
    {
        if (colors)
            return colors[line[column]];
        const unsigned char* const p = line + 4 * static_cast<std::size_t>(column);
        return pixelOf(RGB(p[2], p[1], p[0]));
    }
};

/// Eight indices are read and two pixels written at a time: reading is what takes the time.
void paintColors(std::uint32_t* pixels, const unsigned char* index, int count,
                 const std::uint32_t* colors)
{
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t indices;
        std::memcpy(&indices, index + i, sizeof indices);
        std::uint32_t eight[8];
        for (int k = 0; k < 8; ++k)
            eight[k] =
                colors[indices >> 8 * (std::endian::native == std::endian::little ? k : 7 - k) &
                       0xFF];
        std::memcpy(pixels + i, eight, sizeof eight);
    }
    for (; i < count; ++i)
        pixels[i] = colors[index[i]];
}

/// Paints an indexed picture whose columns are the pixels' own: what maps come as.
void paintIndexed(const PixelPainter& painter, const PixelSurface& surface, const StretchedAxis& xs,
                  const StretchedAxis& ys, const DIBView& dib, const std::uint32_t* colors)
{
    const int ratio = surface.ratio;
    const CRect units(xs.first / ratio, ys.first / ratio, (xs.last + ratio - 1) / ratio,
                      (ys.last + ratio - 1) / ratio);
    painter.clippedRects(units, [&](const CRect& part) {
        surface.touch(part);
        const int begin = std::max(part.left * ratio, xs.first);
        const int end = std::min(part.right * ratio, xs.last);
        const int bottom = std::min(part.bottom * ratio, ys.last);
        for (int y = std::max(part.top * ratio, ys.first); y < bottom; ++y) {
            const int row = ys.cells[static_cast<std::size_t>(y - ys.first)];
            if (row < 0)
                continue;
            const unsigned char* index = dib.row(row) + xs.cells[0] + (begin - xs.first);
            std::uint32_t* const pixels = surface.row(y);
            paintColors(pixels + begin, index, end - begin, colors);
        }
    });
}

/// Size of a picture in device units; its sign is kept.
int deviceLength(int from, int length, bool isX, const Mapping& mapping)
{
    const CPoint a(isX ? from : 0, isX ? 0 : from);
    const int to = saturated(Wide{from} + length);
    const CPoint b(isX ? to : 0, isX ? 0 : to);
    const CPoint p = mapping.toDevice(a);
    const CPoint q = mapping.toDevice(b);
    return saturated(isX ? Wide{q.x} - p.x : Wide{q.y} - p.y);
}

}  // namespace

int CDC::BitBlt(int x, int y, int width, int height, const CDC* source, int sx, int sy,
                unsigned rop)
{
    if (!modeOf(rop))
        return PatBlt(x, y, width, height, rop);
    if (width < 1 || height < 1)
        return 0;
    return StretchBlt(x, y, width, height, source, sx, sy, width, height, rop);
}

int CDC::StretchBlt(int x, int y, int width, int height, const CDC* source, int sx, int sy,
                    int sWidth, int sHeight, unsigned rop)
{
    State& s = *state_;
    const int mode = modeOf(rop);
    const PixelSurface from = source ? source->state_->surface() : PixelSurface{};
    if (!s.canDraw() || !from.bits || !mode)
        return 0;
    const Mapping& mapping = source->state_->now.mapping;
    const CPoint start = mapping.toDevice(CPoint(sx, sy));
    const CPoint at = s.now.mapping.toDevice(CPoint(x, y));
    const int w = deviceLength(x, width, true, s.now.mapping);
    const int h = deviceLength(y, height, false, s.now.mapping);
    const int sw = deviceLength(sx, sWidth, true, mapping);
    const int sh = deviceLength(sy, sHeight, false, mapping);
    const PixelSurface to = s.surface();
    const CRect limits = to.bits ? s.painter().bounds() : CRect();
    if (VectorDevice* const page = s.page()) {
        // the visible part of the source, where it lands
        const CRect whole(0, 0, from.width, from.height);
        const CRect part(start.x, start.y, saturated(Wide{start.x} + sw),
                         saturated(Wide{start.y} + sh));
        CRect seen;
        if (w < 1 || h < 1 || sw < 1 || sh < 1 || !seen.IntersectRect(whole, part))
            return 0;
        std::vector<std::uint32_t> copy;
        const CRect fine = timesRatio(seen, from.ratio);
        for (int row = fine.top; row < fine.bottom; ++row)
            copy.insert(copy.end(), from.row(row) + fine.left, from.row(row) + fine.right);
        const auto placed = [](int from, int offset, int size, int cells) {
            return saturated(Wide{from} + MulDiv(offset, size, cells));
        };
        const CRect target(placed(at.x, seen.left - part.left, w, sw),
                           placed(at.y, seen.top - part.top, h, sh),
                           placed(at.x, seen.right - part.left, w, sw),
                           placed(at.y, seen.bottom - part.top, h, sh));
        page->image(target, {copy.data(), fine.Width(), fine.Height()});
        return 1;
    }
    const bool fitsExactly = w == sw && h == sh && w > 0 && h > 0 && from.ratio == to.ratio;
    if (fitsExactly && mode == R2_COPYPEN && from.bits != to.bits) {
        const CRect target(at.x, at.y, saturated(Wide{at.x} + w), saturated(Wide{at.y} + h));
        copyUnits(s.painter(), to, target, from, start.x, start.y);
        return 1;
    }
    const int k = to.ratio;
    const int n = from.ratio;
    const auto axis = [&](int placed, int size, int first, int cells, int limit, int low,
                          int high) {
        return StretchedAxis(timesRatio(placed, k), timesRatio(size, k), timesRatio(first, n),
                             timesRatio(cells, n), limit * n, low * k, high * k);
    };
    const StretchedAxis xs = axis(at.x, w, start.x, sw, from.width, limits.left, limits.right);
    const StretchedAxis ys = axis(at.y, h, start.y, sh, from.height, limits.top, limits.bottom);
    if (from.bits != to.bits) {
        paintStretched(s.painter(), to, xs, ys, mode, [&](int row) {
            return [line = from.row(row)](int column) { return line[column]; };
        });
        return 1;
    }
    // within one surface the source is read before anything is written
    const auto seen = std::minmax_element(ys.cells.begin(), ys.cells.end());
    if (ys.cells.empty() || *seen.second < 0)
        return 1;
    const int top = std::max(0, *seen.first);
    const std::vector<std::uint32_t> copy(from.row(top),
                                          from.row(*seen.second) + std::ptrdiff_t{from.width} * n);
    paintStretched(s.painter(), to, xs, ys, mode, [&](int row) {
        const std::uint32_t* const line = copy.data() + (row - top) * std::ptrdiff_t{from.stride};
        return [line](int column) { return line[column]; };
    });
    return 1;
}

int CDC::StretchDIBits(int x, int y, int width, int height, int sx, int sy, int sWidth, int sHeight,
                       const void* bits, const void* header, unsigned usage, unsigned rop)
{
    State& s = *state_;
    DIBView dib;
    const int mode = modeOf(rop);
    constexpr int least = std::numeric_limits<int>::min();
    if (!s.canDraw() || !mode || sWidth == least || sHeight == least || !readDIB(header, bits, dib))
        return 0;
    std::uint32_t colors[256] = {};
    for (int i = 0; i < dib.tableSize; ++i) {
        if (usage == DIB_PAL_COLORS)
            colors[i] = s.pixel(PALETTEINDEX(dib.table[2 * i] | dib.table[2 * i + 1] << 8));
        else
            colors[i] = pixelOf(RGB(dib.table[4 * i + 2], dib.table[4 * i + 1], dib.table[4 * i]));
    }
    const auto rowOf = [&](int row) {
        return DIBRow{dib.row(row), dib.bitCount == 8 ? colors : nullptr};
    };
    const CPoint at = s.now.mapping.toDevice(CPoint(x, y));
    const int w = deviceLength(x, width, true, s.now.mapping);
    const int h = deviceLength(y, height, false, s.now.mapping);
    // Deliberate: rows of a bottom-up bitmap are counted from its last one
    const Wide upper = dib.bottomUp ? Wide{dib.height} - sy - sHeight : Wide{sy};
    const int top = saturated(upper);
    if (VectorDevice* const page = s.page()) {
        const auto xs = StretchedAxis::cellByCell(sx, sWidth, w < 0, dib.width);
        const auto ys = StretchedAxis::cellByCell(top, sHeight, h < 0, dib.height);
        std::vector<std::uint32_t> copy;
        for (const int row : ys.cells) {
            for (const int column : xs.cells)
                copy.push_back(row < 0 || column < 0 ? 0xFFFFFF : rowOf(row)(column));
        }
        CRect target(at.x, at.y, saturated(Wide{at.x} + w), saturated(Wide{at.y} + h));
        target.NormalizeRect();
        if (!copy.empty())
            page->image(target, {copy.data(), xs.last, ys.last});
        return dib.height;
    }
    const PixelSurface to = s.surface();
    if (!to.bits)
        return 0;
    const CRect limits = s.painter().bounds();
    const int k = to.ratio;
    const StretchedAxis xs(timesRatio(at.x, k), timesRatio(w, k), sx, sWidth, dib.width,
                           limits.left * k, limits.right * k);
    const StretchedAxis ys(timesRatio(at.y, k), timesRatio(h, k), top, sHeight, dib.height,
                           limits.top * k, limits.bottom * k);
    if (mode == R2_COPYPEN && dib.bitCount == 8 && xs.isPlain())
        paintIndexed(s.painter(), to, xs, ys, dib, colors);
    else
        paintStretched(s.painter(), to, xs, ys, mode, rowOf);
    return dib.height;
}

int CDC::ScrollDC(int dx, int dy, const CRect* scroll, const CRect* clip, CRgn* region,
                  CRect* update)
{
    State& s = *state_;
    const PixelSurface surface = s.surface();
    if (!surface.bits)
        return 0;
    const CRect whole = s.deviceRect();
    CRect inside = clip ? s.deviceBox(*clip) : whole;
    CRect moved = scroll ? s.deviceBox(*scroll) : whole;
    (void)inside.IntersectRect(inside, whole);  // an empty one moves nothing
    (void)moved.IntersectRect(moved, inside);
    const int shiftX = deviceLength(0, dx, true, s.now.mapping);
    const int shiftY = deviceLength(0, dy, false, s.now.mapping);

    const auto shifted = [&](const CRect& r) {
        return CRect(saturated(Wide{r.left} + shiftX), saturated(Wide{r.top} + shiftY),
                     saturated(Wide{r.right} + shiftX), saturated(Wide{r.bottom} + shiftY));
    };
    CRect target;
    if (target.IntersectRect(shifted(moved), inside)) {
        const CRect part = moveUnits(s.painter(), surface, target, shiftX, shiftY, s.clipRegion());
        const bool isWhole = moved == inside && !s.clipRegion();
        if (!isWhole || !s.backend->shifted(inside, shiftX, shiftY))
            surface.touch(part);
    }
    // uncovered: what moved away and was not painted again
    CRgn away;
    CRgn painted;
    CRgn uncovered;
    if ((shiftX != 0 || shiftY != 0) && (scroll || clip)) {
        away.CreateRectRgn(moved.left, moved.top, moved.right, moved.bottom);
        painted.CreateRectRgn(target.left, target.top, target.right, target.bottom);
        uncovered.CombineRgn(away, painted, RGN_DIFF);
    }
    if (region)
        *region = uncovered;
    if (update)
        uncovered.GetRgnBox(*update);
    return 1;
}

}  // namespace pavane

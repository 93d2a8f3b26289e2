#include "pavane/axes/box/SurfaceRaster.h"
#include "pavane/axes/maps/cells/index_rows.h"

#include <array>
#include <cmath>
#include <iterator>
#include <vector>

namespace pavane
{

namespace
{

constexpr int tile = 64;
constexpr int tileRows = 32;

/// Hands out the rows of a raster that show something in short pieces: `use(left, y, pixels,
/// count)`. The raster lies in columns, so that a tile of it is turned first.
template <typename Use>
void eachRow(const SurfaceRaster& raster, const Use& use)
{
    std::array<std::array<SurfacePixel, tile>, tileRows> rows;
    for (int left = 0; left < raster.width(); left += tile) {
        const int width = std::min(tile, raster.width() - left);
        int first = raster.height(), end = 0;
        for (int x = left; x < left + width; ++x) {
            const SurfaceRaster::Extent extent = raster.extent(x);
            if (extent.first >= extent.end)
                continue;
            first = std::min(first, extent.first);
            end = std::max(end, extent.end);
        }
        for (int top = first; top < end; top += tileRows) {
            const int height = std::min(tileRows, end - top);
            for (int x = 0; x < width; ++x) {
                const SurfacePixel* column = raster.column(left + x) + top;
                for (int y = 0; y < height; ++y)
                    rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = column[y];
            }
            for (int y = 0; y < height; ++y)
                use(left, top + y, rows[static_cast<std::size_t>(y)].data(), width);
        }
    }
}

/// The values of cells by their number.
class CellValues
{
public:
    explicit CellValues(const AMatrixAccess& cells)
        : cells_(cells), columns_(static_cast<std::uint32_t>(std::max(cells.columns(), 1))),
          count_(std::uint64_t{columns_} * static_cast<std::uint64_t>(std::max(cells.rows(), 0)))
    {
        const float* first = cells.rows() > 0 ? cells.floatRow(0) : nullptr;
        const float* last = first ? cells.floatRow(cells.rows() - 1) : nullptr;
        // a map whose rows follow one another needs no division for each pixel
        if (last && last - first == static_cast<std::ptrdiff_t>(count_ - columns_))
            direct_ = first;
    }
    float of(std::uint32_t cell) const
    {
        constexpr float none = -std::numeric_limits<float>::infinity();
        if (cell >= count_)
            return none;
        const float value = direct_ ? direct_[cell]
                                    : cells_.cell(static_cast<int>(cell / columns_),
                                                  static_cast<int>(cell % columns_));
        return value - value == 0 ? value : none;
    }

private:
    const AMatrixAccess& cells_;
    std::uint32_t columns_;
    std::uint64_t count_;
    const float* direct_ = nullptr;
};

/// Turns runs of pixels of one of the two surfaces into indices.
class SurfacePainter
{
public:
    explicit SurfacePainter(const SurfaceColors& colors)
        : colors_(colors), values_(colors.cells ? *colors.cells : noCells_),
          rows_(colors.scale ? *colors.scale : noScale_, colors.colors, bestSimdPath())
    {
    }
    void paint(const std::uint32_t* cells, int count, unsigned char* indices) const
    {
        if (!colors_.cells || !colors_.scale) {
            std::fill_n(indices, count, static_cast<unsigned char>(colors_.colors.first));
            return;
        }
        std::array<float, tile> values;
        for (int k = 0; k < count; ++k)
            values[static_cast<std::size_t>(k)] = values_.of(cells[k]);
        rows_.paint(values.data(), count, indices);
    }

private:
    AMatrix<float> empty_;
    AFloatMatrixAccess noCells_{empty_};
    MapScale noScale_;
    SurfaceColors colors_;
    CellValues values_;
    RowPainter rows_;
};

}  // namespace

int paintSurface(const SurfaceRaster& raster, const SurfaceColors& first,
                 const SurfaceColors& second, unsigned char* bits, std::ptrdiff_t stride)
{
    for (const SurfaceColors* colors : {&first, &second})
        if (colors->colors.count < 1 || colors->colors.first < 0 ||
            colors->colors.first + colors->colors.count > 256)
            return 0;
    const SurfacePainter painters[] = {SurfacePainter(first), SurfacePainter(second)};
    std::array<std::uint32_t, tile> cells;
    std::array<unsigned char, tile> indices;
    std::array<int, tile> places;
    eachRow(raster, [&](int left, int y, const SurfacePixel* pixels, int width) {
        for (int surface = 0; surface <= raster.hasSecond(); ++surface) {
            std::size_t count = 0;
            for (int x = 0; x < width; ++x) {
                places[count] = x;
                cells[count] = pixels[x].cell;
                count += pixels[x].part != SurfacePart::nothing && pixels[x].second == surface;
            }
            if (count < 1)
                continue;
            painters[surface].paint(cells.data(), static_cast<int>(count), indices.data());
            unsigned char* row = bits + y * stride + left;
            for (std::size_t k = 0; k < count; ++k)
                row[places[k]] = indices[k];
        }
    });
    return 1;
}

void shadeSurface(const SurfaceRaster& raster, const unsigned char* bits, std::ptrdiff_t bitsStride,
                  std::span<const COLORREF, 256> table, const SurfaceShades& shades,
                  std::uint32_t* to, std::ptrdiff_t toStride)
{
    const double parts[] = {1, 1, shades.under, shades.skirt, 1};
    const auto shade = [&table](std::size_t index, double brightness) {
        const auto factor =
            static_cast<std::uint32_t>(std::lround(256 * std::clamp(brightness, 0.0, 1.0)));
        const COLORREF color = table[index];
        return 0xFF000000u | ((color & 0xFF) * factor >> 8) << 16 |
               ((color >> 8 & 0xFF) * factor >> 8) << 8 | (color >> 16 & 0xFF) * factor >> 8;
    };
    // in 32 steps of light, of which the last is that without any
    constexpr std::size_t steps = 32;
    std::vector<std::array<std::uint32_t, 256>> colors(std::size(parts) * steps);
    for (std::size_t k = 0; k < colors.size(); ++k)
        for (std::size_t index = 0; index < 256; ++index) {
            const double light = static_cast<double>(k % steps) / (steps - 1);
            colors[k][index] =
                shade(index, parts[k / steps] * (shades.ambient + (1 - shades.ambient) * light));
        }
    eachRow(raster, [&](int left, int y, const SurfacePixel* pixels, int width) {
        const unsigned char* indices = bits + y * bitsStride + left;
        std::uint32_t* row = to + y * toStride + left;
        for (int x = 0; x < width; ++x)
            if (pixels[x].part != SurfacePart::nothing)
                row[x] = colors[static_cast<std::size_t>(pixels[x].part) * steps +
                                pixels[x].light / 8][indices[x]];
    });
}

}  // namespace pavane

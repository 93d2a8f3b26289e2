#include "pavane/axes/box/SurfaceRaster.h"
#include "pavane/axes/maps/cells/index_rows.h"

#include <array>

namespace pavane
{

namespace
{

constexpr int tile = 64;

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
    for (int left = 0; left < raster.width(); left += tile) {
        const int width = std::min(tile, raster.width() - left);
        for (int y = 0; y < raster.height(); ++y)
            for (const int isSecond : {0, 1}) {
                std::size_t count = 0;
                for (int x = 0; x < width; ++x) {
                    const SurfacePixel& pixel = raster.pixel(left + x, y);
                    if (pixel.part == SurfacePart::nothing || pixel.second != isSecond)
                        continue;
                    places[count] = x;
                    cells[count++] = pixel.cell;
                }
                if (count < 1)
                    continue;
                painters[isSecond].paint(cells.data(), static_cast<int>(count), indices.data());
                unsigned char* row = bits + y * stride + left;
                for (std::size_t k = 0; k < count; ++k)
                    row[places[k]] = indices[k];
            }
    }
    return 1;
}

void shadeSurface(const SurfaceRaster& raster, const unsigned char* bits, std::ptrdiff_t bitsStride,
                  std::span<const COLORREF, 256> table, const SurfaceShades& shades,
                  std::uint32_t* to, std::ptrdiff_t toStride)
{
    // of 256, for each part and each amount of light
    std::array<std::array<std::uint32_t, 256>, 5> factors;
    const double parts[] = {1, 1, shades.under, shades.skirt, 1};
    for (std::size_t part = 0; part < factors.size(); ++part)
        for (std::size_t light = 0; light < 256; ++light) {
            const double lit =
                shades.ambient + (1 - shades.ambient) * static_cast<double>(light) / 255;
            factors[part][light] =
                static_cast<std::uint32_t>(256 * std::clamp(parts[part] * lit, 0.0, 1.0) + 0.5);
        }
    for (int left = 0; left < raster.width(); left += tile)
        for (int y = 0; y < raster.height(); ++y)
            for (int x = left; x < std::min(left + tile, raster.width()); ++x) {
                const SurfacePixel& pixel = raster.pixel(x, y);
                if (pixel.part == SurfacePart::nothing)
                    continue;
                const COLORREF color = table[bits[y * bitsStride + x]];
                const std::uint32_t f = factors[static_cast<std::size_t>(pixel.part)][pixel.light];
                const std::uint32_t red = (color & 0xFF) * f >> 8;
                const std::uint32_t green = (color >> 8 & 0xFF) * f >> 8;
                const std::uint32_t blue = (color >> 16 & 0xFF) * f >> 8;
                to[y * toStride + x] = 0xFF000000u | red << 16 | green << 8 | blue;
            }
}

}  // namespace pavane

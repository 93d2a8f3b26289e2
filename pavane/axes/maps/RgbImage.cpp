#include "pavane/axes/maps/RgbImage.h"

#include "pavane/axes/maps/cells/StoppableCells.h"

#include <algorithm>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

/// Indices are brightnesses; the one behind the brightest says blank. A step of 1 in 255 is not
/// seen.
constexpr MapColors brightness{0, 255, 255};
constexpr std::uint32_t full = 255, brightest = 254;

std::uint32_t part(unsigned char index)
{
    return index == brightness.blank ? 0 : index * full / brightest;
}

}  // namespace

RgbImage::RgbImage(RgbMap map) : map_(std::move(map))
{
    for (std::size_t i = 0; i < rgbBands; ++i)
        shown_[i].cells = mapRange(AFloatMatrixAccess(map_.cells[i]));
}

TMnMx RgbImage::range(std::size_t band) const
{
    const RgbBand& b = map_.bands[band];
    const MapRange& cells = shown_[band].cells;
    if (cells.isEmpty())
        return {};
    return b.hasRange() ? TMnMx{b.low, b.high} : TMnMx{cells.least, cells.greatest};
}

void RgbImage::setRange(std::size_t band, double low, double high)
{
    map_.bands[band].low = low;
    map_.bands[band].high = high;
}

void RgbImage::forget()
{
    for (Shown& shown : shown_)
        shown.pixels.forget();
}

int RgbImage::paintBand(std::size_t band, const PixelCells& x, const PixelCells& y,
                        SharedPixel shared, MapScaleKind kind, const StopFlag* stop)
{
    Shown& shown = shown_[band];
    const AFloatMatrixAccess all(map_.cells[band]);
    const StoppableCells cells(all, stop);
    TMnMx range = this->range(band);
    if (range.min > range.max)
        range = {0, 1};
    if (kind == MapScaleKind::logarithmic && range.min <= 0) {
        if (shown.noise < 0)
            shown.noise = mapNoise(cells).sigma;
        if (shown.noise < range.max)
            range.min = shown.noise;
    }
    if (!shown.pixels.show(x, y))
        return 0;
    if (shown.pixels.isPainted() && kind == shown.kind && range == shown.range)
        return 1;
    MapScale scale(kind, range.min, range.max);
    if (kind == MapScaleKind::equalized)
        scale.equalize(cells);
    const int isPainted = shown.pixels.paint(cells, shared, scale, brightness);
    if (cells.isStopped()) {
        shown.pixels.forget();
        shown.noise = -1;
        return 0;
    }
    shown.kind = kind;
    shown.range = range;
    return isPainted;
}

int RgbImage::paint(const PixelCells& x, const PixelCells& y, SharedPixel shared, MapScaleKind kind,
                    COLORREF blank, const StopFlag* stop, std::vector<std::uint32_t>& bits)
try {
    for (std::size_t i = 0; i < rgbBands; ++i)
        if (!paintBand(i, x, y, shared, kind, stop))
            return 0;
    const auto width = static_cast<std::size_t>(x.pixels());
    const auto height = static_cast<std::size_t>(y.pixels());
    bits.resize(width * height);
    const std::uint32_t nothing = static_cast<std::uint32_t>(GetRValue(blank)) << 16 |
                                  static_cast<std::uint32_t>(GetGValue(blank)) << 8 |
                                  static_cast<std::uint32_t>(GetBValue(blank));
    const auto scan = static_cast<std::size_t>(shown_[0].pixels.scanWidth());
    for (std::size_t row = 0; row < height; ++row) {
        const unsigned char* const red = shown_[0].pixels.indices() + row * scan;
        const unsigned char* const green = shown_[1].pixels.indices() + row * scan;
        const unsigned char* const blue = shown_[2].pixels.indices() + row * scan;
        std::uint32_t* const to = bits.data() + row * width;
        for (std::size_t i = 0; i < width; ++i)
            to[i] = (red[i] & green[i] & blue[i]) == brightness.blank
                        ? nothing
                        : part(red[i]) << 16 | part(green[i]) << 8 | part(blue[i]);
    }
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

}  // namespace pavane

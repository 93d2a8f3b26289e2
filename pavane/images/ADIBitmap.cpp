#include "pavane/images/ADIBitmap.h"

#include "pavane/images/bitmap_header.h"
#include "platform/CDC.h"
#include "tessel/AFile.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace pavane
{

namespace
{

// The greatest side that a picture on a screen or page has use for.
constexpr int greatestSide = 32768;

// What the headers of a file say.
struct FileLayout {
    int width = 0;
    int height = 0;
    int topDown = 0;
    int bitCount = 0;
    int colors = 0;
    std::int64_t gap = 0;  ///< bytes between the colours and the pixels
    std::int64_t scanBytes() const { return (std::int64_t{width} * bitCount + 31) / 32 * 4; }
};

int readLayout(AFile& file, FileLayout& layout)
{
    unsigned char header[bitmapFileSize + bitmapInfoSize];
    if (!file.read(header, sizeof header) || header[0] != 'B' || header[1] != 'M')
        return 0;
    const unsigned char* const info = header + bitmapFileSize;
    const std::int64_t infoBytes = takeInt32(info);
    const std::int64_t height = takeInt32(info + 8);
    layout.width = takeInt32(info + 4);
    layout.topDown = height < 0;
    layout.bitCount = takeUint16(info + 14);
    const int compression = takeInt32(info + 16);
    if (infoBytes < bitmapInfoSize || layout.width < 1 || layout.width > greatestSide ||
        height == 0 || height < -greatestSide || height > greatestSide || compression != 0)
        return 0;
    layout.height = static_cast<int>(layout.topDown ? -height : height);
    if (layout.bitCount <= 8) {
        const int most = 1 << layout.bitCount;
        const int used = takeInt32(info + 32);
        layout.colors = used > 0 && used < most ? used : most;
    }
    const std::int64_t read = static_cast<std::int64_t>(sizeof header) + 4 * layout.colors;
    layout.gap = takeInt32(header + 10) - read;
    const int b = layout.bitCount;
    if ((b != 1 && b != 4 && b != 8 && b != 24 && b != 32) || layout.gap < 0)
        return 0;
    // a longer header stands between the short one and the colours
    return file.seek(infoBytes - bitmapInfoSize, AFile::current) &&
           (layout.gap -= infoBytes - bitmapInfoSize) >= 0;
}

std::uint32_t pixelOf(const unsigned char* scan, int x, int bitCount, const std::uint32_t* colors)
{
    if (bitCount >= 24) {
        const unsigned char* const p = scan + std::ptrdiff_t{x} * (bitCount / 8);
        return static_cast<std::uint32_t>(p[0] | p[1] << 8 | p[2] << 16);
    }
    const int perByte = 8 / bitCount;
    const int shift = 8 - bitCount * (x % perByte + 1);
    return colors[scan[x / perByte] >> shift & ((1 << bitCount) - 1)];
}

}  // namespace

ADIBitmap& ADIBitmap::operator=(const ADIBitmap& other)
{
    if (this != &other && allocate(other.width_, other.height_))
        std::memcpy(pixels_.get(), other.pixels_.get(),
                    sizeof(std::uint32_t) * static_cast<std::size_t>(width_) *
                        static_cast<std::size_t>(height_));
    return *this;
}

void ADIBitmap::clear()
{
    pixels_.reset();
    width_ = height_ = 0;
}

int ADIBitmap::allocate(int width, int height)
{
    clear();
    if (width < 1 || height < 1)
        return 0;
    pixels_.reset(
        new (std::nothrow)
            std::uint32_t[static_cast<std::size_t>(width) * static_cast<std::size_t>(height)]);
    if (!pixels_)
        return 0;
    width_ = width;
    height_ = height;
    return 1;
}

int ADIBitmap::Load(AFile& file)
{
    clear();
    FileLayout layout;
    unsigned char table[256 * 4] = {};
    if (!readLayout(file, layout) || !file.read(table, 4 * layout.colors) ||
        !file.seek(layout.gap, AFile::current) || layout.scanBytes() * layout.height > file.left())
        return 0;
    std::uint32_t colors[256];
    for (int i = 0; i < 256; ++i)
        colors[i] = static_cast<std::uint32_t>(takeInt32(table + 4 * i)) & 0xFFFFFF;
    const std::unique_ptr<unsigned char[]> scan(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(layout.scanBytes())]);
    if (!scan || !allocate(layout.width, layout.height))
        return 0;
    for (int row = 0; row < height_; ++row) {
        if (!file.read(scan.get(), layout.scanBytes())) {
            clear();
            return 0;
        }
        std::uint32_t* const to =
            pixels_.get() + std::ptrdiff_t{layout.topDown ? height_ - 1 - row : row} * width_;
        for (int x = 0; x < width_; ++x)
            to[x] = pixelOf(scan.get(), x, layout.bitCount, colors);
    }
    return 1;
}

int ADIBitmap::Draw(CDC& dc, const CRect& rect, int rop) const
{
    if (!pixels_ || rect.IsRectEmpty())
        return 0;
    unsigned char header[bitmapInfoSize];
    writeBitmapInfo(header, width_, height_, 32, 0);
    putLittleEndian(header + 32, 0, 4);  // no colour table
    return dc.StretchDIBits(rect.left, rect.top, rect.Width(), rect.Height(), 0, 0, width_, height_,
                            pixels_.get(), header, DIB_RGB_COLORS,
                            rop ? static_cast<unsigned>(rop) : SRCCOPY) != 0;
}

}  // namespace pavane

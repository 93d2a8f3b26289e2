#include "pavane/containers/item_io.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/bitmap_header.h"
#include "platform/CDC.h"
#include "tessel/AFile.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

// Remembers which palette entry a colour got, since pictures have few colours side by side.
class NearestEntry
{
public:
    NearestEntry(const PALETTEENTRY* entries, int count) : entries_(entries), count_(count) {}
    unsigned char operator()(COLORREF color)
    {
        Slot& slot = slots_[(color * 2654435761u) >> 22];
        if (slot.color != color)
            slot = {color, search(color)};
        return slot.entry;
    }

private:
    unsigned char search(COLORREF color) const
    {
        int best = 0;
        int least = std::numeric_limits<int>::max();
        for (int i = 0; i < count_; ++i) {
            const int red = entries_[i].peRed - GetRValue(color);
            const int green = entries_[i].peGreen - GetGValue(color);
            const int blue = entries_[i].peBlue - GetBValue(color);
            const int distance = red * red + green * green + blue * blue;
            if (distance < least) {
                least = distance;
                best = i;
            }
        }
        return static_cast<unsigned char>(best);
    }
    struct Slot {
        COLORREF color = CLR_INVALID;
        unsigned char entry = 0;
    };
    const PALETTEENTRY* entries_;
    int count_;
    Slot slots_[1024];
};

// The palette selected in a context, which stays selected.
HPALETTE selectedPalette(CDC& dc)
{
    const HPALETTE palette = dc.SelectPalette(nullptr, 0);
    (void)dc.SelectPalette(palette, 0);
    return palette;
}

}  // namespace

unsigned char* ADIBase::CreateHeader(int bitCount) const
{
    unsigned char* const block = new (std::nothrow) unsigned char[indexedHeaderSize];
    if (!block)
        return nullptr;
    writeBitmapInfo(block, width_, height_, bitCount, 0);
    for (int i = 0; i < 256; ++i)
        putLittleEndian(block + bitmapInfoSize + 2 * i, i, 2);
    return block;
}

void ADIBase::Draw(CDC& dc) const { DrawPalIndex(dc, nullptr, 0); }

void ADIBase::DrawPalIndex(CDC& dc, const short* indices, int n) const
{
    const std::unique_ptr<unsigned char[]> header(bits_ ? CreateHeader(8) : nullptr);
    if (!header)
        return;
    for (int i = 0; i < n && i < 256; ++i)
        putLittleEndian(header.get() + bitmapInfoSize + 2 * i, indices[i], 2);
    (void)dc.StretchDIBits(rect_.left, rect_.top, width_, height_, 0, 0, width_, height_, bits_,
                           header.get(), DIB_PAL_COLORS, SRCCOPY);
}

int ADIBase::LoadFromDC(CDC& dc, HPALETTE palette)
{
    PALETTEENTRY entries[256];
    const int count = palette ? GetPaletteEntries(palette, 0, 256, entries) : 0;
    if (!bits_ || count < 1)
        return 0;
    NearestEntry nearest(entries, count);
    for (int row = 0; row < height_; ++row)
        for (int column = 0; column < width_; ++column) {
            const int x = rect_.left + column;
            const int y = rect_.top + row;
            if (const COLORREF color = dc.GetPixel(x, y); color != CLR_INVALID)
                (*this)(x, y) = nearest(color);
        }
    return 1;
}

int ADIBase::SaveAsBitmap(CDC& dc, HPALETTE palette, AFile& file) const
{
    const HPALETTE used = palette ? palette : selectedPalette(dc);
    PALETTEENTRY entries[256];
    const std::int64_t bytes = std::int64_t{height_} * scanWidth_;
    if (!bits_ || !used || GetPaletteEntries(used, 0, 256, entries) < 1 ||
        bytes > std::numeric_limits<std::int32_t>::max() - fullHeaderSize)
        return 0;
    unsigned char header[fullHeaderSize] = {};
    writeBitmapFileHeader(header, fullHeaderSize + bytes, fullHeaderSize);
    writeBitmapInfo(header + bitmapFileSize, width_, height_, 8, static_cast<int>(bytes));
    for (int i = 0; i < 256; ++i) {
        unsigned char* const color = header + bitmapFileSize + bitmapInfoSize + 4 * i;
        color[0] = entries[i].peBlue;
        color[1] = entries[i].peGreen;
        color[2] = entries[i].peRed;
    }
    return file.write(header, fullHeaderSize) && file.write(bits_, bytes);
}

}  // namespace pavane

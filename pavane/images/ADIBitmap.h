#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>
#include <memory>

namespace pavane
{

class AFile;
class CDC;

/// A picture with colours of its own, read from a bitmap (BMP) file: 1, 4, 8, 24 or 32 bits per
/// pixel, not compressed, either row first. Owns its pixels. Files that are anything else, or
/// shorter than they promise, give an empty picture.
class PAVANE_API ADIBitmap
{
public:
    ADIBitmap() = default;
    explicit ADIBitmap(AFile& file) { (void)Load(file); }
    ADIBitmap(const ADIBitmap& other) { *this = other; }
    ADIBitmap& operator=(const ADIBitmap& other);

    /// Reads a bitmap file from the file's position on. Non-zero on success, else 0 and empty.
    int Load(AFile& file);

    int Width() const { return width_; }
    int Height() const { return height_; }
    /// Pixel (x, y), which must be inside, 0x00RRGGBB; row 0 is the top one.
    std::uint32_t pixel(int x, int y) const
    {
        return pixels_.get()[std::ptrdiff_t{height_ - 1 - y} * width_ + x];
    }
    /// Paints the picture stretched over `rect` (right and bottom excluded); `rop` as for
    /// StretchDIBits, 0 copies. Returns non-zero when something was painted.
    int Draw(CDC& dc, const CRect& rect, int rop) const;

private:
    int allocate(int width, int height);
    void clear();

    int width_ = 0;
    int height_ = 0;
    /// 32 bits a pixel, bottom row first.
    std::unique_ptr<std::uint32_t[]> pixels_;
};

}  // namespace pavane

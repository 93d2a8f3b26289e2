#pragma once

#include "platform/api.h"
#include "platform/gdi_objects.h"
#include "platform/geometry.h"
#include "platform/message.h"

#include <cstddef>
#include <cstdint>

namespace pavane
{

class AFile;
class CDC;

/// Eight-bit picture that covers a device rectangle, y downwards.
/// The rectangle includes all its edges: CRect(0, 0, 9, 4) is 10 x 5 pixels. The buffer, owned by
/// the picture, holds one scan line per pixel row, bottom row first; a scan line is the width
/// rounded up to 4 bytes, and each byte is a palette index. A picture whose rectangle is empty or
/// inverted, or for which there is no memory, has no buffer: drawing into it does nothing. Any
/// coordinates may be drawn to; what lies outside is cut off before it costs time.
class PAVANE_API ADIBase
{
public:
    /// No rectangle, no buffer.
    ADIBase() = default;
    /// Covers `rect`; the pixels are not initialised.
    explicit ADIBase(const CRect& rect);
    /// Reads a picture written by Store. A short read shows a message box; a rectangle whose pixels
    /// the file does not hold leaves the picture without a buffer.
    explicit ADIBase(AFile& file, const MessageReceiver& messages = MessageReceiver());
    ADIBase(const ADIBase& other);
    ADIBase& operator=(const ADIBase& other);
    /// Fills every pixel with a palette index.
    ADIBase& operator=(short index);
    ~ADIBase();

    /// Writes left, top, right, bottom (int32, little-endian), then the scan lines as they lie in
    /// memory. A picture without a buffer is written with an inverted rectangle. Returns non-zero
    /// on success, 0 at the first failed write.
    int Store(AFile& file) const;

    CRect rect() const { return rect_; }
    int width() const { return width_; }
    int height() const { return height_; }
    int scanWidth() const { return scanWidth_; }
    /// Bytes of a scan line of `w` pixels.
    static constexpr int ScanLineWidth(int w) { return (w + 3) & ~3; }
    /// The buffer of height * scanWidth bytes, null when there is none.
    unsigned char* lpArray() { return bits_; }
    const unsigned char* lpArray() const { return bits_; }
    /// Where the pixel at device (x, y), which must be inside, lies in the buffer.
    std::ptrdiff_t index(int x, int y) const
    {
        return std::ptrdiff_t{rect_.bottom - y} * scanWidth_ + (x - rect_.left);
    }
    unsigned char& operator()(int x, int y) { return bits_[index(x, y)]; }
    unsigned char operator()(int x, int y) const { return bits_[index(x, y)]; }

    /// 1 when the pixel (x, y) exists, else 0.
    int XYInDIB(int x, int y) const
    {
        return bits_ && x >= rect_.left && x <= rect_.right && y >= rect_.top && y <= rect_.bottom;
    }
    /// Palette index at device (x, y), 0..255; -1 outside.
    short GetPixel(int x, int y) const
    {
        return XYInDIB(x, y) ? static_cast<short>((*this)(x, y)) : short{-1};
    }
    /// Nothing happens outside.
    void SetPixel(int x, int y, short index)
    {
        if (XYInDIB(x, y))
            (*this)(x, y) = static_cast<unsigned char>(index);
    }

    /// Palette index that lines and outlines are drawn with; 0 at first.
    short GetColor() const { return color_; }
    void SetColor(short index) { color_ = index; }
    /// In pixels; 1 at first, below 1 counts as 1.
    short GetLineWidth() const { return lineWidth_; }
    void SetLineWidth(short width) { lineWidth_ = width; }
    /// Bits of a line's dashes, -1 (solid) at first; see Line.
    int GetLinePattern() const { return linePattern_; }
    void SetLinePattern(int pattern) { linePattern_ = pattern; }

    /// A line in color, lineWidth and linePattern.
    /// One pixel wide: from the start up to, but not including, the end, one pixel for each step
    /// along the longer direction, the other coordinate rounded to nearest and a tie to the
    /// smaller, as in a device context; equal ends draw nothing. Step i from the start is drawn
    /// when bit i % 32 of the pattern is set. Wider: the band of pixels about the line with round
    /// ends about both end points. With a pattern each bit covers lineWidth steps and the dashes
    /// have straight ends.
    void Line(int x1, int y1, int x2, int y2);
    /// Outline of four lines; all edges of `rect` belong to it. An inverted one draws nothing.
    void Rectangle(const CRect& rect);
    /// Fills a rectangle, its edges included. An inverted one draws nothing.
    void FillRect(const CRect& rect, short index);
    /// Fills the closed figure of n points, not its outline, by the even-odd rule: on row y between
    /// crossings xa and xb, of edges with ymin <= y < ymax, the pixels ceil(xa) <= x < ceil(xb).
    void Polygon(const CPoint* points, int n, short index);
    /// Copies n palette indices to row y from column `left` on; what lies outside is cut off.
    void CopyLine(int y, int left, const unsigned char* indices, int n);

    /// Bitmap-info block for painting: a header of 40 bytes (bottom-up, one plane, not compressed,
    /// 256 colours) and a colour table of 256 16-bit palette entries 0..255; 552 bytes, made by
    /// new[], which the caller frees by delete[]. Null when there is no memory.
    unsigned char* CreateHeader(int bitCount) const;
    /// Paints the picture at its own place and size in the palette selected in `dc`.
    void Draw(CDC& dc) const;
    /// Paints it with pixel value i shown in palette entry indices[i]; values from n on keep
    /// theirs.
    void DrawPalIndex(CDC& dc, const short* indices, int n) const;
    /// Reads the pixels under the rectangle from `dc`, each as the nearest colour of the palette.
    /// What the context cannot tell stays as it was. Non-zero on success, 0 without palette or
    /// buffer.
    int LoadFromDC(CDC& dc, HPALETTE palette);
    /// Writes a bitmap file of 8 bits per pixel in the colours of `palette`, or, when it is null,
    /// of the one selected in `dc`. Non-zero on success, 0 without buffer or palette or at a failed
    /// write.
    int SaveAsBitmap(CDC& dc, HPALETTE palette, AFile& file) const;

private:
    void cover(const CRect& rect);
    void allocate(bool cleared);
    void wideLine(CPoint from, CPoint to);
    void wideBody(CPoint from, CPoint to);
    void disc(CPoint centre);

    CRect rect_;
    std::int16_t color_ = 0;
    std::int16_t lineWidth_ = 1;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t scanWidth_ = 0;
    std::int32_t linePattern_ = -1;
    unsigned char* bits_ = nullptr;
};

}  // namespace pavane

#pragma once

#include "platform/CDC.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace pavane
{

class StopFlag;

/// What lies behind what is drawn.
enum class PictureGround { white, transparent };

/// A picture in memory, 32 bits per pixel 0x00RRGGBB, top row first, white at birth. Owns its
/// pixels; contexts made by `dc` draw into them while the picture lives. A size below 1, or one
/// beyond 32768 a side, or no memory, leaves an empty picture of 0 x 0.
///
/// On a transparent ground the top byte of a pixel is how much of the ground shows, 255 at birth
/// and 0 where something opaque was drawn, and the colours are multiplied by the rest (black at
/// birth). Figures paint no ground into it.
///
/// Before InitPlatform there are no fonts: text and soft edges are left out then, and the first
/// text that is lost is told on the standard error stream, once.
class PAVANE_API CPicture
{
public:
    CPicture() = default;
    CPicture(int width, int height, PictureGround ground = PictureGround::white);
    /// The same, empty when `stop` goes up first: the pixels of a poster take a while to be had.
    CPicture(int width, int height, PictureGround ground, const StopFlag* stop);
    CPicture(const CPicture&) = delete;
    CPicture& operator=(const CPicture&) = delete;
    /// What was moved from is empty.
    CPicture(CPicture&& other) noexcept { *this = std::move(other); }
    CPicture& operator=(CPicture&& other) noexcept;

    int width() const { return width_; }
    int height() const { return height_; }
    PictureGround ground() const { return ground_; }
    std::uint32_t* row(int y) { return pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_; }
    const std::uint32_t* row(int y) const
    {
        return pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
    }
    /// A new context that draws into this picture; several may draw at once.
    std::unique_ptr<CDC> dc();
    /// Non-zero when pictures can have text and soft edges; else `why`, if given, says what is
    /// missing in one line.
    static int CanDrawText(CString* why = nullptr);

private:
    int width_ = 0;
    int height_ = 0;
    PictureGround ground_ = PictureGround::white;
    std::vector<std::uint32_t> pixels_;
};

/// Writes the picture as PNG, whole or not at all. Non-zero on success, else 0 and `error` says
/// what went wrong in one line. `dpi` goes into the file. <platform/picture_bytes.h> has the bytes.
PAVANE_API int SavePNG(const CPicture& picture, const CString& file, CString& error, int dpi = 96);

/// A page that collects vectors until `Close` writes the file, whole or not at all.
class PAVANE_API CPageFile
{
public:
    enum class Format { pdf, svg };
    /// `width` and `height` in pixels of 96 per inch. The context of the page counts `scale` units
    /// for each of them, so that whole numbers place lines finely enough. Figures paint no ground
    /// on a transparent page.
    CPageFile(Format format, int width, int height, const CString& title, int scale = 12,
              PictureGround ground = PictureGround::white);
    CPageFile(const CPageFile&) = delete;
    CPageFile& operator=(const CPageFile&) = delete;
    ~CPageFile();
    /// The page's context, of width * scale by height * scale units. Owned by the page.
    CDC& dc();
    /// Ends the page and begins another of the same size, which the same context draws on. 0 for
    /// SVG, which has one.
    int NewPage();
    /// `goesOn` is asked every 50 ms or more often while something is drawn; after the first 0
    /// nothing more is, and the file cannot be written. The same holds for a flag of the context
    /// (CDC::setStop).
    void AskBefore(std::function<int()> goesOn);
    /// Writes the file; non-zero on success, else 0, `error` says why and nothing is left behind.
    int Close(const CString& file, CString& error);
    /// The bytes of that file instead of it.
    int CloseBytes(std::vector<unsigned char>& bytes, CString& error);

private:
    struct Data;
    std::unique_ptr<Data> data_;
};

}  // namespace pavane

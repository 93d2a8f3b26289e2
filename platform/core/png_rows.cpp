#include "platform/core/png_rows.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

enum : unsigned char { asItIs = 0, lessAbove = 2 };  // types of filters

/// 0xTTRRGGBB, colours times what is not ground, as 0xAARRGGBB with the colours themselves.
std::uint32_t straight(std::uint32_t pixel)
{
    const std::uint32_t alpha = 255 - (pixel >> 24);
    if (alpha == 255)
        return pixel | 0xFF000000u;
    if (alpha == 0)
        return 0;
    const auto channel = [&](int shift) {
        const std::uint32_t v = ((pixel >> shift & 0xFF) * 255 + alpha / 2) / alpha;
        return std::min<std::uint32_t>(v, 255) << shift;
    };
    return alpha << 24 | channel(16) | channel(8) | channel(0);
}

/// Each byte of `a` less that of `b`.
std::uint32_t byteDifference(std::uint32_t a, std::uint32_t b)
{
    constexpr std::uint32_t tops = 0x80808080u;
    return ((a | tops) - (b & ~tops)) ^ ((a ^ ~b) & tops);
}

}  // namespace

PngRows::PngRows(const ImageView& image, bool isTransparent)
    : row_(image.bits), width_(static_cast<std::size_t>(image.width)),
      channels_(isTransparent ? 4 : 3), differences_(width_)
{
    if (isTransparent)
        for (std::vector<std::uint32_t>& row : made_)
            row.resize(width_);
}

const std::uint32_t* PngRows::pixelsOf(const std::uint32_t* row,
                                       std::vector<std::uint32_t>& made) const
{
    if (channels_ == 3)
        return row;
    std::transform(row, row + width_, made.begin(), straight);
    return made.data();
}

void PngRows::next(unsigned char* to)
{
    std::swap(made_[0], made_[1]);
    const std::uint32_t* pixels = pixelsOf(std::exchange(row_, row_ + width_), made_[0]);
    const std::uint32_t colors = channels_ == 3 ? 0xFFFFFFu : ~0u;
    std::size_t repeated = 0;
    for (std::size_t x = 0; above_ && x < width_; ++x)
        repeated += ((pixels[x] ^ above_[x]) & colors) == 0;
    const bool isRepeated = above_ && repeated >= width_ - width_ / 4;
    if (isRepeated)
        for (std::size_t x = 0; x < width_; ++x)
            differences_[x] = byteDifference(pixels[x], above_[x]);
    above_ = pixels;
    const std::uint32_t* from = isRepeated ? differences_.data() : pixels;
    *to++ = isRepeated ? lessAbove : asItIs;
    for (std::size_t x = 0; x < width_; ++x, to += channels_) {
        to[0] = static_cast<unsigned char>(from[x] >> 16);
        to[1] = static_cast<unsigned char>(from[x] >> 8);
        to[2] = static_cast<unsigned char>(from[x]);
        if (channels_ == 4)
            to[3] = static_cast<unsigned char>(from[x] >> 24);
    }
}

}  // namespace pavane

#include "pavane/windows/controls/color_picture.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::uint32_t frameColor = 0x808080;  // apart from white, black and all that is between

std::uint32_t pixelOf(COLORREF color)
{
    return static_cast<std::uint32_t>(GetRValue(color)) << 16 |
           static_cast<std::uint32_t>(GetGValue(color)) << 8 |
           static_cast<std::uint32_t>(GetBValue(color));
}

}  // namespace

CPicture colorPicture(const std::vector<COLORREF>& colors, int ratio)
{
    if (colors.empty() || ratio < 1 || ratio > 8)
        return {};
    const CSize size = colors.size() == 1 ? swatchSize : stripSize;
    const int width = size.cx * ratio;
    const int height = size.cy * ratio;
    CPicture picture(width, height);
    if (picture.width() == 0)
        return picture;
    const int inside = width - 2 * ratio;
    for (int x = 0; x < width; ++x) {
        const std::size_t at = static_cast<std::size_t>(std::clamp(x - ratio, 0, inside - 1)) *
                               colors.size() / static_cast<std::size_t>(inside);
        const bool isFrame = x < ratio || x >= width - ratio;
        for (int y = 0; y < height; ++y)
            picture.row(y)[x] =
                isFrame || y < ratio || y >= height - ratio ? frameColor : pixelOf(colors[at]);
    }
    return picture;
}

}  // namespace pavane

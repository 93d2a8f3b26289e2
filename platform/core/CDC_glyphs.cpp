#include "platform/core/CDC_state.h"
#include "platform/core/utf8.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

namespace
{

/// `color` over `old`, `cover` of 255.
std::uint32_t covered(std::uint32_t old, std::uint32_t color, std::uint32_t cover)
{
    // two channels at a time; the sum that follows divides by 255
    constexpr std::uint32_t pair = 0xFF00FF;
    const auto mixed = [&](std::uint32_t under, std::uint32_t over) {
        const std::uint32_t sum = over * cover + under * (255 - cover);
        return (sum + (sum >> 8 & pair) + 0x800080) >> 8 & pair;
    };
    return mixed(old & pair, color & pair) | (mixed(old >> 8 & 0xFF, color >> 8 & 0xFF) & 0xFF)
                                                 << 8;
}

void paintGlyph(const PixelSurface& surface, const PlacedGlyph& glyph, const CRect& pixels,
                std::uint32_t color)
{
    const GlyphPicture& picture = *glyph.picture;
    const int left = std::max(glyph.x, pixels.left);
    const int right = std::min(glyph.x + picture.width, pixels.right);
    const int top = std::max(glyph.y, pixels.top);
    const int bottom = std::min(glyph.y + picture.height, pixels.bottom);
    for (int y = top; y < bottom; ++y) {
        const unsigned char* const cover =
            picture.cover + std::ptrdiff_t{y - glyph.y} * picture.width - glyph.x;
        std::uint32_t* const row = surface.row(y);
        for (int x = left; x < right; ++x) {
            if (cover[x] == 255)
                row[x] = color;
            else if (cover[x] != 0)
                row[x] = covered(row[x], color, cover[x]);
        }
    }
}

/// A pixel as the unit that it lies in.
int unitBelow(int pixel, int ratio)
{
    return pixel >= 0 ? pixel / ratio : -((-pixel + ratio - 1) / ratio);
}

}  // namespace

bool CDC::State::drawGlyphs(CPoint at, std::string_view text, const TextFace& known)
{
    // far outside there is nothing to see, and pixels would overflow
    constexpr int farthest = 1 << 20;
    const PixelSurface to = surface();
    if (backend->page() || now.font.lfEscapement != 0 || !to.bits || std::abs(at.x) > farthest ||
        std::abs(at.y) > farthest)
        return false;
    const PixelPainter visible = painter();
    const int k = to.ratio;
    const int begin = visible.bounds().left * k;
    const int end = visible.bounds().right * k;
    CRect box;
    glyphs.clear();
    for (int x = at.x * k; !text.empty() && x < end;) {
        const GlyphPicture* const picture = known.glyph(nextCharacter(text), k);
        if (!picture)
            return false;
        const PlacedGlyph glyph{picture, x + picture->left, at.y * k + picture->top};
        if (picture->width > 0 && glyph.x + picture->width > begin) {
            box.UnionRect(box,
                          {glyph.x, glyph.y, glyph.x + picture->width, glyph.y + picture->height});
            glyphs.push_back(glyph);
        }
        x += picture->advance * k;
    }
    const CRect units(unitBelow(box.left, k), unitBelow(box.top, k),
                      unitBelow(box.right + k - 1, k), unitBelow(box.bottom + k - 1, k));
    const std::uint32_t color = pixel(now.textColor) & 0xFFFFFF;
    visible.clippedRects(units, [&](const CRect& part) {
        to.touch(part);
        const CRect pixels(part.left * k, part.top * k, part.right * k, part.bottom * k);
        for (const PlacedGlyph& glyph : glyphs)
            paintGlyph(to, glyph, pixels, color);
    });
    return true;
}

}  // namespace pavane

#include "platform/core/CDC_state.h"
#include "platform/core/utf8.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

namespace pavane
{

namespace
{

using Bytes = std::uint8_t __attribute__((vector_size(16)));
using Words = std::uint16_t __attribute__((vector_size(32)));

template <class V>
[[gnu::always_inline]] inline V loaded(const void* from)
{
    V v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

/// `color` over the pixels at `pixels`, each channel by its cover of 255.
[[gnu::always_inline]] inline void mixFour(std::uint32_t* pixels, const std::uint32_t* cover,
                                           const Words& color)
{
    const auto share = __builtin_convertvector(loaded<Bytes>(cover), Words);
    const auto old = __builtin_convertvector(loaded<Bytes>(pixels), Words);
    const Words sum = old * (255 - share) + color * share;
    const Words mixed = (sum + (sum >> 8) + 128) >> 8;  // divides by 255
    const auto bytes = __builtin_convertvector(mixed, Bytes);
    std::memcpy(pixels, &bytes, sizeof bytes);
}

/// A glyph of which nothing is cut; the pixels behind its rows get what they have.
void paintWhole(const PixelSurface& surface, const PlacedGlyph& glyph, const Words& color)
{
    const GlyphPicture& picture = *glyph.picture;
    const std::uint32_t* cover = picture.cover;
    std::uint32_t* row = surface.row(glyph.y) + glyph.x;
    for (int y = 0; y < picture.height; ++y, row += surface.stride)
        for (int x = 0; x < picture.width; x += GlyphPicture::together)
            mixFour(row + x, std::exchange(cover, cover + GlyphPicture::together), color);
}

/// The part of a glyph that lies in `pixels`.
void paintPart(const PixelSurface& surface, const PlacedGlyph& glyph, const CRect& pixels,
               const Words& color)
{
    const GlyphPicture& picture = *glyph.picture;
    CRect part(glyph.x, glyph.y, glyph.x + picture.width, glyph.y + picture.height);
    if (!part.IntersectRect(part, pixels))
        return;
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            std::uint32_t four[GlyphPicture::together] = {surface.row(y)[x]};
            const std::uint32_t cover[GlyphPicture::together] = {
                picture.cover[(y - glyph.y) * picture.stride() + x - glyph.x]};
            mixFour(four, cover, color);
            surface.row(y)[x] = four[0];
        }
    }
}

void paintGlyph(const PixelSurface& surface, const PlacedGlyph& glyph, const CRect& pixels,
                const Words& color)
{
    const GlyphPicture& picture = *glyph.picture;
    const bool isWhole = glyph.x >= pixels.left && glyph.x + picture.width <= pixels.right &&
                         glyph.y >= pixels.top && glyph.y + picture.height <= pixels.bottom &&
                         glyph.x + picture.stride() <= surface.width * surface.ratio;
    isWhole ? paintWhole(surface, glyph, color) : paintPart(surface, glyph, pixels, color);
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
    const std::uint32_t one = pixel(now.textColor) & 0xFFFFFF;
    const std::uint32_t four[GlyphPicture::together] = {one, one, one, one};
    const auto color = __builtin_convertvector(loaded<Bytes>(four), Words);
    visible.clippedRects(units, [&](const CRect& part) {
        to.touch(part);
        const CRect pixels(part.left * k, part.top * k, part.right * k, part.bottom * k);
        for (const PlacedGlyph& glyph : glyphs)
            paintGlyph(to, glyph, pixels, color);
    });
    return true;
}

}  // namespace pavane

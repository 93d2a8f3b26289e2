#include "platform/qt/glyph_pictures.h"

#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <QImage>
#include <QPainter>
#include <utility>

namespace pavane
{

bool standsAlone(char32_t c)
{
    constexpr std::pair<char32_t, char32_t> simple[] = {
        {0x20, 0x7E},     {0xA0, 0xAC},     {0xAE, 0x2FF},    {0x370, 0x377},   {0x37A, 0x37F},
        {0x384, 0x482},   {0x48A, 0x52F},   {0x2010, 0x2027}, {0x2030, 0x205E}, {0x2070, 0x209C},
        {0x20A0, 0x20BF}, {0x2100, 0x218B}, {0x2190, 0x2311}, {0x2500, 0x25FC}, {0xFFFD, 0xFFFD}};
    return std::any_of(std::begin(simple), std::end(simple),
                       [c](const auto& range) { return c >= range.first && c <= range.second; });
}

GlyphPictures::GlyphPictures(const QFont& font, int ascent, int height, int ratio)
    : font_(font), ascent_(ascent), height_(height), ratio_(ratio)
{
}

const GlyphPictures::Stored& GlyphPictures::make(char32_t character, double advance)
{
    Stored& made = stored_.emplace_back();
    const int margin = height_;  // letters may leave their cells
    const int width = (static_cast<int>(std::ceil(advance)) + 2 * margin) * ratio_;
    const int height = 3 * height_ * ratio_;
    QImage canvas(width, height, QImage::Format_RGB32);
    if (canvas.isNull() || advance != std::floor(advance))
        return made;
    canvas.setDevicePixelRatio(ratio_);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.setFont(font_);
    painter.setPen(Qt::black);
    painter.drawText(QPointF(margin, margin + ascent_), QString::fromUcs4(&character, 1));
    painter.end();

    CRect box;
    for (int y = 0; y < height; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(canvas.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            if (qRed(row[x]) != qGreen(row[x]) || qRed(row[x]) != qBlue(row[x]))
                return made;  // in colours
            if (qRed(row[x]) != 255)
                box.UnionRect(box, {x, y, x + 1, y + 1});
        }
    }
    made.picture = {box.left - margin * ratio_,
                    box.top - margin * ratio_,
                    box.Width(),
                    box.Height(),
                    static_cast<int>(advance),
                    nullptr};
    for (int y = box.top; y < box.bottom; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(canvas.constScanLine(y));
        for (int x = box.left; x < box.left + made.picture.stride(); ++x) {
            const auto cover = x < box.right ? 255u - static_cast<unsigned>(qRed(row[x])) : 0;
            made.cover.push_back(cover * 0x01010101u);
        }
    }
    made.picture.cover = made.cover.data();
    made.isUsable = true;
    return made;
}

const GlyphPicture* GlyphPictures::of(char32_t character, double advance)
{
    const Stored* known = nullptr;
    if (character < 128) {
        known = ascii_[character].load(std::memory_order_acquire);
    } else {
        const std::shared_lock reading(lock_);
        const auto found = others_.find(character);
        known = found == others_.end() ? nullptr : found->second;
    }
    if (!known) {
        const std::unique_lock making(lock_);
        known = character < 128 ? ascii_[character].load() : others_[character];
        if (!known) {
            known = &make(character, advance);
            if (character < 128)
                ascii_[character].store(known, std::memory_order_release);
            else
                others_[character] = known;
        }
    }
    return known->isUsable ? &known->picture : nullptr;
}

}  // namespace pavane

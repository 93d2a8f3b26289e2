#include "platform/qt/glyphs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <string>
#include <vector>

namespace pavane
{

namespace
{

constexpr int smallSize = 16;
constexpr int largeSize = 20;

/// A square of dots, row by row; a blank is nothing.
struct Dots {
    int size = 0;
    std::string cells;
    char at(int x, int y) const
    {
        const bool inside = x >= 0 && y >= 0 && x < size && y < size;
        return inside ? cells[static_cast<std::size_t>(y * size + x)] : ' ';
    }
};

Dots dotsOf(const char* const* rows, int rowCount)
{
    Dots dots{glyphSize(rowCount), {}};
    const int top = std::max(0, (dots.size - rowCount) / 2);
    std::size_t widest = 0;
    for (int y = 0; y < rowCount; ++y)
        widest = std::max(widest, std::strlen(rows[y]));
    const int left = std::max(0, (dots.size - static_cast<int>(widest)) / 2);
    dots.cells.assign(static_cast<std::size_t>(dots.size * dots.size), ' ');
    for (int y = 0; y < std::min(rowCount, dots.size); ++y)
        for (int x = 0; x + left < dots.size && rows[y][x]; ++x)
            dots.cells[static_cast<std::size_t>((y + top) * dots.size + x + left)] = rows[y][x];
    return dots;
}

/// Twice as many dots, the corners of slanted lines filled: the Scale2x rule of A. Mazzoleni.
Dots doubled(const Dots& dots)
{
    Dots result{2 * dots.size, {}};
    for (int y = 0; y < result.size; ++y) {
        for (int x = 0; x < result.size; ++x) {
            const int cx = x / 2;
            const int cy = y / 2;
            const char side = dots.at(cx + (x % 2 ? 1 : -1), cy);
            const char over = dots.at(cx, cy + (y % 2 ? 1 : -1));
            const char otherSide = dots.at(cx + (x % 2 ? -1 : 1), cy);
            const char otherOver = dots.at(cx, cy + (y % 2 ? -1 : 1));
            const bool cuts = side == over && side != otherOver && over != otherSide;
            result.cells += cuts ? side : dots.at(cx, cy);
        }
    }
    return result;
}

QRgb colorOf(char dot, bool enabled)
{
    switch (dot) {
    case '#':
        return enabled ? qRgb(0x2A, 0x30, 0x38) : qRgb(0xB4, 0xB9, 0xC0);
    case '+':
        return enabled ? qRgb(0x1F, 0x6F, 0xC8) : qRgb(0xC4, 0xCC, 0xD6);
    case '.':
        return enabled ? qRgb(0xB9, 0xC2, 0xCC) : qRgb(0xDE, 0xE1, 0xE5);
    default:
        return qRgba(0, 0, 0, 0);
    }
}

/// One pixel a dot.
QImage painted(const Dots& dots, bool enabled)
{
    QImage image(dots.size, dots.size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, colorOf(dots.at(x, y), enabled));
    return image;
}

/// Draws the dots for the size that is asked for. Pictures are made on the spot: the toolkit's
/// engine would leave each of them in a cache of the program.
class GlyphEngine : public QIconEngine
{
public:
    explicit GlyphEngine(Dots dots) : dots_(std::move(dots)) {}
    QIconEngine* clone() const override { return new GlyphEngine(dots_); }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const bool enabled = mode != QIcon::Disabled;
        const double pixels = rect.width() * painter->device()->devicePixelRatio();
        if (pixels <= dots_.size) {
            painter->drawImage(rect, painted(dots_, enabled));
            return;
        }
        // fine screens get slanted lines without steps
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(rect, painted(doubled(doubled(dots_)), enabled)
                                     .scaledToWidth(static_cast<int>(std::ceil(pixels)),
                                                    Qt::SmoothTransformation));
    }

private:
    Dots dots_;
};

}  // namespace

int glyphSize(int rowCount) { return rowCount > smallSize ? largeSize : smallSize; }

QIcon iconOf(const char* const* rows, int rowCount)
{
    if (!rows || rowCount <= 0)
        return {};
    return QIcon(new GlyphEngine(dotsOf(rows, rowCount)));  // which the icon owns
}

}  // namespace pavane

#include "platform/qt/glyphs.h"

#include "platform/core/dots.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <QIconEngine>
#include <QImage>
#include <QPainter>

namespace pavane
{

namespace
{

constexpr int smallSize = 16;
constexpr int largeSize = 20;

/// The rows in the middle of a square.
Dots squareOf(const char* const* rows, int rowCount)
{
    const int size = glyphSize(rowCount);
    std::size_t widest = 0;
    for (int y = 0; y < rowCount; ++y)
        widest = std::max(widest, std::strlen(rows[y]));
    return dotsOf(rows, rowCount, size, size, std::max(0, (size - static_cast<int>(widest)) / 2),
                  std::max(0, (size - rowCount) / 2));
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
    QImage image(dots.width, dots.height, QImage::Format_ARGB32_Premultiplied);
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
        if (pixels <= dots_.width) {
            painter->drawImage(rect, painted(dots_, enabled));
            return;
        }
        // fine screens get slanted lines without steps
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(rect, painted(enlarged(dots_, 4), enabled)
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
    return QIcon(new GlyphEngine(squareOf(rows, rowCount)));  // which the icon owns
}

}  // namespace pavane

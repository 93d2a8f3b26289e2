#include "platform/qt/line_pictures.h"

#include "platform/image_list.h"
#include "platform/picture.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <QImage>
#include <QPixmap>

namespace pavane
{

namespace
{

constexpr int greatestRatio = 3;

void add(QIcon& icon, const QImage& image, int ratio, QIcon::Mode mode)
{
    QPixmap pixels = QPixmap::fromImage(image);
    pixels.setDevicePixelRatio(ratio);
    icon.addPixmap(pixels, mode);
}

/// Inks that would be lost on the ground of a chosen line become the ink of its text.
QImage onChosenLine(const QImage& image)
{
    constexpr double seen = 1.8;
    const COLORREF ground = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF ink = GetSysColor(COLOR_HIGHLIGHTTEXT);
    QImage made = image;
    for (int y = 0; y < made.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(made.scanLine(y));
        for (int x = 0; x < made.width(); ++x) {
            const COLORREF own = RGB(qRed(row[x]), qGreen(row[x]), qBlue(row[x]));
            if (qAlpha(row[x]) != 0 && ContrastRatio(own, ground) < seen)
                row[x] = qRgb(GetRValue(ink), GetGValue(ink), GetBValue(ink));
        }
    }
    return made;
}

/// Pixels of an image of a list: what differs between a drawing on white and one on black is
/// nothing.
QImage imageAt(const CImageList& images, int image, int ratio)
{
    const CSize size = images.GetImageSize();
    CBitmap drawn[2];
    for (int i = 0; i < 2; ++i) {
        if (!drawn[i].CreateBitmap(size.cx, size.cy, ratio))
            return {};
        CMemoryDC dc(drawn[i]);
        dc.FillSolidRect({0, 0, size.cx, size.cy}, i == 0 ? RGB(255, 255, 255) : RGB(0, 0, 0));
        if (!images.Draw(dc, image, {0, 0}))
            return {};
    }
    QImage made(size.cx * ratio, size.cy * ratio, QImage::Format_ARGB32);
    const std::uint32_t* onWhite = drawn[0].bits();
    const std::uint32_t* onBlack = drawn[1].bits();
    for (int y = 0; y < made.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(made.scanLine(y));
        for (int x = 0; x < made.width(); ++x, ++onWhite, ++onBlack)
            row[x] = *onWhite == *onBlack ? 0xFF000000 | (*onBlack & 0xFFFFFF) : 0;
    }
    return made;
}

}  // namespace

QIcon lineIcon(const CPicture& picture, int ratio)
{
    QIcon icon;
    if (picture.width() > 0 && ratio > 0) {
        QImage image(picture.width(), picture.height(), QImage::Format_RGB32);
        for (int y = 0; y < picture.height(); ++y) {
            auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
            // styles take the fourth byte for how much is covered
            std::transform(picture.row(y), picture.row(y) + picture.width(), row,
                           [](std::uint32_t pixel) { return pixel | 0xFF000000; });
        }
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Active, QIcon::Selected})
            add(icon, image, ratio, mode);
    }
    return icon;
}

QIcon lineIcon(const CImageList& images, int image)
{
    QIcon icon;
    for (int ratio = 1; ratio <= greatestRatio; ++ratio) {
        const QImage pixels = imageAt(images, image, ratio);
        if (pixels.isNull())
            return {};
        add(icon, pixels, ratio, QIcon::Normal);
        add(icon, pixels, ratio, QIcon::Active);
        add(icon, onChosenLine(pixels), ratio, QIcon::Selected);
    }
    return icon;
}

QIcon lineIcon(const CMenu::Line& line)
{
    if (line.picture)
        return lineIcon(*line.picture, line.ratio);
    return line.images ? lineIcon(*line.images, line.image) : QIcon();
}

QSize lineIconSize(const CPicture& picture, int ratio)
{
    const int r = std::max(1, ratio);
    return {(picture.width() + r - 1) / r, (picture.height() + r - 1) / r};
}

QSize lineIconSize(const CMenu::Line& line)
{
    if (line.picture)
        return lineIconSize(*line.picture, line.ratio);
    const CSize size = line.images ? line.images->GetImageSize() : CSize();
    return {size.cx, size.cy};
}

}  // namespace pavane

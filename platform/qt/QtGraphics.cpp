#include "platform/qt/QtGraphics.h"

#include "platform/core/pixel_rounding.h"
#include "platform/qt/PainterDevice.h"

#include <QBuffer>

namespace pavane
{

const TextFace& QtGraphics::face(const LOGFONT& font, bool onPage)
{
    return fonts_.face(font, onPage);
}

std::unique_ptr<VectorDevice> QtGraphics::softDevice(const PixelSurface& surface)
{
    return std::make_unique<PainterDevice>(surface, fonts_);
}

std::unique_ptr<VectorDevice> QtGraphics::pageView(const PixelSurface& surface, const CRect& target,
                                                   CSize size, double scale)
{
    return std::make_unique<PainterDevice>(surface, target, size, scale, fonts_);
}

std::string QtGraphics::pngOf(const ImageView& image, int dpi)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writePNG(image, dpi, buffer) ? buffer.data().toStdString() : std::string();
}

int writePNG(const ImageView& image, int dpi, QIODevice& to)
{
    const QImage view(reinterpret_cast<const uchar*>(image.bits), image.width, image.height,
                      static_cast<qsizetype>(image.width) * 4, QImage::Format_RGB32);
    QImage exported = view.convertToFormat(QImage::Format_RGB888);
    exported.setDotsPerMeterX(nearestInt(dpi / 0.0254));
    exported.setDotsPerMeterY(nearestInt(dpi / 0.0254));
    return exported.save(&to, "PNG");
}

}  // namespace pavane

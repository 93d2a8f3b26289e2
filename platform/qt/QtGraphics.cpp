#include "platform/qt/QtGraphics.h"

#include "platform/qt/PainterDevice.h"

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

}  // namespace pavane

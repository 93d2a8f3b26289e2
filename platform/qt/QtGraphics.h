#pragma once

#include "platform/qt/fonts.h"

namespace pavane
{

/// The toolkit's part of drawing: fonts, and strokes with soft edges.
class QtGraphics : public GraphicsHook
{
public:
    const TextFace& face(const LOGFONT& font, bool onPage) override;
    std::unique_ptr<VectorDevice> softDevice(const PixelSurface& surface) override;
    std::unique_ptr<VectorDevice> pageView(const PixelSurface& surface, const CRect& target,
                                           CSize size, double scale) override;
    FontTable& fonts() { return fonts_; }

private:
    FontTable fonts_;
};

}  // namespace pavane

#pragma once

#include "platform/qt/fonts.h"

class QIODevice;

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
    std::string pngOf(const ImageView& image, int dpi) override;
    FontTable& fonts() { return fonts_; }

private:
    FontTable fonts_;
};

/// Writes the bytes of a PNG file to a device; 0 when it fails.
int writePNG(const ImageView& image, int dpi, QIODevice& to);

}  // namespace pavane

#include "platform/preview_dc.h"

#include "platform/core/DeviceBackend.h"

namespace pavane
{

namespace
{

/// A printer's sheet on a picture.
class PreviewBackend : public DeviceBackend
{
public:
    PreviewBackend(const DeviceBackend& printer, std::unique_ptr<VectorDevice> view)
        : size_(printer.size()), scale_(printer.scale()), hairline_(printer.hairline()),
          view_(std::move(view))
    {
    }
    CSize size() const override { return size_; }
    double scale() const override { return scale_; }
    double hairline() const override { return hairline_; }
    std::size_t pointsAtOnce() const override { return 20000; }
    VectorDevice* page() override { return view_.get(); }

private:
    CSize size_;
    double scale_;
    double hairline_;
    std::unique_ptr<VectorDevice> view_;
};

std::unique_ptr<CDC> previewOn(const PixelSurface& surface, const CDC& printer, const CRect& target)
{
    GraphicsHook* const hook = graphicsHook();
    const DeviceBackend* const sheet = printer.backend();
    if (!hook || !sheet || !surface.bits || sheet->size().cx < 1 || sheet->size().cy < 1)
        return std::make_unique<CDC>();
    return std::make_unique<CDC>(std::make_unique<PreviewBackend>(
        *sheet, hook->pageView(surface, target, sheet->size(), sheet->scale())));
}

}  // namespace

std::unique_ptr<CDC> CreatePreviewDC(CPicture& picture, const CDC& printer, const CRect& target)
{
    PixelSurface surface;
    if (picture.width() > 0)
        surface = {picture.row(0), picture.width(), picture.height(), picture.width()};
    return previewOn(surface, printer, target);
}

std::unique_ptr<CDC> CreatePreviewDC(CBitmap& bitmap, const CDC& printer, const CRect& target)
{
    // a context for the bitmap knows its pixels
    const CMemoryDC memory(bitmap);
    return previewOn(memory.backend()->surface(), printer, target);
}

}  // namespace pavane

#pragma once

#include "platform/core/DeviceBackend.h"

#include <map>
#include <string>

namespace pavane
{

/// Collects what is drawn as the text of an SVG file. Text stays text, with its width stated, so
/// that a viewer with another font keeps the layout; colour maps go in as PNG images.
class SvgDevice : public VectorDevice
{
public:
    /// A drawing of `size` units, `scale` of them to a pixel.
    SvgDevice(CSize size, int scale, std::string_view title);
    /// The whole file. Nothing may be drawn afterwards.
    std::string finished();

    void setClip(const CRgn::Data* clip) override;
    void polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen) override;
    void polygon(const CPointF* points, std::size_t count, bool winding, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void fillRect(const CRect& rect, const FillStyle& brush) override;
    void image(const CRect& target, const ImageView& image) override;
    void text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color) override;

private:
    void begin();  ///< of an element: opens the group of the clip in force
    void points(const CPointF* points, std::size_t count);
    void stroke(const StrokeStyle& pen);
    void fill(const FillStyle& brush);
    std::string patternOf(const FillStyle& brush);

    CSize size_;
    int scale_;
    std::string out_;
    std::string clipPath_;  ///< path data; empty for none
    std::string openPath_;  ///< of the open group
    std::map<std::string, int> clips_;
    std::map<std::string, int> patterns_;
};

}  // namespace pavane

#pragma once

#include "platform/core/clip_geometry.h"
#include "platform/qt/fonts.h"

#include <memory>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace pavane
{

/// A region as Qt has it, cut to `within`.
QRegion qtRegion(const Region& region, const CRect& within);

/// Draws vectors through a painter on a picture: with soft edges, or as a page looks.
class PainterDevice : public VectorDevice
{
public:
    /// On a picture, which has to live longer.
    PainterDevice(const PixelSurface& surface, FontTable& fonts);
    /// A page of `size` units, `scale` of them to a pixel, as it looks in `target` of a picture.
    PainterDevice(const PixelSurface& surface, const CRect& target, CSize size, double scale,
                  FontTable& fonts);

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
    QPen qtPen(const StrokeStyle& pen, double distance) const;
    BoxF reach(double penWidth) const;
    double strokeWidth(double asked) const;
    QRectF onDots(const QRectF& units) const;
    void fillPath(const QPainterPath& path, const FillStyle& brush);
    void strokeCurve(const CPointF* points, std::size_t count, const StrokeStyle& pen);
    void setTopBytes(const QRectF& painted, std::uint32_t kept, std::uint32_t flipped);

    /// Holds while something is painted inside a box.
    class Painting
    {
    public:
        Painting(PainterDevice& device, const QRectF& box);
        Painting(const Painting&) = delete;
        Painting& operator=(const Painting&) = delete;
        ~Painting();

    private:
        PainterDevice& device_;
        QRectF box_;
    };

    FontTable& fonts_;
    CSize size_;
    double scale_ = 1;
    bool isView_ = false;  ///< a page on a picture
    QTransform view_;      ///< to the units of the picture
    PixelSurface surface_;
    Region clip_;  ///< of pictures
    bool isClipped_ = false;
    QImage alias_;  ///< before painter_: the painter has to end first
    QPainter painter_;
};

}  // namespace pavane

#include "platform/qt/PainterDevice.h"

#include "platform/core/pixel_rounding.h"
#include "posix/ForkGate.h"
#include "posix/StopFlag.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// A painter slows down with the square of a curve's points; this many at a time cost least.
constexpr std::size_t pointsAtOnce = 500;
/// From line to line of a hatch, in pixels.
constexpr double hatchSpacing = 8;
/// Strokes go through the middle of a unit.
constexpr double middle = 0.5;
constexpr std::uint32_t topByte = 0xFF000000u;

QColor qtColor(std::uint32_t pixel) { return QColor::fromRgb(pixel | 0xFF000000u); }

QPolygonF qtPoints(const std::vector<CPointF>& points)
{
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(points.size()));
    for (const CPointF& p : points)
        polygon.append({p.x + middle, p.y + middle});
    return polygon;
}

/// A box with a pen of this width along its edges.
QRectF around(const QRectF& box, double penWidth)
{
    return box.adjusted(-penWidth - 1, -penWidth - 1, penWidth + 1, penWidth + 1);
}

QRectF qtRect(const CRect& r)
{
    return {double(r.left), double(r.top), double(r.right) - r.left, double(r.bottom) - r.top};
}

}  // namespace

PainterDevice::PainterDevice(const PixelSurface& surface, FontTable& fonts)
    : fonts_(fonts), size_{surface.width, surface.height}, surface_(surface),
      alias_(reinterpret_cast<uchar*>(surface.bits), surface.width * surface.ratio,
             surface.height * surface.ratio, static_cast<qsizetype>(surface.stride) * 4,
             surface.isTransparent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32)
{
    const ForkGate gate;
    alias_.setDevicePixelRatio(surface.ratio);
    painter_.begin(&alias_);
    painter_.setRenderHint(QPainter::Antialiasing);
}

PainterDevice::PainterDevice(const PixelSurface& surface, const CRect& target, CSize size,
                             double scale, FontTable& fonts)
    : PainterDevice(surface, fonts)
{
    size_ = size;
    scale_ = scale;
    isView_ = true;
    view_.translate(target.left, target.top);
    view_.scale((double(target.right) - target.left) / size.cx,
                (double(target.bottom) - target.top) / size.cy);
    painter_.setTransform(view_);
    setClip(nullptr);
}

void PainterDevice::setClip(const CRgn::Data* clip)
{
    const ForkGate gate;
    isClipped_ = clip != nullptr;
    const CRect whole(0, 0, size_.cx, size_.cy);
    if (!clip)
        return isView_ ? painter_.setClipRect(qtRect(whole)) : painter_.setClipping(false);
    if (!isView_)
        clip_ = clip->region;
    const CRect box = clip->region.box();
    if (!clip->polygon.empty()) {
        std::vector<CPointF> exact;
        for (const CPoint& p : clip->polygon)
            exact.push_back({double(p.x) - middle, double(p.y) - middle});
        QPainterPath path;
        path.setFillRule(clip->winding ? Qt::WindingFill : Qt::OddEvenFill);
        const BoxF sheet{0, 0, double(size_.cx), double(size_.cy)};
        path.addPolygon(
            qtPoints(clippedPolygon(exact.data(), exact.size(), isView_ ? sheet : reach(1))));
        path.closeSubpath();
        return painter_.setClipPath(path);
    }
    if (clip->region.kind() != COMPLEXREGION) {
        CRect inside;
        (void)inside.IntersectRect(box, whole);  // an empty one hides everything
        return painter_.setClipRect(qtRect(inside));
    }
    painter_.setClipRegion(qtRegion(clip->region, whole));
}

QRegion qtRegion(const Region& region, const CRect& within)
{
    std::vector<QRect> rects;
    for (const Region::Band& band : region.bands()) {
        const Run* const runs = region.runs(band);
        for (std::size_t i = 0; i < band.count; ++i) {
            CRect r(runs[i].a, band.top, runs[i].b, band.bottom);
            if (r.IntersectRect(r, within))
                rects.emplace_back(r.left, r.top, r.Width(), r.Height());
        }
    }
    // bands are in the order that Qt keeps them in, so nothing has to be united
    QRegion made;
    made.setRects(rects.data(), static_cast<int>(rects.size()));
    return made;
}

/// Everything that can be seen, and a margin for the pen; painters fail on far coordinates.
BoxF PainterDevice::reach(double penWidth) const
{
    const double margin = 2 * penWidth + 16;
    return {-margin, -margin, size_.cx + margin, size_.cy + margin};
}

/// Where a page is shown small its lines stay lines, as a viewer of pages draws them.
double PainterDevice::strokeWidth(double asked) const
{
    constexpr double leastSeen = 0.6;
    return isView_ ? std::max(asked, leastSeen / (surface_.ratio * std::abs(view_.m11()))) : asked;
}

/// The edges of a filled area of a view moved onto those of pixels, so that neighbours have no gap
/// between them; what is thinner than a pixel stays as it is.
QRectF PainterDevice::onDots(const QRectF& units) const
{
    const int k = surface_.ratio;
    const QRectF shown = view_.mapRect(units);
    if (shown.width() * k < 1 || shown.height() * k < 1)
        return units;
    const auto snapped = [&](double v) { return std::floor(v * k + 0.5) / k; };
    const QPointF near(snapped(shown.left()), snapped(shown.top()));
    const QPointF far(snapped(shown.right()), snapped(shown.bottom()));
    return view_.inverted().mapRect(QRectF(near, far));
}

QPen PainterDevice::qtPen(const StrokeStyle& pen, double distance) const
{
    const DashPattern pattern = dashPattern(pen.style);
    const double width = strokeWidth(pen.width);
    distance += pen.distance;
    QPen made(qtColor(pen.color), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    if (pattern.count == 0)
        return made;
    // lengths keep their proportion to wide lines; Qt counts in pen widths
    const double unit = scale_ * std::max(1.0, pen.width / scale_) / width;
    QList<qreal> lengths;
    for (int i = 0; i < pattern.count; ++i)
        lengths.append(pattern.lengths[i] * unit);
    made.setDashPattern(lengths);
    made.setCapStyle(Qt::FlatCap);
    made.setDashOffset(std::fmod(distance / width, pattern.period() * unit));
    return made;
}

void PainterDevice::strokeCurve(const CPointF* points, std::size_t count, const StrokeStyle& pen)
{
    if (pen.style == PS_NULL)
        return;
    const bool dashed = dashPattern(pen.style).count != 0;
    for (const CurvePiece& piece : clippedCurve(points, count, reach(pen.width))) {
        const QPolygonF polygon = qtPoints(piece.points);
        const Painting painting(*this, around(polygon.boundingRect(), pen.width));
        const auto total = static_cast<std::size_t>(polygon.size());
        double distance = piece.distance;
        painter_.setPen(qtPen(pen, distance));
        for (std::size_t at = 0; at + 1 < total && !isStopped(flag()); at += pointsAtOnce) {
            const std::size_t length = std::min(pointsAtOnce + 1, total - at);
            if (dashed && at > 0)
                painter_.setPen(qtPen(pen, distance));
            painter_.drawPolyline(polygon.constData() + at, static_cast<int>(length));
            for (std::size_t i = at + 1; dashed && i < at + length; ++i) {
                const QPointF step =
                    polygon[static_cast<qsizetype>(i)] - polygon[static_cast<qsizetype>(i) - 1];
                distance += std::hypot(step.x(), step.y());
            }
        }
    }
}

void PainterDevice::polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen)
{
    const ForkGate gate;
    strokeCurve(points, count, pen);
}

/// Fills a path; hatches are drawn as lines through it, so that a page has no tile of pixels.
void PainterDevice::fillPath(const QPainterPath& path, const FillStyle& brush)
{
    if (brush.kind == CBrush::Kind::hollow)
        return;
    const QRectF box = path.boundingRect();
    const Painting painting(*this, box);
    if (brush.kind == CBrush::Kind::solid)
        return painter_.fillPath(path, qtColor(brush.color));
    if (brush.fillsGaps)
        painter_.fillPath(path, qtColor(brush.gapColor));
    painter_.save();
    painter_.setClipPath(path, Qt::IntersectClip);
    painter_.setPen(qtPen({PS_SOLID, 0.75 * scale_, brush.color}, 0));
    const std::vector<CPointF> ends = hatchLines(
        brush.hatch, {box.left(), box.top(), box.right(), box.bottom()}, hatchSpacing * scale_);
    for (std::size_t i = 0; i + 1 < ends.size(); i += 2)
        painter_.drawLine(QPointF(ends[i].x, ends[i].y), QPointF(ends[i + 1].x, ends[i + 1].y));
    painter_.restore();
}

void PainterDevice::polygon(const CPointF* points, std::size_t count, bool winding,
                            const StrokeStyle& pen, const FillStyle& brush)
{
    const ForkGate gate;
    QPainterPath path;
    path.setFillRule(winding ? Qt::WindingFill : Qt::OddEvenFill);
    path.addPolygon(qtPoints(clippedPolygon(points, count, reach(pen.width))));
    path.closeSubpath();
    fillPath(path, brush);
    if (pen.style == PS_NULL || count == 0)
        return;
    const bool isNear = std::all_of(points, points + count, [&](const CPointF& p) {
        const BoxF box = reach(pen.width);
        return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
    });
    if (isNear && count <= pointsAtOnce) {
        // whole, so that the last corner is joined as the others are
        const Painting painting(*this, around(path.boundingRect(), pen.width));
        return painter_.strokePath(path, qtPen(pen, 0));
    }
    std::vector<CPointF> closed(points, points + count);
    closed.push_back(points[0]);
    strokeCurve(closed.data(), closed.size(), pen);
}

void PainterDevice::ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                            const FillStyle& brush)
{
    const ForkGate gate;
    const BoxF box = reach(pen.width);
    if (centre.x + radiusX < box.left || centre.x - radiusX > box.right ||
        centre.y + radiusY < box.top || centre.y - radiusY > box.bottom)
        return;
    QPainterPath path;
    constexpr double farthest = 1 << 20;  // painters fail on far coordinates
    path.addEllipse(QPointF(centre.x + middle, centre.y + middle), std::min(radiusX, farthest),
                    std::min(radiusY, farthest));
    fillPath(path, brush);
    if (pen.style == PS_NULL)
        return;
    const Painting painting(*this, around(path.boundingRect(), pen.width));
    painter_.strokePath(path, qtPen(pen, 0));
}

void PainterDevice::fillRect(const CRect& rect, const FillStyle& brush)
{
    const ForkGate gate;
    CRect visible;
    if (!visible.IntersectRect(rect, {-1, -1, size_.cx + 1, size_.cy + 1}))
        return;
    QPainterPath path;
    path.addRect(isView_ ? onDots(qtRect(visible)) : qtRect(visible));
    fillPath(path, brush);
}

void PainterDevice::image(const CRect& target, const ImageView& image)
{
    const ForkGate gate;
    const QImage view(reinterpret_cast<const uchar*>(image.bits), image.width, image.height,
                      static_cast<qsizetype>(image.width) * 4, QImage::Format_RGB32);
    const QRectF place = isView_ ? onDots(qtRect(target)) : qtRect(target);
    const Painting painting(*this, place);
    const QSizeF shown = view_.mapRect(place).size() * surface_.ratio;
    // more cells than pixels are averaged, fewer keep their edges
    if (isView_ && (shown.width() < image.width || shown.height() < image.height)) {
        const QSize seen(std::clamp(nearestInt(shown.width()), 1, image.width),
                         std::clamp(nearestInt(shown.height()), 1, image.height));
        const QImage small = view.scaled(seen, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter_.drawImage(place, small, QRectF(small.rect()));
    } else {
        painter_.drawImage(place, view, QRectF(view.rect()));
    }
}

void PainterDevice::text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color)
{
    const ForkGate gate;
    // far outside there is nothing to see, and painters fail there
    constexpr int farthest = 1 << 20;
    if (std::abs(at.x) > farthest || std::abs(at.y) > farthest)
        return;
    const QtFace& face = fonts_.face(font, isView_);
    painter_.setPen(qtColor(color));
    painter_.setFont(face.font());
    const double width = face.width(text);
    const double height = face.metrics().tmHeight;
    QRectF painted(-height, -height, width + 2 * height,
                   3 * height);  // glyphs may leave their cells
    if (font.lfEscapement != 0)
        painted = QTransform().rotate(-font.lfEscapement / 10.0).mapRect(painted);
    const Painting painting(*this, painted.translated(at.x, at.y));
    const QTransform before = painter_.transform();
    // lines below and through the text of a view lie where they do on its page
    const bool hasRules = isView_ && (font.lfUnderline || font.lfStrikeOut);
    if (hasRules) {
        QFont plain = face.font();
        plain.setUnderline(false);
        plain.setStrikeOut(false);
        painter_.setFont(plain);
    }
    QPointF start(at.x, at.y);
    if (font.lfEscapement != 0) {
        painter_.translate(at.x, at.y);
        painter_.rotate(-font.lfEscapement / 10.0);
        start = {};
    }
    start.ry() += face.ascent();
    if (face.grow() == 1) {
        painter_.drawText(start, textOf(text));
    } else {
        const QTransform plain = painter_.transform();
        painter_.translate(start);
        painter_.scale(face.grow(), face.grow());
        painter_.drawText(QPointF(), textOf(text));
        painter_.setTransform(plain);
    }
    const TextRules rules = hasRules ? face.rules() : TextRules();
    const auto rule = [&](double middle) {
        painter_.fillRect(
            QRectF(start.x(), start.y() + middle - rules.thickness / 2, width, rules.thickness),
            qtColor(color));
    };
    if (hasRules && font.lfUnderline)
        rule(rules.under);
    if (hasRules && font.lfStrikeOut)
        rule(rules.through);
    painter_.setTransform(before);
}

/// Pictures keep the byte above the colour zero, or how much of the ground shows; painters set it,
/// or want its opposite there: they get it turned around while they paint.
void PainterDevice::setTopBytes(const QRectF& painted, std::uint32_t kept, std::uint32_t flipped)
{
    if (!surface_.bits)
        return;
    const QRectF visible = view_.mapRect(painted) & QRectF(0, 0, surface_.width, surface_.height);
    const CRect box(nearestInt(visible.left() - 1), nearestInt(visible.top() - 1),
                    nearestInt(visible.right() + 1), nearestInt(visible.bottom() + 1));
    PixelPainter(surface_, isClipped_ ? &clip_ : nullptr).clippedRects(box, [&](const CRect& part) {
        surface_.touch(part);
        const int k = surface_.ratio;
        for (int y = part.top * k; y < part.bottom * k; ++y) {
            std::uint32_t* const row = surface_.row(y);
            for (int x = part.left * k; x < part.right * k; ++x)
                row[x] = (row[x] & kept) ^ flipped;
        }
    });
}

PainterDevice::Painting::Painting(PainterDevice& device, const QRectF& box)
    : device_(device), box_(box)
{
    if (device_.surface_.isTransparent)
        device_.setTopBytes(box_, ~0u, topByte);
}

PainterDevice::Painting::~Painting()
{
    const bool isTransparent = device_.surface_.isTransparent;
    device_.setTopBytes(box_, isTransparent ? ~0u : ~topByte, isTransparent ? topByte : 0);
}

}  // namespace pavane

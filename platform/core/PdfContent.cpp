#include "platform/core/PdfContent.h"

#include "platform/core/clip_geometry.h"
#include "platform/core/lines.h"
#include "platform/core/pdf_image.h"
#include "platform/core/pdf_operators.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace pavane
{

namespace
{

/// Contents go to the file when there is so much of them.
constexpr std::size_t pieceSize = 1 << 16;
/// Readers of pages slow down with the points of a path.
constexpr std::size_t pointsAtOnce = 1000;
/// Points of a curve nearer to each other than this, in units, are one.
constexpr double nearest = 0.2;
/// From line to line of a hatch, in pixels.
constexpr double hatchSpacing = 8;
bool isIn(const CPointF& p, const BoxF& box)
{
    return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
}

}  // namespace

PdfContent::PdfContent(PdfFile& file, PdfFonts& fonts, std::function<bool()> goesOn)
    : file_(file), fonts_(fonts), goesOn_(std::move(goesOn))
{
}

void PdfContent::startPage(CSize size, double unit, double height)
{
    size_ = size;
    scale_ = 0.75 / unit;
    pieces_.clear();
    images_.clear();
    clip_.clear();
    openClip_.clear();
    known_ = {};
    // round ends and joins hold for the whole page; rows count downwards
    out_ = "1 J 1 j\n";
    // more digits than places have: a sheet has many units
    std::array<char, 32> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), unit, std::chars_format::fixed, 9);
    const std::string digits(text.data(), end.ptr);
    out_ += digits + " 0 0 -" + digits + " 0 ";
    putNumber(out_, height);
    out_ += " cm\nq\n";
}

std::string PdfContent::endPage(int fontNames)
{
    endText();
    out_ += "Q\n";
    flush();
    std::string text = "/Contents[";
    for (const int piece : pieces_)
        text += pdfReference(piece) + ' ';
    text += "]/Resources<</Font " + pdfReference(fontNames);
    if (!images_.empty()) {
        text += "/XObject<<";
        for (const int image : images_)
            text += "/I" + std::to_string(image) + ' ' + pdfReference(image);
        text += ">>";
    }
    return text + ">>";
}

void PdfContent::flush()
{
    pieces_.push_back(file_.newObject());
    file_.stream(pieces_.back(), "", out_);
    out_.clear();
}

void PdfContent::endText()
{
    if (inText_)
        out_ += "ET\n";
    inText_ = false;
}

void PdfContent::begin()
{
    if (out_.size() >= pieceSize) {
        endText();
        flush();
    }
    if (openClip_ == clip_)
        return;
    // a clip can only be made smaller, so the one before is left first
    endText();
    out_ += "Q\nq\n" + clip_;
    openClip_ = clip_;
    known_ = {};
}

void PdfContent::setClip(const CRgn::Data* clip)
{
    clip_.clear();
    if (!clip)
        return;
    const CRect whole(0, 0, size_.cx, size_.cy);
    if (!clip->polygon.empty()) {
        std::vector<CPointF> exact;
        for (const CPoint& p : clip->polygon)
            exact.push_back({double(p.x) - middleOfUnit, double(p.y) - middleOfUnit});
        const std::vector<CPointF> seen = clippedPolygon(exact.data(), exact.size(), reach(1));
        putPath(clip_, seen.data(), seen.size(), true);
        if (!seen.empty()) {
            clip_ += clip->winding ? "W n\n" : "W* n\n";
            return;
        }
    }
    for (const Region::Band& band : clip->region.bands()) {
        const Run* const runs = clip->region.runs(band);
        for (std::size_t i = 0; i < band.count && clip->polygon.empty(); ++i) {
            CRect r(runs[i].a, band.top, runs[i].b, band.bottom);
            if (r.IntersectRect(r, whole))
                putRect(clip_, r);
        }
    }
    if (clip_.empty())
        putRect(clip_, {});  // nothing is seen
    clip_ += "W n\n";
}

/// Everything that can be seen, and a margin for the pen; readers fail on far coordinates.
BoxF PdfContent::reach(double penWidth) const
{
    const double margin = 2 * penWidth + 16;
    return {-margin, -margin, size_.cx + margin, size_.cy + margin};
}

void PdfContent::fillColor(std::uint32_t color)
{
    if (known_.fill == color)
        return;
    putColor(out_, color, false);
    known_.fill = color;
}

void PdfContent::strokeWith(const StrokeStyle& pen, double distance)
{
    if (known_.stroke != pen.color)
        putColor(out_, pen.color, true);
    if (known_.width != pen.width)
        putOperator(out_, {pen.width}, "w");
    // lengths keep their proportion to wide lines
    const DashPattern pattern = dashPattern(pen.style);
    const double unit = scale_ * std::max(1.0, pen.width / scale_);
    const double start = pattern.count ? std::fmod(distance, pattern.period() * unit) : 0;
    if (known_.style != pen.style || known_.moves || start != 0 ||
        (pattern.count && known_.dashes != unit)) {
        const bool wasPlain = known_.style >= 0 && dashPattern(known_.style).count == 0;
        if (pattern.count == 0 && known_.style >= 0 && !wasPlain)
            out_ += "1 J [] 0 d\n";
        if (pattern.count) {
            out_ += "0 J [";
            for (int i = 0; i < pattern.count; ++i) {
                putNumber(out_, pattern.lengths[i] * unit);
                out_ += ' ';
            }
            out_ += "] ";
            putNumber(out_, start);
            out_ += " d\n";
        }
    }
    known_.stroke = pen.color;
    known_.width = pen.width;
    known_.style = pen.style;
    known_.dashes = unit;
    known_.moves = start != 0;
}

void PdfContent::strokeCurve(const CPointF* points, std::size_t count, const StrokeStyle& pen)
{
    const bool isDashed = dashPattern(pen.style).count != 0;
    for (const CurvePiece& piece : clippedCurve(points, count, reach(pen.width))) {
        strokeWith(pen, pen.distance + piece.distance);
        std::size_t onPath = 0;
        CPointF last{};
        for (std::size_t i = 0; i < piece.points.size(); ++i) {
            const CPointF& p = piece.points[i];
            const bool isEnd = i + 1 == piece.points.size();
            if (onPath > 0 && !isEnd && std::fabs(p.x - last.x) < nearest &&
                std::fabs(p.y - last.y) < nearest)
                continue;
            putOperator(out_, {p.x + middleOfUnit, p.y + middleOfUnit}, onPath == 0 ? "m" : "l");
            last = p;
            // dashes run on to the end, plain lines are joined by their round ends
            if (++onPath < pointsAtOnce || isDashed || isEnd)
                continue;
            out_ += "S\n";
            begin();
            putOperator(out_, {p.x + middleOfUnit, p.y + middleOfUnit}, "m");
            onPath = 1;
        }
        out_ += "S\n";
    }
}

void PdfContent::polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen)
{
    if (pen.style == PS_NULL || count < 2)
        return;
    begin();
    endText();
    strokeCurve(points, count, pen);
}

/// Hatches are lines through the outline.
void PdfContent::hatch(const FillStyle& brush, bool winding, const BoxF& box,
                       const std::string& outline)
{
    if (brush.fillsGaps) {
        fillColor(brush.gapColor);
        out_ += outline + (winding ? "f\n" : "f*\n");
    }
    out_ += "q\n" + outline + (winding ? "W n\n" : "W* n\n");
    const Known before = known_;
    strokeWith({PS_SOLID, 0.75 * scale_, brush.color}, 0);
    const std::vector<CPointF> ends = hatchLines(brush.hatch, box, hatchSpacing * scale_);
    for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
        putOperator(out_, {ends[i].x, ends[i].y}, "m");
        putOperator(out_, {ends[i + 1].x, ends[i + 1].y}, "l");
    }
    out_ += "S\nQ\n";
    known_ = before;
}

/// Fills the outline, and strokes it.
void PdfContent::paint(const FillStyle& brush, const StrokeStyle& pen, bool winding,
                       const BoxF& box, const std::string& outline)
{
    if (outline.empty())
        return;
    if (brush.kind == CBrush::Kind::hatched)
        hatch(brush, winding, box, outline);
    const bool fills = brush.kind == CBrush::Kind::solid;
    const bool strokes = pen.style != PS_NULL;
    if (fills)
        fillColor(brush.color);
    if (strokes)
        strokeWith(pen, pen.distance);
    if (fills || strokes)
        out_ += outline +
                (!fills ? "S\n" : std::string(strokes ? "B" : "f") + (winding ? "\n" : "*\n"));
}

void PdfContent::polygon(const CPointF* points, std::size_t count, bool winding,
                         const StrokeStyle& pen, const FillStyle& brush)
{
    const BoxF box = reach(pen.width);
    const std::vector<CPointF> seen = clippedPolygon(points, count, box);
    std::string outline;
    putPath(outline, seen.data(), seen.size(), true);
    BoxF extent = box;
    if (!seen.empty()) {
        const auto [left, right] = std::minmax_element(
            seen.begin(), seen.end(), [](const CPointF& a, const CPointF& b) { return a.x < b.x; });
        const auto [top, bottom] = std::minmax_element(
            seen.begin(), seen.end(), [](const CPointF& a, const CPointF& b) { return a.y < b.y; });
        extent = {left->x + middleOfUnit, top->y + middleOfUnit, right->x + middleOfUnit,
                  bottom->y + middleOfUnit};
    }
    begin();
    endText();
    const bool isNear =
        std::all_of(points, points + count, [&](const CPointF& p) { return isIn(p, box); });
    if (isNear && count <= pointsAtOnce)
        return paint(brush, pen, winding, extent, outline);
    paint(brush, {}, winding, extent, outline);
    if (pen.style == PS_NULL || count == 0)
        return;
    std::vector<CPointF> closed(points, points + count);
    closed.push_back(points[0]);
    strokeCurve(closed.data(), closed.size(), pen);
}

void PdfContent::ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                         const FillStyle& brush)
{
    const BoxF box = reach(pen.width);
    if (centre.x + radiusX < box.left || centre.x - radiusX > box.right ||
        centre.y + radiusY < box.top || centre.y - radiusY > box.bottom)
        return;
    constexpr double farthest = 1 << 20;   // readers fail on far coordinates
    constexpr double bend = 0.5522847498;  // of a curve that is nearly a quarter of a circle
    const double a = std::min(radiusX, farthest);
    const double b = std::min(radiusY, farthest);
    const double x = centre.x + middleOfUnit;
    const double y = centre.y + middleOfUnit;
    std::string outline;
    putOperator(outline, {x + a, y}, "m");
    putOperator(outline, {x + a, y + bend * b, x + bend * a, y + b, x, y + b}, "c");
    putOperator(outline, {x - bend * a, y + b, x - a, y + bend * b, x - a, y}, "c");
    putOperator(outline, {x - a, y - bend * b, x - bend * a, y - b, x, y - b}, "c");
    putOperator(outline, {x + bend * a, y - b, x + a, y - bend * b, x + a, y}, "c");
    outline += "h\n";
    begin();
    endText();
    paint(brush, pen, true, {x - a, y - b, x + a, y + b}, outline);
}

void PdfContent::fillRect(const CRect& rect, const FillStyle& brush)
{
    CRect visible;
    if (!visible.IntersectRect(rect, {-1, -1, size_.cx + 1, size_.cy + 1}))
        return;
    begin();
    endText();
    std::string outline;
    putRect(outline, visible);
    paint(
        brush, {}, true,
        {double(visible.left), double(visible.top), double(visible.right), double(visible.bottom)},
        outline);
}

void PdfContent::image(const CRect& target, const ImageView& image)
{
    if (image.width < 1 || image.height < 1 || target.IsRectEmpty())
        return;
    const int number = writeImage(file_, image, goesOn_);
    images_.push_back(number);
    begin();
    endText();
    out_ += "q\n";
    putOperator(out_,
                {double(target.right) - target.left, 0, 0, double(target.top) - target.bottom,
                 double(target.left), double(target.bottom)},
                "cm");
    out_ += "/I" + std::to_string(number) + " Do\nQ\n";
}

}  // namespace pavane

#include "platform/core/SvgDevice.h"

#include "platform/core/clip_geometry.h"
#include "platform/core/png_bytes.h"
#include "platform/core/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr double hatchSpacing = 8;  ///< pixels
/// Strokes go through the middle of a unit.
constexpr double middle = 0.5;

/// Numbers have a tenth of a unit: finer than anything that shows.
void put(std::string& out, double v)
{
    char buffer[40];
    const double rounded = std::round(std::clamp(v, -1e9, 1e9) * 10) / 10;
    out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, rounded).ptr);
}

void attribute(std::string& out, const char* name, double v)
{
    out.append(" ").append(name).append("=\"");
    put(out, v);
    out += '"';
}

std::string colorText(std::uint32_t pixel)
{
    static const char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4)
        text += digits[pixel >> shift & 15];
    return text;
}

/// Text for the inside of an element or attribute; characters that XML has not are left out.
std::string escaped(std::string_view text)
{
    std::string out;
    for (const char c : validUtf8(text)) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else if (static_cast<unsigned char>(c) >= ' ' || c == '\t')
            out += c;
    }
    return out;
}

std::string base64(const std::vector<unsigned char>& bytes)
{
    static const char letters[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group =
                group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            out += i + k <= bytes.size() ? letters[group >> (18 - 6 * k) & 63] : '=';
    }
    return out;
}

/// The image with every pixel as a block, so large that a block has about the size of a pixel of 96
/// per inch. Many viewers blur what they enlarge, whatever the file says; blocks keep cells sharp.
struct Enlarged {
    Enlarged(const ImageView& image, int targetWidth, int targetHeight)
    {
        constexpr std::int64_t greatestArea = 1 << 24;
        const int ratio = std::max(targetWidth / image.width, targetHeight / image.height);
        int factor = std::clamp(ratio, 1, 64);
        while (factor > 1 &&
               std::int64_t{image.width} * image.height * factor * factor > greatestArea)
            --factor;
        view = image;
        if (factor == 1)
            return;
        const int width = image.width * factor;
        const int height = image.height * factor;
        pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        for (int y = 0; y < height; ++y) {
            const std::uint32_t* const row =
                image.bits + static_cast<std::ptrdiff_t>(y / factor) * image.width;
            for (int x = 0; x < image.width; ++x)
                pixels.insert(pixels.end(), static_cast<std::size_t>(factor), row[x]);
        }
        view = {pixels.data(), width, height};
    }
    std::vector<std::uint32_t> pixels;
    ImageView view;
};

BoxF reachOf(CSize size, double penWidth)
{
    const double margin = 2 * penWidth + 16;
    return {-margin, -margin, size.cx + margin, size.cy + margin};
}

}  // namespace

SvgDevice::SvgDevice(CSize size, int scale, std::string_view title) : size_(size), scale_(scale)
{
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
    attribute(out_, "width", double(size.cx) / scale);
    attribute(out_, "height", double(size.cy) / scale);
    out_ += " viewBox=\"0 0 ";
    put(out_, size.cx);
    out_ += ' ';
    put(out_, size.cy);
    out_ += "\" stroke-linecap=\"round\" stroke-linejoin=\"round\" fill=\"none\">\n<title>" +
            escaped(title) + "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
}

std::string SvgDevice::finished()
{
    if (!openPath_.empty())
        out_ += "</g>\n";
    out_ += "</svg>\n";
    return std::move(out_);
}

void SvgDevice::setClip(const CRgn::Data* clip)
{
    clipPath_.clear();
    if (!clip)
        return;
    if (!clip->polygon.empty()) {
        const char* separator = "M";
        for (const CPoint& p : clip->polygon) {
            clipPath_ += std::exchange(separator, "L");
            put(clipPath_, p.x);
            clipPath_ += ' ';
            put(clipPath_, p.y);
        }
        clipPath_ += clip->winding ? "Z" : "Z\" clip-rule=\"evenodd";
        return;
    }
    for (const Region::Band& band : clip->region.bands()) {
        const Run* const runs = clip->region.runs(band);
        for (std::size_t i = 0; i < band.count; ++i) {
            clipPath_ += 'M';
            put(clipPath_, runs[i].a);
            clipPath_ += ' ';
            put(clipPath_, band.top);
            clipPath_ += 'H';
            put(clipPath_, runs[i].b);
            clipPath_ += 'V';
            put(clipPath_, band.bottom);
            clipPath_ += 'H';
            put(clipPath_, runs[i].a);
            clipPath_ += 'Z';
        }
    }
    if (clipPath_.empty())
        clipPath_ = "M0 0Z";  // nothing is inside
}

void SvgDevice::begin()
{
    if (clipPath_ == openPath_)
        return;
    if (!openPath_.empty())
        out_ += "</g>\n";
    openPath_ = clipPath_;
    if (clipPath_.empty())
        return;
    const auto [clip, isNew] = clips_.emplace(clipPath_, static_cast<int>(clips_.size()) + 1);
    std::string name = std::to_string(clip->second);
    name.insert(name.begin(), 'c');
    if (isNew)
        out_ += "<clipPath id=\"" + name + "\"><path d=\"" + clipPath_ + "\"/></clipPath>\n";
    out_ += "<g clip-path=\"url(#" + name + ")\">\n";
}

void SvgDevice::points(const CPointF* points, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0)
            out_ += ' ';
        put(out_, points[i].x + middle);
        out_ += ',';
        put(out_, points[i].y + middle);
    }
}

void SvgDevice::stroke(const StrokeStyle& pen)
{
    if (pen.style == PS_NULL)
        return;
    out_ += " stroke=\"" + colorText(pen.color) + "\"";
    attribute(out_, "stroke-width", pen.width);
    const DashPattern pattern = dashPattern(pen.style);
    if (pattern.count == 0)
        return;
    out_ += " stroke-linecap=\"butt\" stroke-dasharray=\"";
    for (int i = 0; i < pattern.count; ++i) {
        out_ += i > 0 ? " " : "";
        put(out_, pattern.lengths[i] * std::max<double>(scale_, pen.width));
    }
    out_ += '"';
}

std::string SvgDevice::patternOf(const FillStyle& brush)
{
    std::string key = colorText(brush.color) + std::to_string(brush.hatch);
    if (brush.fillsGaps)
        key += colorText(brush.gapColor);
    const auto [pattern, isNew] = patterns_.emplace(key, static_cast<int>(patterns_.size()) + 1);
    std::string name = std::to_string(pattern->second);
    name.insert(name.begin(), 'h');
    if (!isNew)
        return name;
    const double side = hatchSpacing * scale_;
    out_ += "<pattern id=\"" + name + "\" patternUnits=\"userSpaceOnUse\"";
    attribute(out_, "width", side);
    attribute(out_, "height", side);
    out_ += '>';
    if (brush.fillsGaps)
        out_ += "<rect width=\"100%\" height=\"100%\" fill=\"" + colorText(brush.gapColor) + "\"/>";
    out_ += "<path stroke=\"" + colorText(brush.color) + "\"";
    attribute(out_, "stroke-width", 0.75 * scale_);
    out_ += " d=\"";
    // one tile, with the lines of its neighbours that reach into its corners
    const bool slanted = brush.hatch >= HS_FDIAGONAL && brush.hatch != HS_CROSS;
    const BoxF tile =
        slanted ? BoxF{-side, -side, 2 * side, 2 * side} : BoxF{0, side / 2, side, side};
    for (const CPointF& end : hatchLines(brush.hatch, tile, side)) {
        const bool starts = out_.back() != ' ';
        out_ += starts ? 'M' : 'L';
        put(out_, end.x);
        out_ += ',';
        put(out_, end.y);
        if (starts)
            out_ += ' ';
    }
    out_ += "\"/></pattern>\n";
    return name;
}

void SvgDevice::fill(const FillStyle& brush)
{
    if (brush.kind == CBrush::Kind::hatched)
        out_ += " fill=\"url(#" + patternOf(brush) + ")\"";
    else if (brush.kind == CBrush::Kind::solid)
        out_ += " fill=\"" + colorText(brush.color) + "\"";
}

void SvgDevice::polyline(const CPointF* p, std::size_t count, const StrokeStyle& pen)
{
    if (pen.style == PS_NULL)
        return;
    for (const CurvePiece& piece : clippedCurve(p, count, reachOf(size_, pen.width))) {
        begin();
        out_ += "<polyline";
        stroke(pen);
        if (piece.distance > 0 && dashPattern(pen.style).count != 0)
            attribute(out_, "stroke-dashoffset", piece.distance);
        out_ += " points=\"";
        points(piece.points.data(), piece.points.size());
        out_ += "\"/>\n";
    }
}

void SvgDevice::polygon(const CPointF* p, std::size_t count, bool winding, const StrokeStyle& pen,
                        const FillStyle& brush)
{
    // the edges of the box lie outside what is seen, so a cut outline shows no other lines
    const std::vector<CPointF> cut = clippedPolygon(p, count, reachOf(size_, pen.width));
    if (cut.empty())
        return;
    begin();
    if (brush.kind == CBrush::Kind::hatched)
        (void)patternOf(brush);  // its definition has to stand outside the element
    out_ += winding ? "<polygon" : "<polygon fill-rule=\"evenodd\"";
    fill(brush);
    stroke(pen);
    out_ += " points=\"";
    points(cut.data(), cut.size());
    out_ += "\"/>\n";
}

void SvgDevice::ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                        const FillStyle& brush)
{
    begin();
    if (brush.kind == CBrush::Kind::hatched)
        (void)patternOf(brush);  // its definition has to stand outside the element
    out_ += "<ellipse";
    attribute(out_, "cx", centre.x + middle);
    attribute(out_, "cy", centre.y + middle);
    attribute(out_, "rx", radiusX);
    attribute(out_, "ry", radiusY);
    fill(brush);
    stroke(pen);
    out_ += "/>\n";
}

void SvgDevice::fillRect(const CRect& rect, const FillStyle& brush)
{
    CRect visible;
    if (brush.kind == CBrush::Kind::hollow ||
        !visible.IntersectRect(rect, {-1, -1, size_.cx + 1, size_.cy + 1}))
        return;
    begin();
    if (brush.kind == CBrush::Kind::hatched)
        (void)patternOf(brush);  // its definition has to stand outside the element
    out_ += "<rect";
    attribute(out_, "x", visible.left);
    attribute(out_, "y", visible.top);
    attribute(out_, "width", visible.Width());
    attribute(out_, "height", visible.Height());
    fill(brush);
    out_ += "/>\n";
}

void SvgDevice::image(const CRect& target, const ImageView& image)
{
    if (target.IsRectEmpty() || image.width < 1 || image.height < 1)
        return;
    const Enlarged sharp(image, target.Width() / scale_, target.Height() / scale_);
    std::vector<unsigned char> png;
    std::string error;
    if (!writePNG(sharp.view, {}, png, error, flag()))
        return;
    begin();
    out_ += "<image";
    attribute(out_, "x", target.left);
    attribute(out_, "y", target.top);
    attribute(out_, "width", double(target.right) - target.left);
    attribute(out_, "height", double(target.bottom) - target.top);
    // the cells of a map are measurements: no viewer shall blur them
    out_ += " preserveAspectRatio=\"none\" image-rendering=\"optimizeSpeed\" "
            "style=\"image-rendering:pixelated\" xlink:href=\"data:image/png;base64,";
    out_ += base64(png) + "\"/>\n";
}

void SvgDevice::text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color)
{
    if (!graphicsHook())
        return;
    begin();
    const TextFace& face = graphicsHook()->face(font, true);
    const TEXTMETRIC& metrics = face.metrics();
    out_ += "<text xml:space=\"preserve\"";
    attribute(out_, "x", at.x);
    attribute(out_, "y", double(at.y) + metrics.tmAscent);
    if (font.lfEscapement != 0) {
        out_ += " transform=\"rotate(";
        put(out_, -font.lfEscapement / 10.0);
        for (const int v : {at.x, at.y}) {
            out_ += ' ';
            put(out_, v);
        }
        out_ += ")\"";
    }
    out_ += " font-family=\"" + escaped(face.family()) + "\"";
    attribute(out_, "font-size", face.emHeight());
    if (metrics.tmWeight > FW_NORMAL)
        out_ += " font-weight=\"bold\"";
    if (font.lfItalic)
        out_ += " font-style=\"italic\"";
    if (font.lfUnderline || font.lfStrikeOut)
        out_ += font.lfUnderline ? " text-decoration=\"underline\""
                                 : " text-decoration=\"line-through\"";
    attribute(out_, "textLength", face.width(text));
    out_ += " lengthAdjust=\"spacingAndGlyphs\" fill=\"" + colorText(color) + "\">" +
            escaped(text) + "</text>\n";
}

}  // namespace pavane

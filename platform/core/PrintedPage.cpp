#include "platform/core/PrintedPage.h"

#include "platform/core/pixel_rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Greatest side that a page of a PDF file can have, 14400 points.
constexpr int greatestSide = 508000;
constexpr int greatestDpi = 4800;
constexpr int usualDpi = 600;

/// The brightness that an eye sees in a colour 0x00RRGGBB, as a grey.
std::uint32_t greyOf(std::uint32_t color)
{
    const std::uint32_t grey =
        ((color >> 16 & 0xFF) * 299 + (color >> 8 & 0xFF) * 587 + (color & 0xFF) * 114 + 500) /
        1000;
    return grey << 16 | grey << 8 | grey;
}

int dots(int length, int dpi) { return std::max(2, 2 * nearestInt(length * dpi / 5080.0)); }

}  // namespace

std::uint32_t PrintedPage::inked(std::uint32_t color) const
{
    return gray_ ? greyOf(color) : color;
}

StrokeStyle PrintedPage::inked(StrokeStyle pen) const
{
    pen.color = inked(pen.color);
    return pen;
}

FillStyle PrintedPage::inked(FillStyle brush) const
{
    brush.color = inked(brush.color);
    brush.gapColor = inked(brush.gapColor);
    return brush;
}

void PrintedPage::setClip(const CRgn::Data* clip)
{
    if (device_)
        device_->setClip(clip);
}

void PrintedPage::polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen)
{
    if (!device_ || !goesOn())
        return;
    device_->setStop(flag() ? flag() : &stop_);
    device_->polyline(points, count, inked(pen));
}

void PrintedPage::polygon(const CPointF* points, std::size_t count, bool winding,
                          const StrokeStyle& pen, const FillStyle& brush)
{
    if (device_ && goesOn())
        device_->polygon(points, count, winding, inked(pen), inked(brush));
}

void PrintedPage::ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                          const FillStyle& brush)
{
    if (device_ && goesOn())
        device_->ellipse(centre, radiusX, radiusY, inked(pen), inked(brush));
}

void PrintedPage::fillRect(const CRect& rect, const FillStyle& brush)
{
    if (device_ && goesOn())
        device_->fillRect(rect, inked(brush));
}

void PrintedPage::image(const CRect& target, const ImageView& image)
{
    if (!device_ || !goesOn())
        return;
    device_->setStop(flag() ? flag() : &stop_);
    if (!gray_)
        return device_->image(target, image);
    const std::size_t count =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    std::vector<std::uint32_t> grey(image.bits, image.bits + count);
    std::transform(grey.begin(), grey.end(), grey.begin(), greyOf);
    device_->image(target, {grey.data(), image.width, image.height});
}

void PrintedPage::text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color)
{
    if (device_ && goesOn())
        device_->text(at, text, font, inked(color));
}

PrinterBackend::PrinterBackend(CSize sheet, int dpi, int gray)
    : dpi_(dpi < 1 ? usualDpi : std::min(dpi, greatestDpi)), page_(gray)
{
    (void)setSheet(sheet);
}

int PrinterBackend::setSheet(CSize sheet)
{
    if (sheet.cx < 1 || sheet.cy < 1)
        return 0;
    sheet_ = {std::min(sheet.cx, greatestSide), std::min(sheet.cy, greatestSide)};
    size_ = {dots(sheet_.cx, dpi_), dots(sheet_.cy, dpi_)};
    return 1;
}

}  // namespace pavane

#include "pavane/axes/maps/AColorsGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/cells/StoppableCells.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/bitmap_header.h"
#include "pavane/images/palettes.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pavane
{

namespace
{

/// The image of a map on a page has a pixel for each cell, but for more than either of these it is
/// reduced: what printers and eyes tell apart, and what a reader who magnifies a small figure gets.
constexpr double imagePixelsPerInch = 300;
constexpr int enoughPixels = 2048;

/// Cells of a direction of a map that a page shows, from `low` to `high` in cells: one pixel for
/// each cell, or fewer.
struct PageCells {
    int first = 0;
    int end = 0;
    PixelCells pixels;

    /// `units` of the page show them, `perInch` to an inch.
    PageCells(double low, double high, int cells, int falling, int units, int perInch)
    {
        first =
            static_cast<int>(std::clamp(std::floor(std::min(low, high) + 0.5), 0.0, 1.0 * cells));
        end = static_cast<int>(std::clamp(std::ceil(std::max(low, high) + 0.5), 0.0, 1.0 * cells));
        const int count = end - first;
        if (count < 1)
            return;
        const double inches =
            static_cast<double>(units) / std::max(perInch, 1) * count / std::fabs(high - low);
        const int most = std::max(enoughPixels, truncated(std::ceil(inches * imagePixelsPerInch)));
        const int sides = std::min(count, most);
        const double step = static_cast<double>(count) / sides;
        if (falling)
            pixels.setLinear(end - 0.5, -step, sides, cells);
        else
            pixels.setLinear(first - 0.5, step, sides, cells);
    }
};

}  // namespace

void AColorsGraph::setScale(MapScaleKind kind)
{
    kind_ = kind;
    hasScale_ = 0;
}

void AColorsGraph::setSharedPixel(SharedPixel shared)
{
    shared_ = shared;
    kept_.forget();
    if (rgb_)
        rgb_->forget();
}

void AColorsGraph::setBlank(int index, COLORREF color)
{
    indices_.blank = std::clamp(index, 0, 255);
    blankColor_ = color;
    kept_.forgetIndices();
}

void AColorsGraph::cellsChanged()
{
    ABMapGraph::cellsChanged();
    hasScale_ = 0;
    kept_.forget();
}

const MapScale& AColorsGraph::scale() const
{
    const TMnMx range = zRange();
    if (hasScale_ && range == scaleRange_)
        return scale_;
    ranked_ = drawn_ = 0;
    kept_.forgetIndices();
    double low = range.min;
    if (kind_ == MapScaleKind::logarithmic && low <= 0 && noise().sigma < range.max)
        low = noise().sigma;
    if (range.min > range.max)
        scale_.setRange(MapScaleKind::linear, 0, 1);
    else
        scale_.setRange(kind_, low, range.max);
    const StoppableCells shares(cells(), stop());
    if (kind_ == MapScaleKind::equalized)
        scale_.equalize(shares);
    scaleRange_ = range;
    hasScale_ = !shares.isStopped() && !isStopped(stop());
    return scale_;
}

std::vector<unsigned char> AColorsGraph::imageHeader(int width, int height) const
{
    std::vector<unsigned char> header(bitmapInfoSize + 256 * 4);
    writeBitmapInfo(header.data(), width, height, 8, 0);
    const auto put = [&header](int index, COLORREF color) {
        unsigned char* entry = header.data() + bitmapInfoSize + std::ptrdiff_t{4} * index;
        entry[0] = static_cast<unsigned char>(GetBValue(color));
        entry[1] = static_cast<unsigned char>(GetGValue(color));
        entry[2] = static_cast<unsigned char>(GetRValue(color));
    };
    const AArray<COLORREF> colours = mapColors(play_);
    for (int i = 0; i < colours.count(); ++i)
        put(getFirstColor() + i, colours(i));
    put(indices_.blank, blankColor_);
    return header;
}

void AColorsGraph::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    const MapStop stop(*this, dc);
    if (axis() && !axis()->getGraphRect().IsRectEmpty() && !cellRange().isEmpty())
        drawCells(dc);
    ABMapGraph::draw(dc, rect, range);
}

void AColorsGraph::drawCells(CDC& dc) const
{
    if (axis()->isFlagSet(axisBitmapMode))
        return drawIntoRaster();
    if (isPage(dc))
        return drawOnPage(dc);
    // pixels whose centres lie on the ends of the axis belong to the picture
    const CRect& rect = axis()->getGraphRect();
    const CRect target(rect.left, rect.top, rect.right + 1, rect.bottom + 1);
    const int ratio = dc.GetPixelRatio();
    drawImage(dc, columnsOfPixels(target.left, target.Width(), ratio),
              rowsOfPixels(target.top, target.Height(), ratio), target);
}

/// Ranks for a map that is zoomed and moved: one that a window shows, or that is drawn twice.
int AColorsGraph::hasRanks(const MapScale& colorScale) const
{
    if (shared_ != SharedPixel::greatest)
        return 0;
    const int often = isShownOften() || drawn_ > 0;
    drawn_ = 1;
    if (often && !ranked_) {
        const StoppableCells all(cells(), stop());
        ranked_ = ranks_.set(all, colorScale, indices_.count) ? 1 : -1;
        if (all.isStopped())
            ranked_ = 0;
    }
    return ranked_ > 0;
}

/// Keeps the indices of the pixels, on the scale as it is. The first picture of a view comes from
/// the ranks when there are any; another scale on the same view from the values of the pixels.
int AColorsGraph::showPixels(const PixelCells& x, const PixelCells& y) const
{
    const MapScale& colorScale = scale();
    if (!kept_.show(x, y))
        return 0;
    if (kept_.isPainted())
        return 1;
    if (!kept_.isSameView() && hasRanks(colorScale) &&
        ranks_.paint(x, y, indices_, kept_.top(), kept_.stride())) {
        kept_.setPainted();
        return 1;
    }
    const StoppableCells shown(cells(), stop());
    const int isPainted = kept_.paint(shown, shared_, colorScale, indices_);
    if (!shown.isStopped())
        return isPainted;
    kept_.forget();
    return 0;
}

void AColorsGraph::drawIntoRaster() const
{
    useAxisPalette();
    ADIBase* dib = axis()->dib();
    if (!dib || !dib->lpArray())
        return;
    CRect covered;
    const CRect graph = axis()->getGraphRect();
    const CRect raster = dib->rect();
    if (!covered.IntersectRect(CRect(graph.left, graph.top, graph.right + 1, graph.bottom + 1),
                               CRect(raster.left, raster.top, raster.right + 1, raster.bottom + 1)))
        return;
    if (showPixels(columnsOfPixels(covered.left, covered.Width()),
                   rowsOfPixels(covered.top, covered.Height())))
        kept_.copy(&(*dib)(covered.left, covered.top), -dib->scanWidth());
}

/// Where the map does not reach, the picture keeps what it shows: only the rectangle of covered
/// pixels is drawn.
void AColorsGraph::drawImage(CDC& dc, const PixelCells& x, const PixelCells& y,
                             const CRect& target) const
{
    int left = 0, right = x.pixels(), top = 0, bottom = y.pixels();
    while (left < right && x.groupOf(left) < 0)
        ++left;
    while (right > left && x.groupOf(right - 1) < 0)
        --right;
    while (top < bottom && y.groupOf(top) < 0)
        ++top;
    while (bottom > top && y.groupOf(bottom - 1) < 0)
        --bottom;
    // on a finer device whole units, or the picture would be stretched by a part of one
    const int ratio = isPage(dc) ? 1 : dc.GetPixelRatio();
    left = (left + ratio - 1) / ratio * ratio;
    right = right / ratio * ratio;
    top = (top + ratio - 1) / ratio * ratio;
    bottom = bottom / ratio * ratio;
    if (left >= right || top >= bottom)
        return;
    const auto placed = [](int from, int to, int pixels, int pixel) {
        return from + static_cast<int>(std::int64_t{to - from} * pixel / pixels);
    };
    const CRect shown(placed(target.left, target.right, x.pixels(), left),
                      placed(target.top, target.bottom, y.pixels(), top),
                      placed(target.left, target.right, x.pixels(), right),
                      placed(target.top, target.bottom, y.pixels(), bottom));
    if (rgb_)
        return drawRgb(dc, x, y, shown, CRect(left, y.pixels() - bottom, right, y.pixels() - top));
    if (!showPixels(x, y))
        return;
    const std::vector<unsigned char> header = imageHeader(x.pixels(), y.pixels());
    dc.StretchDIBits(shown.left, shown.top, shown.Width(), shown.Height(), left,
                     y.pixels() - bottom, right - left, bottom - top, kept_.indices(),
                     header.data(), DIB_RGB_COLORS, SRCCOPY);
}

/// `pixels` are counted from the lower left corner of the image.
void AColorsGraph::drawRgb(CDC& dc, const PixelCells& x, const PixelCells& y, const CRect& shown,
                           const CRect& pixels) const
{
    std::vector<std::uint32_t> bits;
    if (!rgb_->paint(x, y, shared_, kind_, blankColor_, stop(), bits))
        return;
    unsigned char header[bitmapInfoSize];
    writeBitmapInfo(header, x.pixels(), y.pixels(), 32, 0);
    dc.StretchDIBits(shown.left, shown.top, shown.Width(), shown.Height(), pixels.left, pixels.top,
                     pixels.Width(), pixels.Height(), bits.data(), header, DIB_RGB_COLORS, SRCCOPY);
}

void AColorsGraph::drawOnPage(CDC& dc) const
{
    const CRect& rect = axis()->getGraphRect();
    const double left = RPXtoMPX(axis()->GPXtoRPX(rect.left));
    const double right = RPXtoMPX(axis()->GPXtoRPX(rect.right));
    const double top = RPYtoMPY(axis()->GPYtoRPY(rect.top));
    const double bottom = RPYtoMPY(axis()->GPYtoRPY(rect.bottom));
    const int perInch = dc.GetDeviceCaps(LOGPIXELSX);
    const PageCells x(left, right, cells().columns(), left > right, rect.Width(), perInch);
    const PageCells y(top, bottom, cells().rows(), top > bottom, rect.Height(), perInch);
    if (x.pixels.pixels() < 1 || y.pixels.pixels() < 1)
        return;
    CRect target(axis()->RPXtoGPX(MPXtoRPX(x.first - 0.5)),
                 axis()->RPYtoGPY(MPYtoRPY(y.first - 0.5)), axis()->RPXtoGPX(MPXtoRPX(x.end - 0.5)),
                 axis()->RPYtoGPY(MPYtoRPY(y.end - 0.5)));
    target.NormalizeRect();
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(rect);
    drawImage(dc, x.pixels, y.pixels, target);
    kept_.forget();  // a page is drawn once
    if (rgb_)
        rgb_->forget();
    dc.RestoreDC(saved);
}

}  // namespace pavane

// How a box is drawn: first the image of what hides, then whatever is seen of lines, then texts.
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/BoxDrawing.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/device_strokes.h"
#include "pavane/axes/maps/MapContours.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/images/ADIBase.h"
#include "pavane/resources/axis_messages.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Edges of the box and grid lines are these parts of the font height wide.
constexpr int framePart = 12;
constexpr int gridPart = 24;
/// Images on paper have at least so many pixels to an inch.
constexpr int imagePerInch = 300;
/// The grid of the floor lies so little below it that a surface which touches the floor covers it.
constexpr double underFloor = -0.5 - 1e-5;

}  // namespace

int A2_3DAxis::imageUnits(const CDC& dc)
{
    return isPage(dc) ? std::max(1, dc.GetDeviceCaps(LOGPIXELSX) / imagePerInch) : 1;
}

int A2_3DAxis::imagePixels(const CDC& dc)
{
    if (!isPage(dc))
        return std::max(1, dc.GetPixelRatio());
    const int perInch = std::max(1, dc.GetDeviceCaps(LOGPIXELSX));
    return perInch < imagePerInch ? (imagePerInch + perInch - 1) / perInch : 1;
}

void A2_3DAxis::draw(CDC& dc, CRect& rect)
{
    CDC* const before = dc_;
    const int options = options_;
    BoxLayout layout;
    if (composeLayout(dc, rect, layout)) {
        if (isPage(dc))  // which takes vectors and a finer image
            setFlag(axisBitmapMode, 0);
        const HPALETTE old = BeginPalette();
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(layout.picture);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(workColor(1));
        if (isFlagSet(axisBitmapMode)) {
            drawInRaster(dc, rect, layout);
        } else {
            drawImage(dc);
            drawWalls(dc, layout);
            drawChilds(dc, rect, range_);
        }
        drawAround(dc, layout);
        if (isWithoutData())
            drawNoData(dc);
        dc.RestoreDC(saved);
        EndPalette(old);
    }
    options_ = options;
    dc_ = before;
}

int A2_3DAxis::drawChilds(CDC& dc, CRect&, TMinMax&)
{
    for (int i = 0; i < childs_.count(); ++i) {
        const int saved = dc.SaveDC();
        const AxisPenState state(*this);
        childs_(i)->draw3D(dc, *this);
        dc.RestoreDC(saved);
    }
    return childs_.count();
}

void A2_3DAxis::addSeen(std::span<const BoxPoint> points, PicturePieces& pieces) const
{
    if (!drawing_->lines)
        return;
    const double pixel = FigureUnits(dc_).perPixel();
    beforeCurtains(points, pixel,
                   [&](std::span<const BoxPoint> piece) { drawing_->lines->add(piece, pieces); });
}

void A2_3DAxis::line3D(CDC& dc, std::span<const BoxPoint> points)
{
    PicturePieces pieces;
    addSeen(points, pieces);
    strokePieces(dc, pieces, lineStyle_ != PS_SOLID);
}

void A2_3DAxis::strokePieces(CDC& dc, const PicturePieces& pieces, int dashed)
{
    DeviceStrokes strokes(dc, *this, color_, std::max(1, lineWidth_));
    const double least = MapContours::leastDash * FigureUnits(dc).perPixel();
    for (std::size_t i = 0; i < pieces.count(); ++i) {
        const std::span<const CPointF> piece = pieces.piece(i);
        const auto count = static_cast<int>(piece.size());
        if (dashed)
            strokes.dashes(piece.data(), count, std::max(least, fHeight_ * MapContours::dashPart),
                           std::max(least, fHeight_ * MapContours::gapPart));
        else
            strokes.polyline(piece.data(), count);
    }
}

/// What is seen of the grid and the edges of the three walls at the back.
void A2_3DAxis::findWalls(const BoxLayout& layout)
{
    std::vector<double> of = {static_cast<double>(scene())};
    for (const TickSet& set : layout.sets) {
        of.push_back(unsetMinimum);  // no tick
        for (const TickSet::Tick& tick : set.major)
            of.push_back(tick.value);
    }
    if (of == drawing_->wallsOf)
        return;
    drawing_->wallsOf = std::move(of);
    const BoxEdges edges = view_.edges();
    const double wallP = edges.wallP, wallQ = edges.wallQ;
    PicturePieces& grid = drawing_->grid;
    PicturePieces& frame = drawing_->frame;
    grid = frame = PicturePieces();
    const auto line = [&](PicturePieces& to, const BoxPoint& a, const BoxPoint& b) {
        const BoxPoint ends[] = {a, b};
        addSeen(ends, to);
    };
    const auto isWithin = [](double place) { return place > -0.5 && place < 0.5; };
    for (const TickSet::Tick& tick : layout.sets[0].major) {
        const double p = placeOf(0, tick.value) - 0.5;
        if (!isWithin(p))
            continue;
        line(grid, {p, -0.5, underFloor}, {p, 0.5, underFloor});
        line(grid, {p, wallQ, -0.5}, {p, wallQ, 0.5});
    }
    for (const TickSet::Tick& tick : layout.sets[1].major) {
        const double q = placeOf(1, tick.value) - 0.5;
        if (!isWithin(q))
            continue;
        line(grid, {-0.5, q, underFloor}, {0.5, q, underFloor});
        line(grid, {wallP, q, -0.5}, {wallP, q, 0.5});
    }
    // two Z axes that share the box would make two grids of one wall
    for (int i = 0; i < (isStacked() ? zCount() : 1); ++i) {
        const BoxZ& z = shownZ(i);
        for (const TickSet::Tick& tick : layout.sets[2 + static_cast<std::size_t>(i)].major) {
            const double s = z.floor + heightPlace(i, tick.value) * (z.top - z.floor);
            if (!isWithin(s))
                continue;
            line(grid, {-0.5, wallQ, s}, {0.5, wallQ, s});
            line(grid, {wallP, -0.5, s}, {wallP, 0.5, s});
        }
    }
    for (const double s : {-0.5, 0.5}) {
        line(frame, {-0.5, wallQ, s}, {0.5, wallQ, s});
        line(frame, {wallP, -0.5, s}, {wallP, 0.5, s});
    }
    line(frame, {-0.5, -wallQ, -0.5}, {0.5, -wallQ, -0.5});
    line(frame, {-wallP, -0.5, -0.5}, {-wallP, 0.5, -0.5});
    line(frame, {wallP, wallQ, -0.5}, {wallP, wallQ, 0.5});
    line(frame, {-wallP, wallQ, -0.5}, {-wallP, wallQ, 0.5});
    line(frame, {wallP, -wallQ, -0.5}, {wallP, -wallQ, 0.5});
    for (int i = 1; isStacked() && i < zCount(); ++i) {
        const double s = shownZ(i).ground;
        const BoxPoint floor[] = {
            {-0.5, -0.5, s}, {0.5, -0.5, s}, {0.5, 0.5, s}, {-0.5, 0.5, s}, {-0.5, -0.5, s}};
        addSeen(floor, frame);
    }
}

void A2_3DAxis::drawWalls(CDC& dc, const BoxLayout& layout)
{
    const AxisPenState state(*this);
    findWalls(layout);
    const FigureUnits units(dc);
    setLineStyle(PS_SOLID);
    setColor(workColor(3));
    setLineWidth(isFlagSet(axisBitmapMode) ? 1 : units.line(fHeight_, gridPart));
    strokePieces(dc, drawing_->grid, 0);
    setColor(workColor(1));
    setLineWidth(units.line(fHeight_, framePart));
    strokePieces(dc, drawing_->frame, 0);
}

/// Ticks, labels, titles and the header: over everything, hidden by nothing.
void A2_3DAxis::drawAround(CDC& dc, const BoxLayout& layout)
{
    const SelectedObject<CPen> pen(
        dc, CPen(PS_SOLID, FigureUnits(dc).line(fHeight_, framePart), workColor(1)));
    for (const BoxTick& tick : layout.ticks) {
        const CPointF ends[] = {tick.from, tick.to};
        dc.PolylineF(ends, 2);
    }
    const auto nearest = [](double v) { return truncated(std::floor(v + 0.5)); };
    for (const int turned : {0, 1}) {
        CFont font;
        if (!CreateAxisFont(font, fHeight_, 0, turned ? 90.0 : 0.0))
            continue;
        const SelectedObject<CFont> selected(dc, font);
        for (const BoxText& text : layout.texts) {
            if (text.turned != turned)
                continue;
            const CSize size = dc.GetTextExtent(text.text);
            if (turned)  // starts at its lower end, its top to the left
                dc.TextOut(nearest(text.centre.x - size.cy * 0.5),
                           nearest(text.centre.y + size.cx * 0.5), text.text);
            else
                dc.TextOut(nearest(text.centre.x - size.cx * 0.5),
                           nearest(text.centre.y - size.cy * 0.5), text.text);
        }
    }
    CFont bold;
    if (!layout.header.empty() && CreateAxisFont(bold, fHeight_, 1, 0.0)) {
        const SelectedObject<CFont> selected(dc, bold);
        CRect text(layout.picture.left, layout.headerTop, layout.picture.right,
                   layout.headerTop + layout.headerHeight);
        dc.DrawText(layout.header, text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    }
}

void A2_3DAxis::drawNoData(CDC& dc) const
{
    CFont font;
    if (!CreateAxisFont(font, fHeight_, 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const CSize size = dc.GetTextExtent(noData);
    const CPointF middle = view_.project({0, 0, 0});
    dc.TextOut(truncated(middle.x - size.cx * 0.5), truncated(middle.y - size.cy * 0.5), noData);
}

}  // namespace pavane

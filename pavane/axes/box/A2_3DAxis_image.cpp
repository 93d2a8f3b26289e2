// The surfaces and floors of a box as pixels.
#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/BoxDrawing.h"
#include "pavane/axes/box/soft_edges.h"
#include "pavane/axes/box/SurfaceRaster.h"
#include "pavane/axes/figure_units.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/bitmap_header.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Palette indices of an image of its own: what has no colours, and black dots.
constexpr int plainIndex = 230;
constexpr COLORREF blankColor = RGB(192, 192, 192);

int floorDivision(int a, int b) { return a / b - (a % b != 0 && (a < 0) != (b < 0)); }

/// The colours of two surfaces in one table: the same ones for both, or half of the table each.
struct ImageColors {
    std::array<COLORREF, 256> table{};
    SurfaceColors colors[2];

    explicit ImageColors(const std::array<BoxSurface, 2>& surfaces)
    {
        table.fill(RGB(255, 255, 255));
        const AColorsGraph* graphs[2] = {};
        for (std::size_t i = 0; i < 2; ++i) {
            if (!surfaces[i].graph)
                continue;
            graphs[i] = &surfaces[i].graph->ColorGraph();
            colors[i].cells = &graphs[i]->cells();
            colors[i].scale = &graphs[i]->scale();
        }
        int areTwo = 0;
        for (int i = 0; graphs[0] && graphs[1] && i < MapColors().count; ++i)
            areTwo |= graphs[0]->mapColor(i) != graphs[1]->mapColor(i);
        const int count = areTwo ? MapColors().count / 2 : MapColors().count;
        for (int i = 0; i < 2; ++i) {
            if (!graphs[i])
                continue;
            colors[i].colors.first = areTwo ? i * count : 0;
            colors[i].colors.count = count;
            for (int k = 0; k < count; ++k)
                table[static_cast<std::size_t>(colors[i].colors.first) +
                      static_cast<std::size_t>(k)] = graphs[i]->mapColor(areTwo ? k * 2 : k);
            table[static_cast<std::size_t>(colors[i].colors.blank)] = blankColor;
        }
    }
};

/// Gives surfaces without colours, but not their floors, the index `plain`.
void clearPlain(const std::array<BoxSurface, 2>& surfaces, const SurfaceRaster& raster,
                unsigned char* bits, std::ptrdiff_t stride, unsigned char plain)
{
    const auto isPlain = [&](std::size_t i) {
        return surfaces[i].graph && !(surfaces[i].graph->GetStyle() & surfaceColors);
    };
    const bool plainFirst = isPlain(0), plainSecond = isPlain(1);
    if (!plainFirst && !plainSecond)
        return;
    for (int x = 0; x < raster.width(); ++x)
        for (int y = 0; y < raster.height(); ++y) {
            const SurfacePixel& pixel = raster.pixel(x, y);
            if (pixel.part != SurfacePart::nothing && pixel.part != SurfacePart::floor &&
                (pixel.second ? plainSecond : plainFirst))
                bits[y * stride + x] = plain;
        }
}

/// Of how many columns or rows neighbouring pixels of a surface may be apart, before there is
/// something between them that is hidden.
int nearCells(const BoxSurface& surface, const BoxTransform& t, double pixelsOfUnit)
{
    constexpr int least = 3;
    const SurfaceGrid& grid = surface.grid;
    const CPointF column{t.xp * grid.stepP(), t.yp * grid.stepP()};
    const CPointF row{t.xq * grid.stepQ(), t.yq * grid.stepQ()};
    const double longer = std::max(std::hypot(column.x, column.y), std::hypot(row.x, row.y));
    const double pixels = std::fabs(column.x * row.y - column.y * row.x) / longer * pixelsOfUnit;
    const int most = std::max(least, std::max(grid.columns(), grid.rows()) / 16);
    return pixels * most > least ? std::max(least, static_cast<int>(least / pixels)) : most;
}

/// Takes the light off surfaces that want none beside one that does.
void clearLight(const std::array<BoxSurface, 2>& surfaces, const SurfaceRaster& raster,
                const AMatrix<unsigned char>& bits, const std::array<COLORREF, 256>& table,
                AMatrix<std::uint32_t>& image)
{
    const auto isDull = [&](std::size_t i) {
        return surfaces[i].graph && !(surfaces[i].graph->GetStyle() & surfaceLight);
    };
    const bool dullFirst = isDull(0), dullSecond = isDull(1);
    if (!dullFirst && !dullSecond)
        return;
    const SurfaceShades shades;
    for (int x = 0; x < raster.width(); ++x)
        for (int y = 0; y < raster.height(); ++y) {
            const SurfacePixel& pixel = raster.pixel(x, y);
            if (pixel.part == SurfacePart::nothing || !(pixel.second ? dullSecond : dullFirst))
                continue;
            const COLORREF color = table[bits(y, x)];
            const double shade = pixel.part == SurfacePart::under   ? shades.under
                                 : pixel.part == SurfacePart::skirt ? shades.skirt
                                                                    : 1;
            const auto part = [shade](int value) {
                // NOLINTNEXTLINE(bugprone-incorrect-roundings): never below 0, once a pixel
                return static_cast<std::uint32_t>(value * shade + 0.5);
            };
            image(bits.rows() - 1 - y, x) = 0xFF000000U | part(GetRValue(color)) << 16 |
                                            part(GetGValue(color)) << 8 | part(GetBValue(color));
        }
}

}  // namespace

/// Lattices alone need no image.
int A2_3DAxis::needsImage() const
{
    for (const BoxSurface& surface : drawing_->surfaces)
        if (surface.graph && !surface.grid.isEmpty() &&
            ((surface.graph->GetStyle() & (surfaceColors | surfaceLight | surfaceSkirt)) ||
             (surface.graph->GetFloor() & floorColors)))
            return 1;
    return 0;
}

/// One image of all that has colours, in the finest pixels of the device, on a page in those of
/// `imageUnits`.
void A2_3DAxis::drawImage(CDC& dc)
{
    const CRect room = view_.rect();
    const int units = imageUnits(dc), pixels = imagePixels(dc);
    const CRect& graph = graphRect_;
    // whole units and whole pixels
    const auto first = [&](int edge, int origin) {
        return floorDivision(edge - origin, units) * pixels;
    };
    const auto end = [&](int edge, int origin) {
        return -floorDivision(-(edge + 1 - origin), units) * pixels;
    };
    const CRect area(first(graph.left, room.left), first(graph.top, room.top),
                     end(graph.right, room.left), end(graph.bottom, room.top));
    if (!needsImage() || area.IsRectEmpty())
        return;
    int light = 0;
    for (const BoxSurface& surface : drawing_->surfaces)
        light |= surface.graph && (surface.graph->GetStyle() & surfaceLight);
    const SurfaceRaster& raster = seenSurfaces(area, units, pixels, light);
    if (raster.isEmpty())
        return;
    const int width = raster.width(), height = raster.height();
    const ImageColors colors(drawing_->surfaces);
    AMatrix<unsigned char> bits(height, width);
    AMatrix<std::uint32_t> image(height, width);
    if (bits.cells() < 1 || image.cells() < 1 ||
        !paintSurface(raster, colors.colors[0], colors.colors[1], bits.data(), width))
        return;
    clearPlain(drawing_->surfaces, raster, bits.data(), width, plainIndex);
    std::fill(image.data(), image.data() + image.cells(), 0xFFFFFFFF);
    shadeSurface(raster, bits.data(), width, colors.table, SurfaceShades(), image.row(height - 1),
                 -width);
    if (light)
        clearLight(drawing_->surfaces, raster, bits, colors.table, image);
    if (!draft_) {
        std::array<int, 2> columns = {1, 1};
        int apart = 0;
        for (std::size_t i = 0; i < 2; ++i) {
            const BoxSurface& surface = drawing_->surfaces[i];
            if (surface.grid.isEmpty())
                continue;
            columns[i] = surface.grid.mapColumns();
            apart = std::max(apart, nearCells(surface, view_.transform(), 1.0 * pixels / units));
        }
        softenEdges(raster, columns, apart, image.row(height - 1), -width);
    }
    std::array<unsigned char, bitmapInfoSize> header{};
    writeBitmapInfo(header.data(), width, height, 32, 0);
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(drawing_->picture);
    dc.StretchDIBits(room.left + area.left / pixels * units, room.top + area.top / pixels * units,
                     area.Width() / pixels * units, area.Height() / pixels * units, 0, 0, width,
                     height, image.data(), header.data(), DIB_RGB_COLORS, SRCCOPY);
    dc.RestoreDC(saved);
    if (isPage(dc))  // which is drawn once, and is large
        drawing_->seen.clear();
}

/// The surfaces in `pixels` pixels for `units` units; kept until something else is seen. Lines go
/// through the middles of units, so that the middle of a unit is where the view has its corner.
const SurfaceRaster& A2_3DAxis::seenSurfaces(const CRect& area, int units, int pixels, int light)
{
    SurfaceRaster& seen = drawing_->seen;
    const std::vector<double> of = {
        static_cast<double>(scene()),     static_cast<double>(area.left),
        static_cast<double>(area.top),    static_cast<double>(area.right),
        static_cast<double>(area.bottom), static_cast<double>(units),
        static_cast<double>(pixels),      static_cast<double>(light != 0)};
    if (!seen.isEmpty() && of == drawing_->seenOf)
        return seen;
    const CRect room = view_.rect();
    BoxView view = view_;
    view.fit(CRect(0, 0, room.Width() * pixels / units, room.Height() * pixels / units));
    const CPointF pan = view.pan();
    const double half = 0.5 * pixels / units;
    view.setPan(pan.x + half / view.rect().Width(), pan.y + half / view.rect().Height());
    drawing_->seenOf = of;
    if (!seen.draw(view, drawing_->scene, area, light))
        seen.clear();
    return seen;
}

/// What the raster of bitmap mode shows, but for colours: indices stay when these change.
std::vector<double> A2_3DAxis::rasterContent(const BoxLayout& layout) const
{
    std::vector<double> from = {static_cast<double>(scene()),
                                static_cast<double>(childs_.count()),
                                range_.xMin,
                                range_.xMax,
                                range_.yMin,
                                range_.yMax,
                                range_.zMin,
                                range_.zMax,
                                shownZ(1).range.min,
                                shownZ(1).range.max,
                                static_cast<double>(fHeight_)};
    for (const TickSet& set : layout.sets) {
        from.push_back(unsetMinimum);  // no tick
        for (const TickSet::Tick& tick : set.major)
            from.push_back(tick.value);
    }
    for (const BoxSurface& surface : drawing_->surfaces) {
        if (!surface.graph)
            continue;
        const AColorsGraph& colors = surface.graph->ColorGraph();
        for (const double value :
             {static_cast<double>(surface.graph->GetStyle()),
              static_cast<double>(surface.graph->GetFloor()), surface.graph->GetLatticeSpacing(),
              static_cast<double>(surface.graph->looks()),
              static_cast<double>(surface.graph->contours().color()),
              static_cast<double>(surface.graph->contours().width()), colors.scale().low(),
              colors.scale().high(), static_cast<double>(colors.scale().kind())})
            from.push_back(value);
        for (const double level : surface.graph->levels())
            from.push_back(level);
    }
    return from;
}

void A2_3DAxis::drawInRaster(CDC& dc, CRect& rect, const BoxLayout& layout)
{
    const std::vector<double> content = rasterContent(layout);
    const bool isKept = isFlagSet(axisBitmapCache) && !draft_ && dib_ && dib_->lpArray() &&
                        dib_->rect() == graphRect_ && content == drawing_->rasterOf;
    if (!isKept) {
        SetDib(new (std::nothrow) ADIBase(graphRect_));
        if (!dib_ || !dib_->lpArray())
            return;
        *dib_ = static_cast<short>(paletteIndex(workColor(0)));
        paintIndices();
        drawWalls(dc, layout);
        drawChilds(dc, rect, range_);
        drawing_->rasterOf = draft_ ? std::vector<double>() : content;
    }
    dib_->Draw(dc);
}

/// The surfaces as palette indices. These have no darker ones: an underside has black dots.
void A2_3DAxis::paintIndices()
{
    const CRect& graph = graphRect_;
    const CRect room = view_.rect();
    if (!needsImage())
        return;
    const SurfaceRaster& raster =
        seenSurfaces(CRect(graph.left - room.left, graph.top - room.top,
                           graph.right + 1 - room.left, graph.bottom + 1 - room.top),
                     1, 1, 0);
    if (raster.isEmpty())
        return;
    SurfaceColors colors[2];
    for (std::size_t i = 0; i < 2; ++i)
        if (const ASurfaceGraph* const graphOf = drawing_->surfaces[i].graph) {
            colors[i].cells = &graphOf->ColorGraph().cells();
            colors[i].scale = &graphOf->ColorGraph().scale();
        }
    unsigned char* const bits = &(*dib_)(graph.left, graph.top);
    const std::ptrdiff_t stride = -dib_->scanWidth();
    if (!paintSurface(raster, colors[0], colors[1], bits, stride))
        return;
    clearPlain(drawing_->surfaces, raster, bits, stride,
               static_cast<unsigned char>(paletteIndex(workColor(0))));
    const auto dark = static_cast<unsigned char>(paletteIndex(workColor(1)));
    for (int x = 0; x < raster.width(); ++x)
        for (int y = 0; y < raster.height(); ++y)
            if (raster.pixel(x, y).part == SurfacePart::under && (x + y) % 2 == 0)
                bits[y * stride + x] = dark;
}

void A2_3DAxis::dropCache() { drawing_->rasterOf.clear(); }

}  // namespace pavane

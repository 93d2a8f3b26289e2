#include "pavane/axes/box/ASurfaceGraph.h"

#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/BoxDrawing.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/device_strokes.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Points of contours nearer together than this, in pixels of 96 per inch, are one.
constexpr double finestPixel = 0.4;
/// While the view moves longer contours than these are left out.
constexpr std::int64_t mostDraftPoints = 20000;
/// Lattice lines are this part of a pixel wide on a page.
constexpr double latticeWidth = 0.5;
constexpr int outlinePart = 8;

/// What is seen of some lines, as long as `of` is what it was found for.
struct Seen {
    std::vector<double> of;
    std::vector<PicturePieces> pieces;

    bool isOf(std::vector<double> now)
    {
        if (now == of)
            return true;
        of = std::move(now);
        pieces.clear();
        return false;
    }
};

}  // namespace

struct SurfaceLinesSeen {
    Seen contours, lattice, outlines;
};

ASurfaceGraph::~ASurfaceGraph() = default;

ASurfaceGraph::ASurfaceGraph(ABAxis* axis, const AMatrixAccess& cells, const TMinMax& centres,
                             int asItem)
    : ALevelsColorGraph(axis, cells, centres, asItem), seen_(std::make_unique<SurfaceLinesSeen>())
{
}

int ASurfaceGraph::SetColorMap(const AMatrixAccess* cells)
{
    if (cells &&
        (cells->rows() != this->cells().rows() || cells->columns() != this->cells().columns()))
        return 0;
    colors_.reset();
    ++looks_;
    if (cells) {
        TMinMax places = centres();
        places.zMin = unsetMinimum;
        places.zMax = unsetMaximum;
        colors_ = std::make_unique<AColorsGraph>(nullptr, *cells, places, 0);
    }
    return 1;
}

void ASurfaceGraph::followModule()
{
    AColorsGraph::followModule();
    if (colors_)
        colors_->followModule();
}

void ASurfaceGraph::setPaletteColors(const SharedPalette& palette)
{
    AColorsGraph::setPaletteColors(palette);
    if (colors_)
        colors_->setPaletteColors(palette);
}

void ASurfaceGraph::SetLatticeSpacing(double pixels)
{
    if (std::isfinite(pixels))
        spacing_ = std::max(1.0, pixels);
}

void ASurfaceGraph::SetAreaOutlines(std::vector<std::vector<CPointF>> outlines, COLORREF color)
{
    outlines_ = std::move(outlines);
    outlineColor_ = color;
    ++looks_;
}

void ASurfaceGraph::SetLatticeColor(COLORREF color)
{
    latticeColor_ = color;
    ++looks_;
}

MapScale ASurfaceGraph::heightScale(const TMnMx& range) const
{
    const MapScaleKind kind = scale().kind();
    MapScale heights(kind, range.min, range.max);
    if (kind == MapScaleKind::logarithmic && range.min <= 0 && noise().sigma < range.max)
        heights.setRange(kind, noise().sigma, range.max);
    if (kind == MapScaleKind::equalized)
        heights.equalize(cells());
    return heights;
}

void ASurfaceGraph::cellsChanged()
{
    ALevelsColorGraph::cellsChanged();
    if (colors_)
        colors_->cellsChanged();
    ++version_;
}

void ASurfaceGraph::draw3D(CDC& dc, A2_3DAxis& axis)
{
    const SurfaceGrid* const grid = axis.gridOf(*this);
    if (!grid)
        return;
    axis.setLineStyle(PS_SOLID);
    if (grid->columns() < 2 || grid->rows() < 2)
        return drawLine(dc, axis);
    drawLattice(dc, axis);
    drawContours(dc, axis);  // which the lattice would cut into dashes
    drawOutlines(dc, axis);
}

/// Cells in one line make no surface.
void ASurfaceGraph::drawLine(CDC& dc, A2_3DAxis& axis) const
{
    const SurfaceGrid& grid = *axis.gridOf(*this);
    const int count = std::max(grid.columns(), grid.rows());
    std::vector<BoxPoint> line;
    for (int k = 0; k < count; ++k)
        line.push_back(grid.columns() > 1 ? grid.point(k, 0) : grid.point(0, k));
    if (count == 1)
        line.push_back({line[0].p, line[0].q, grid.floor()});
    axis.setColor(latticeColor_);
    axis.setLineWidth(std::max(1, axis.graphLine(1)));
    axis.line3D(dc, line);
}

void ASurfaceGraph::drawLattice(CDC& dc, A2_3DAxis& axis) const
{
    const int lines = style_ & (surfaceLinesX | surfaceLinesY);
    if (!lines)
        return;
    const FigureUnits units(dc);
    // colours and light show every peak themselves
    const int isOpaque = (style_ & (surfaceColors | surfaceLight)) != 0;
    if (!seen_->lattice.isOf(
            {static_cast<double>(axis.scene()), spacing_, 1.0 * lines, 1.0 * isOpaque})) {
        const SurfaceLattice lattice =
            latticeOf(*axis.gridOf(*this), axis.view(), spacing_ * units.perPixel(), !isOpaque);
        PicturePieces pieces;
        if (lines & surfaceLinesX)
            for (const std::vector<BoxPoint>& line : lattice.alongX)
                axis.addSeen(line, pieces);
        if (lines & surfaceLinesY)
            for (const std::vector<BoxPoint>& line : lattice.alongY)
                axis.addSeen(line, pieces);
        seen_->lattice.pieces.push_back(std::move(pieces));
    }
    axis.setColor(latticeColor_);
    axis.setLineWidth(std::max(1, static_cast<int>(units.perPixel() * latticeWidth)));
    axis.strokePieces(dc, seen_->lattice.pieces.front(), 0);
}

/// The points of a line, in columns and rows of the map, in those of the grid; without those that
/// a picture cannot tell apart.
std::vector<CPointF> ASurfaceGraph::onGrid(const A2_3DAxis& axis, std::span<const CPointF> points,
                                           double pixel) const
{
    const SurfaceGrid& grid = *axis.gridOf(*this);
    const double floor = grid.floor();
    std::vector<CPointF> line;
    CPointF last{HUGE_VAL, HUGE_VAL};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const BoxPoint at =
            axis.boxPoint(*this, MPXtoRPX(points[i].x), MPYtoRPY(points[i].y), zRange().min);
        const CPointF seen = axis.view().project({at.p, at.q, floor});
        if (i > 0 && i + 1 < points.size() && std::fabs(seen.x - last.x) < pixel * finestPixel &&
            std::fabs(seen.y - last.y) < pixel * finestPixel)
            continue;
        last = seen;
        line.push_back({grid.columnOf(at.p), grid.rowOf(at.q)});
    }
    return line;
}

int ASurfaceGraph::traceContours(const std::vector<double>& values) const
{
    if (tracedVersion_ == version_ && tracedLevels_ == values)
        return 1;
    if (!lines_.trace(cells(), values))
        return 0;
    tracedVersion_ = version_;
    tracedLevels_ = values;
    return 1;
}

/// Of each level what is seen on the surface, and then what is seen on the floor.
void ASurfaceGraph::findContours(A2_3DAxis& axis, double pixel) const
{
    const SurfaceGrid& grid = *axis.gridOf(*this);
    seen_->contours.pieces.resize(tracedLevels_.size() * 2);
    for (const ContourLine& line : lines_.lines()) {
        const auto level = static_cast<std::size_t>(line.level) * 2;
        const std::vector<CPointF> points =
            onGrid(axis, {lines_.points(line), static_cast<std::size_t>(line.count)}, pixel);
        if (style_ & surfaceContours)
            axis.addSeen(drapeLine(grid, points, line.closed), seen_->contours.pieces[level]);
        if (floor_ & floorContours)
            axis.addSeen(flatLine(grid, points, axis.floorOf(*this), line.closed),
                         seen_->contours.pieces[level + 1]);
    }
}

void ASurfaceGraph::drawContours(CDC& dc, A2_3DAxis& axis) const
{
    const int where = (style_ & surfaceContours) | (floor_ & floorContours);
    const std::vector<double> values = levels();
    if (!where || !traceContours(values) ||
        (axis.GetDraft() && lines_.pointCount() > mostDraftPoints))
        return;
    std::vector<double> of = values;
    of.insert(of.end(), {static_cast<double>(axis.scene()), 1.0 * where, 1.0 * version_});
    if (!seen_->contours.isOf(std::move(of)))
        findContours(axis, FigureUnits(dc).perPixel());
    const AColorsGraph* const ground = isColors() && !colors_ ? this : nullptr;
    const AColorsGraph* const below = (floor_ & floorColors) && !colors_ ? this : nullptr;
    axis.setLineWidth(contours().width(dc, axis.getFHeight()));
    for (std::size_t level = 0; level < values.size(); ++level) {
        axis.setColor(contours().color(values[level], below));
        axis.strokePieces(dc, seen_->contours.pieces[level * 2 + 1], values[level] < 0);
        axis.setColor(contours().color(values[level], ground));
        axis.strokePieces(dc, seen_->contours.pieces[level * 2], values[level] < 0);
    }
}

void ASurfaceGraph::drawOutlines(CDC& dc, A2_3DAxis& axis) const
{
    const FigureUnits units(dc);
    if (!seen_->outlines.isOf({static_cast<double>(axis.scene()), 1.0 * looks_})) {
        PicturePieces pieces;
        for (const std::vector<CPointF>& outline : outlines_)
            axis.addSeen(drapeLine(*axis.gridOf(*this), onGrid(axis, outline, units.perPixel()), 1),
                         pieces);
        seen_->outlines.pieces.push_back(std::move(pieces));
    }
    axis.setColor(outlineColor_);
    axis.setLineWidth(units.line(axis.getFHeight(), outlinePart));
    axis.strokePieces(dc, seen_->outlines.pieces.front(), 0);
}

}  // namespace pavane

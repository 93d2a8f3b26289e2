// What hides in a box: its surfaces as grids of heights, and curtains.
#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/A3DLinesGraph.h"
#include "pavane/axes/box/BoxDrawing.h"
#include "pavane/axes/figure_units.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace pavane
{
namespace
{

/// While the view moves a surface has at most about so many cells a side.
constexpr int draftSide = 320;
/// A cell whose centre is out of the range by rounding is in it.
constexpr double cellAllowance = 1e-6;

/// First cell and count of those whose centres lie between two places (in cells, any order).
void cellsBetween(double a, double b, int count, int& first, int& number)
{
    first = number = 0;
    if (!std::isfinite(a) || !std::isfinite(b))
        return;
    const double low = std::clamp(std::ceil(std::min(a, b) - cellAllowance), 0.0, 1.0 * count);
    const double high =
        std::clamp(std::floor(std::max(a, b) + cellAllowance), -1.0, 1.0 * count - 1);
    first = static_cast<int>(low);
    number = std::max(0, static_cast<int>(high) - first + 1);
}

}  // namespace

/// The two surfaces that are drawn: with two Z axes the first of each, if there is one.
void A2_3DAxis::findSurfaces()
{
    std::array<const ASurfaceGraph*, 2> found = {nullptr, nullptr};
    std::array<const ASurfaceGraph*, 2> firstOf = {nullptr, nullptr};
    for (int i = 0; i < childs_.count(); ++i) {
        const auto* const graph = dynamic_cast<const ASurfaceGraph*>(childs_(i));
        if (!graph || graph->cells().isEmpty() || graph->cellRange().isEmpty())
            continue;
        const auto z = static_cast<std::size_t>(zIndexOf(*graph));
        if (!firstOf[z])
            firstOf[z] = graph;
        if (!found[0])
            found[0] = graph;
        else if (!found[1])
            found[1] = graph;
    }
    if (firstOf[0] && firstOf[1])
        found = firstOf;
    for (std::size_t i = 0; i < found.size(); ++i) {
        BoxSurface& surface = drawing_->surfaces[i];
        if (surface.graph != found[i]) {
            surface = BoxSurface();
            surface.graph = found[i];
        }
        if (!surface.graph)
            continue;
        surface.z = zIndexOf(*surface.graph);
        const TMnMx z = shownZ(surface.z).range;
        std::vector<double>& from = surface.madeFrom;
        const std::vector<double> scale = {static_cast<double>(surface.graph->scale().kind()),
                                           z.min, z.max,
                                           static_cast<double>(surface.graph->cellsVersion())};
        if (from.size() < scale.size() || !std::equal(scale.begin(), scale.end(), from.begin())) {
            surface.scale = surface.graph->heightScale(z);
            from.clear();
        }
    }
}

/// Makes the grid of a surface again when it was made from something else.
void A2_3DAxis::makeGrid(BoxSurface& surface)
{
    const ASurfaceGraph& graph = *surface.graph;
    const AMatrixAccess& cells = graph.cells();
    CellPart part;
    cellsBetween(graph.RPXtoMPX(range_.xMin), graph.RPXtoMPX(range_.xMax), cells.columns(),
                 part.firstColumn, part.columns);
    cellsBetween(graph.RPYtoMPY(range_.yMin), graph.RPYtoMPY(range_.yMax), cells.rows(),
                 part.firstRow, part.rows);
    const BoxZ& z = shownZ(surface.z);
    SurfacePlace place;
    place.firstP = placeOf(0, graph.MPXtoRPX(part.firstColumn)) - 0.5;
    place.lastP = placeOf(0, graph.MPXtoRPX(part.firstColumn + part.columns - 1)) - 0.5;
    place.firstQ = placeOf(1, graph.MPYtoRPY(part.firstRow)) - 0.5;
    place.lastQ = placeOf(1, graph.MPYtoRPY(part.firstRow + part.rows - 1)) - 0.5;
    place.floor = z.floor;
    place.top = z.top;
    place.below = z.floor - z.ground;
    const std::vector<double> from = {static_cast<double>(graph.scale().kind()),
                                      z.range.min,
                                      z.range.max,
                                      static_cast<double>(graph.cellsVersion()),
                                      place.firstP,
                                      place.lastP,
                                      place.firstQ,
                                      place.lastQ,
                                      place.floor,
                                      place.top,
                                      place.below,
                                      static_cast<double>(part.firstColumn),
                                      static_cast<double>(part.firstRow),
                                      static_cast<double>(part.columns),
                                      static_cast<double>(part.rows),
                                      static_cast<double>(cells.columns()),
                                      static_cast<double>(cells.rows())};
    if (from != surface.madeFrom) {
        surface.madeFrom = from;
        surface.blocks.clear();
        if (part.columns < 1 || part.rows < 1 ||
            !surface.grid.set(cells, surface.scale, place, part))
            surface.grid.clear();
    }
    const int blockColumns = (surface.grid.columns() + draftSide - 1) / draftSide;
    const int blockRows = (surface.grid.rows() + draftSide - 1) / draftSide;
    if (draft_ && surface.blocks.isEmpty() && std::max(blockColumns, blockRows) > 1 &&
        !surface.blocks.setBlocks(surface.grid, blockColumns, blockRows))
        surface.blocks.clear();
}

/// What hides in the view as it is laid out.
void A2_3DAxis::prepareScene(CDC& dc)
{
    BoxDrawing& drawing = *drawing_;
    drawing.scene = SurfaceScene();
    drawing.scene.stacked = isStacked();
    SceneSurface* const parts[] = {&drawing.scene.first, &drawing.scene.second};
    for (std::size_t i = 0; i < drawing.surfaces.size(); ++i) {
        BoxSurface& surface = drawing.surfaces[i];
        if (!surface.graph)
            continue;
        makeGrid(surface);
        const SurfaceGrid& grid = surface.shown(draft_);
        if (grid.isEmpty())
            continue;
        parts[i]->grid = &grid;
        parts[i]->skirt = (surface.graph->GetStyle() & surfaceSkirt) != 0;
        parts[i]->floor = (surface.graph->GetFloor() & floorColors) != 0;
    }
    drawing.lines = std::make_unique<HiddenLines>(view_, drawing.scene, FigureUnits(dc).perPixel());
    const std::vector<BoxCurtain> before = std::move(drawing.curtains);
    drawing.curtains.clear();
    for (int i = 0; i < childs_.count(); ++i)
        if (const auto* const lines = dynamic_cast<const A3DLinesGraph*>(childs_(i)))
            lines->addCurtains(*this, drawing.curtains);
    tellScene(dc, before);
}

/// The scene gets another number when it is not that of the last drawing.
void A2_3DAxis::tellScene(CDC& dc, const std::vector<BoxCurtain>& before)
{
    static std::atomic<std::uint64_t> last = 0;  // graphs may be drawn in several axes
    BoxDrawing& drawing = *drawing_;
    const BoxTransform& t = view_.transform();
    const CRect room = view_.rect();
    std::vector<double> now = {t.x0, t.xp, t.xq, t.y0, t.yp, t.yq, t.ys};
    const BoxPoint size = view_.size();
    for (const double value :
         {size.p, size.q, size.s, static_cast<double>(room.left), static_cast<double>(room.top),
          static_cast<double>(room.right), static_cast<double>(room.bottom),
          FigureUnits(dc).perPixel(), static_cast<double>(drawing.scene.stacked)})
        now.push_back(value);
    for (const SceneSurface* const part : {&drawing.scene.first, &drawing.scene.second})
        for (const int value : {part->grid != nullptr, part->skirt != 0, part->floor != 0})
            now.push_back(value);
    for (const BoxSurface& surface : drawing.surfaces) {
        now.push_back(&surface.shown(draft_) == &surface.blocks);
        now.insert(now.end(), surface.madeFrom.begin(), surface.madeFrom.end());
    }
    if (now == drawing.numberOf && before == drawing.curtains)
        return;
    drawing.numberOf = std::move(now);
    drawing.number = ++last;
}

std::uint64_t A2_3DAxis::scene() const { return drawing_->number; }

std::vector<BoxPoint> A2_3DAxis::insideBox(const AGraph& graph,
                                           std::span<const BoxPoint> points) const
{
    constexpr BoxPoint gap{NAN, NAN, NAN};
    const BoxZ& z = shownZ(zIndexOf(graph));
    std::vector<BoxPoint> inside;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const BoxPoint& a = points[i - 1];
        const BoxPoint& b = points[i];
        double from = 0, to = 1;
        const auto cut = [&](double start, double end, double low, double high) {
            const double way = end - start;
            if (!std::isfinite(way) || (way == 0 && (start < low || start > high)))
                to = -1;
            if (way == 0 || to < from)
                return;
            const double enters = ((way > 0 ? low : high) - start) / way;
            const double leaves = ((way > 0 ? high : low) - start) / way;
            from = std::max(from, enters);
            to = std::min(to, leaves);
        };
        cut(a.p, b.p, -0.5, 0.5);
        cut(a.q, b.q, -0.5, 0.5);
        cut(a.s, b.s, z.floor, z.top);
        if (!(to >= from)) {
            inside.push_back(gap);
            continue;
        }
        const auto at = [&](double t) {
            return BoxPoint{a.p + (b.p - a.p) * t, a.q + (b.q - a.q) * t, a.s + (b.s - a.s) * t};
        };
        if (from > 0 || inside.empty() || !std::isfinite(inside.back().s)) {
            if (from > 0)
                inside.push_back(gap);
            inside.push_back(from > 0 ? at(from) : a);
        }
        inside.push_back(to < 1 ? at(to) : b);
        if (to < 1)
            inside.push_back(gap);
    }
    return inside;
}

const SurfaceGrid* A2_3DAxis::gridOf(const ASurfaceGraph& graph) const
{
    const BoxSurface* const surface = drawing_->surfaceOf(graph);
    if (!surface || surface->grid.isEmpty())
        return nullptr;
    return &surface->shown(draft_);
}

double A2_3DAxis::floorOf(const AGraph& graph) const { return shownZ(zIndexOf(graph)).ground; }

int A2_3DAxis::isInside(const AGraph& graph, const BoxPoint& at) const
{
    constexpr double half = 0.5 + 1e-9;
    const BoxZ& z = shownZ(zIndexOf(graph));
    return std::fabs(at.p) <= half && std::fabs(at.q) <= half && at.s >= z.floor - 1e-9 &&
           at.s <= z.top + 1e-9;
}

int A2_3DAxis::isSeen(const BoxPoint& at) const
{
    if (!drawing_->lines || drawing_->lines->sight().isHidden(at))
        return 0;
    const BoxPoint sight = view_.sight();
    return std::none_of(drawing_->curtains.begin(), drawing_->curtains.end(),
                        [&](const BoxCurtain& curtain) { return curtain.hides(at, sight); });
}

/// The pieces of a line that no curtain hides, each to `take`; where one ends is found to a small
/// part of a pixel.
void A2_3DAxis::beforeCurtains(std::span<const BoxPoint> points, double pixel,
                               const std::function<void(std::span<const BoxPoint>)>& take) const
{
    const std::vector<BoxCurtain>& curtains = drawing_->curtains;
    if (curtains.empty())
        return take(points);
    const BoxPoint sight = view_.sight();
    const auto isHidden = [&](const BoxPoint& at) {
        return std::any_of(curtains.begin(), curtains.end(),
                           [&](const BoxCurtain& curtain) { return curtain.hides(at, sight); });
    };
    const auto between = [](const BoxPoint& a, const BoxPoint& b, double t) {
        return BoxPoint{a.p + (b.p - a.p) * t, a.q + (b.q - a.q) * t, a.s + (b.s - a.s) * t};
    };
    const auto isFinite = [](const BoxPoint& at) {
        return std::isfinite(at.p) && std::isfinite(at.q) && std::isfinite(at.s);
    };
    std::vector<BoxPoint> piece;
    const auto end = [&] {
        if (piece.size() > 1)
            take(piece);
        piece.clear();
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        const BoxPoint& to = points[i];
        if (!isFinite(to) || (i > 0 && !isFinite(points[i - 1]))) {
            end();
            continue;
        }
        if (i == 0)
            continue;
        const BoxPoint& from = points[i - 1];
        const CPointF a = view_.project(from), b = view_.project(to);
        const double length = std::hypot(b.x - a.x, b.y - a.y) / pixel;
        const int steps = static_cast<int>(std::clamp(std::ceil(length), 1.0, 10000.0));
        double last = 0;
        bool wasHidden = isHidden(from);
        if (!wasHidden && piece.empty())
            piece.push_back(from);
        for (int k = 1; k <= steps; ++k) {
            const double here = static_cast<double>(k) / steps;
            const bool hidden = isHidden(between(from, to, here));
            if (hidden != wasHidden) {
                double low = last, high = here;  // halves of a step
                for (int round = 0; round < 5; ++round) {
                    const double middle = (low + high) / 2;
                    (isHidden(between(from, to, middle)) == wasHidden ? low : high) = middle;
                }
                piece.push_back(between(from, to, hidden ? low : high));
                if (hidden)
                    end();
            }
            wasHidden = hidden;
            last = here;
        }
        if (!wasHidden)
            piece.push_back(to);
    }
    end();
}

}  // namespace pavane

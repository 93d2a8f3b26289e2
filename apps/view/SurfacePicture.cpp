#include "apps/view/SurfacePicture.h"

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapLook.h"

#include <cmath>
#include <utility>

namespace pavane
{
namespace
{

constexpr COLORREF areaColor = RGB(255, 0, 0);
/// Height of the surface above what is drawn as floor at first, as a share of the longer edge; and
/// which part of the box is left below it for the floor to be seen.
constexpr double relief = 0.5;
constexpr double roomOfFloor = 0.5;
/// Low enough for contours on the floor, high enough for the far side of a source.
constexpr double firstElevation = 25;

}  // namespace

SurfacePicture::SurfacePicture() = default;
SurfacePicture::~SurfacePicture() = default;

void SurfacePicture::show(const MapContent& content)
{
    content_ = &content;
    const MapFrame& frame = content.frame;
    cells_ = std::make_unique<AFloatMatrixAccess>(content.map.cells);
    axis_ = std::make_unique<A2_3D2ZAxis>(frame.xDirection, 1, nullptr, 0);
    axis_->setNameOX(frame.xTitle);
    axis_->setNameOY(frame.yTitle);
    axis_->SetBase(content.map.cells.columns() * std::fabs(frame.xStep),
                   content.map.cells.rows() * std::fabs(frame.yStep));
    graph_ = new ASurfaceGraph(axis_.get(), *cells_, frame.centres(), 0);
    secondGraph_ = nullptr;
    second_.reset();
    graph_->setNames(frame.xTitle, frame.yTitle, frame.valueTitle);
    graph_->contours().setWidth(1);
    bar_ = std::make_unique<AAxisColorOP>(*graph_);
    figure_.setAxis(axis_.get());
    figure_.setMap(graph_);
    figure_.setBar(bar_.get());
    figure_.setSquareCells(0);
    setDisplay(display_);
    axis_->setView(firstView());
    contentChanged();
}

void SurfacePicture::contentChanged()
{
    graph_->cellsChanged();
    graph_->setStatistics(content_->range, content_->noise);
    graph_->setHeaderText(0, mapHeaderLine(content_->map.header, content_->range, content_->noise));
    planeChanged();
}

void SurfacePicture::planeChanged()
{
    const int plane = content_->map.header.plane;
    if (second_ && second_->setPlane(plane)) {
        secondGraph_->cellsChanged();
        secondGraph_->setStatistics(second_->content().range, second_->content().noise);
    }
    if (colorMap_ && colorMap_->setPlane(plane))
        graph_->cellsChanged();
}

BoxView SurfacePicture::firstView() const
{
    BoxView view;
    view.setView(BoxView::firstAzimuth, firstElevation);
    view.setHeight(relief * (hasSecond() ? 2 : 1) / (1 - axis_->GetFloorGap()));
    return view;
}

void SurfacePicture::setDisplay(const SurfaceDisplay& display)
{
    display_ = display;
    const double before = 1 - axis_->GetFloorGap();
    axis_->SetFloorGap(display.floor ? roomOfFloor : 0);
    axis_->SetBoxHeight(axis_->GetBoxHeight() * before / (1 - axis_->GetFloorGap()));
    for (ASurfaceGraph* const graph : {graph_, secondGraph_})
        if (graph) {
            graph->SetStyle(display.style);
            graph->SetFloor(display.floor);
        }
    followSecond();
}

int SurfacePicture::addSecond(const std::string& file, std::string& error)
{
    auto second = std::make_unique<SideMap>();
    if (!second->read(file, error)) {
        error = file + ": " + error;
        return 0;
    }
    (void)setSecond(std::move(second));
    return 1;
}

std::unique_ptr<SideMap> SurfacePicture::setSecond(std::unique_ptr<SideMap> second)
{
    const int had = hasSecond();
    otherBar_.reset();
    if (had)
        axis_->DeleteGraph(std::exchange(secondGraph_, nullptr));
    secondCells_.reset();
    second_.swap(second);
    if (second_) {
        (void)second_->setPlane(content_->map.header.plane);
        const MapContent& content = second_->content();
        secondCells_ = std::make_unique<AFloatMatrixAccess>(content.map.cells);
        secondGraph_ = new ASurfaceGraph(axis_.get(), *secondCells_, content.frame.centres(), 1);
        secondGraph_->setNames({}, {}, content.frame.valueTitle);
        secondGraph_->setStatistics(content.range, content.noise);
    }
    if (had != hasSecond())  // each has the height that one had
        axis_->SetBoxHeight(axis_->GetBoxHeight() * (had ? 0.5 : 2));
    makeOtherBar();
    setDisplay(display_);
    return second;
}

std::unique_ptr<SideMap> SurfacePicture::setColorMap(std::unique_ptr<SideMap> colors)
{
    if (colors)
        (void)colors->setPlane(content_->map.header.plane);
    std::unique_ptr<AMatrixAccess> cells;
    if (colors)
        cells = std::make_unique<AFloatMatrixAccess>(colors->content().map.cells);
    otherBar_.reset();
    if (graph_->SetColorMap(cells.get())) {
        colorMap_.swap(colors);
        colorCells_.swap(cells);
        if (colorMap_)
            graph_->ColorGraph().setNames({}, {}, colorMap_->content().frame.valueTitle);
    }
    makeOtherBar();
    followSecond();
    return colors;
}

int SurfacePicture::isAsLargeAs(const SurfacePicture& other) const
{
    return cells_->rows() == other.cells_->rows() && cells_->columns() == other.cells_->columns();
}

void SurfacePicture::makeOtherBar()
{
    otherBar_.reset();
    if (hasColorMap())
        otherBar_ = std::make_unique<AAxisColorOP>(graph_->ColorGraph());
    else if (hasSecond())
        otherBar_ = std::make_unique<AAxisColorOP>(*secondGraph_);
    figure_.setOtherBar(otherBar_.get());
}

/// The second map, and the one that gives colours, have the colours of the map, and the second one
/// its contours as well: levels that depend on the cells are those of its own.
void SurfacePicture::followSecond()
{
    ColorLook look(*graph_);
    look.range = TMnMx();
    if (hasColorMap())
        look.give(graph_->ColorGraph());
    if (!hasSecond())
        return;
    if (display_.sameRange)
        look.range = graph_->zRange();
    look.give(*secondGraph_);
    secondGraph_->contours() = graph_->contours();
    secondGraph_->contours().forget();  // the lines are those of the map
    if (levels_.goesOn)
        secondGraph_->contours().setLevels(levelsOf(levels_, *secondGraph_));
}

void SurfacePicture::applyOptions(const ViewOptions& options)
{
    applyLook(*graph_, *content_, options);
    if (options.freeAspect)
        axis_->SetBase(1, 1);
    const SurfaceWish& wish = options.surface;
    if (wish.wanted)
        axis_->SetView(wish.azimuth, wish.elevation);
    levels_ = options.levels;
    followSecond();
    if (!hasSecond() || !options.hasRange || !options.inPerCent)
        return;
    ColorLook look(*secondGraph_);
    look.range = rangeOf(options, *secondCells_);
    look.give(*secondGraph_);
}

int SurfacePicture::follow(const ALevelsColorGraph& map, const LevelChoice& levels)
{
    levels_ = levels;
    const TMnMx range = graph_->zRange();
    const MapScaleKind scale = graph_->scaleKind();
    ColorLook(map).give(*graph_);
    graph_->contours() = map.contours();
    graph_->setHeaderText(0, map.getHeaderText(0));
    followSecond();
    return !(graph_->zRange() == range) || graph_->scaleKind() != scale;
}

void SurfacePicture::setAreas(const std::vector<AreaOutline>& areas)
{
    std::vector<std::vector<CPointF>> outlines;
    for (const AreaOutline& area : areas) {
        outlines.emplace_back();
        for (const APoint<double>& point : area.points)
            outlines.back().push_back({graph_->RPXtoMPX(point.x), graph_->RPYtoMPY(point.y)});
    }
    graph_->SetAreaOutlines(std::move(outlines), areaColor);
}

void SurfacePicture::draw(CDC& dc, const CRect& rect)
{
    figure_.draw(dc, figure_.layOut(dc, rect));
}

std::vector<std::string> SurfacePicture::notes() const
{
    if (second_ && second_->content().range.isEmpty())
        return {"the second map has no finite cell"};
    return {};
}

}  // namespace pavane

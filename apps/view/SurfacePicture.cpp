#include "apps/view/SurfacePicture.h"

#include "apps/view/map_options.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/maps/map_titles.h"

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
    auto second = std::make_unique<MapContent>();
    if (!readMapContent(file, -1, *second, error)) {
        error = file + ": " + error;
        return 0;
    }
    setSecond(std::move(second));
    return 1;
}

void SurfacePicture::setSecond(std::unique_ptr<MapContent> second)
{
    const int had = hasSecond();
    if (had)
        axis_->DeleteGraph(std::exchange(secondGraph_, nullptr));
    secondCells_.reset();
    second_ = std::move(second);
    if (second_) {
        secondCells_ = std::make_unique<AFloatMatrixAccess>(second_->map.cells);
        secondGraph_ = new ASurfaceGraph(axis_.get(), *secondCells_, second_->frame.centres(), 1);
        secondGraph_->setNames({}, {}, second_->frame.valueTitle);
        secondGraph_->setStatistics(second_->range, second_->noise);
        secondGraph_->contours().setWidth(1);
    }
    if (had != hasSecond())  // each has the height that one had
        axis_->SetBoxHeight(axis_->GetBoxHeight() * (had ? 0.5 : 2));
    makeOtherBar();
    setDisplay(display_);
}

int SurfacePicture::setColorMap(std::unique_ptr<MapContent> colors)
{
    auto cells = colors ? std::make_unique<AFloatMatrixAccess>(colors->map.cells) : nullptr;
    otherBar_.reset();
    const int isTaken = graph_->SetColorMap(cells.get());
    if (isTaken) {
        colorMap_ = std::move(colors);
        colorCells_ = std::move(cells);
        if (colorMap_)
            graph_->ColorGraph().setNames({}, {}, colorMap_->frame.valueTitle);
    }
    makeOtherBar();
    followSecond();
    return isTaken;
}

void SurfacePicture::makeOtherBar()
{
    otherBar_.reset();
    if (hasColorMap())
        otherBar_ = std::make_unique<AAxisColorOP>(graph_->ColorGraph());
    else if (hasSecond())
        otherBar_ = std::make_unique<AAxisColorOP>(*secondGraph_);
}

/// The second map, and the one that gives colours, have the colours of the map.
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
}

void SurfacePicture::applyOptions(const ViewOptions& options)
{
    applyLook(*graph_, *content_, options);
    if (options.freeAspect)
        axis_->SetBase(1, 1);
    const SurfaceWish& wish = options.surface;
    if (wish.wanted)
        axis_->SetView(wish.azimuth, wish.elevation);
    followSecond();
}

int SurfacePicture::follow(const ALevelsColorGraph& map)
{
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
        for (const APoint<double>& point : area)
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
    if (second_ && second_->range.isEmpty())
        return {"the second map has no finite cell"};
    return {};
}

}  // namespace pavane

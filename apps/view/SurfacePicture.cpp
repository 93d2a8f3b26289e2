#include "apps/view/SurfacePicture.h"

#include "apps/view/map_options.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/map_titles.h"

#include <cmath>

namespace pavane
{
namespace
{

constexpr int usualStyle = surfaceColors | surfaceLight | surfaceContours;
constexpr COLORREF areaColor = RGB(255, 0, 0);

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
    graph_->setHeaderText(0, mapHeaderLine(content.map.header, content.range, content.noise));
    graph_->setStatistics(content.range, content.noise);
    graph_->contours().setWidth(1);
    graph_->SetStyle(usualStyle);
    graph_->SetFloor(floorContours);
    bar_ = std::make_unique<AAxisColorOP>(*graph_);
    figure_.setAxis(axis_.get());
    figure_.setMap(graph_);
    figure_.setBar(bar_.get());
    figure_.setSquareCells(0);
}

int SurfacePicture::addSecond(const std::string& file, std::string& error)
{
    auto second = std::make_unique<MapContent>();
    if (!readMapContent(file, -1, *second, error)) {
        error = file + ": " + error;
        return 0;
    }
    second_ = std::move(second);
    secondCells_ = std::make_unique<AFloatMatrixAccess>(second_->map.cells);
    secondGraph_ = new ASurfaceGraph(axis_.get(), *secondCells_, second_->frame.centres(), 1);
    secondGraph_->setNames({}, {}, second_->frame.valueTitle);
    secondGraph_->setStatistics(second_->range, second_->noise);
    secondGraph_->SetStyle(surfaceColors | surfaceLight);
    return 1;
}

void SurfacePicture::applyOptions(const ViewOptions& options)
{
    applyLook(*graph_, *content_, options);
    if (options.freeAspect)
        axis_->SetBase(1, 1);
    const SurfaceWish& wish = options.surface;
    if (wish.wanted)
        axis_->SetView(wish.azimuth, wish.elevation);
    if (secondGraph_)
        secondGraph_->setScale(graph_->scale().kind());
}

void SurfacePicture::follow(const ALevelsColorGraph& map)
{
    graph_->setCentres(map.centres());
    graph_->setScale(map.scale().kind());
    graph_->SetColorPlay(map.GetColorPlay());
    graph_->contours() = map.contours();
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

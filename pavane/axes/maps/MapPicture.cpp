#include "pavane/axes/maps/MapPicture.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ARgbLegend.h"
#include "pavane/axes/maps/map_titles.h"

#include <algorithm>

namespace pavane
{

MapPicture::MapPicture() = default;

MapPicture::~MapPicture() = default;

int MapPicture::open(const CString& fitsFile, CString& error, int plane)
{
    auto read = std::make_unique<MapContent>();
    if (!readMapContent(fitsFile, plane, *read, error)) {
        error = fitsFile + ": " + error;
        return 0;
    }
    show(*read);
    own_ = std::move(read);
    return 1;
}

void MapPicture::show(const MapContent& content)
{
    auto cells = std::make_unique<AFloatMatrixAccess>(content.map.cells);
    show(content, *cells);
    ownCells_ = std::move(cells);
}

void MapPicture::show(const MapContent& content, const AMatrixAccess& cells)
{
    content_ = &content;
    legend_ = nullptr;
    auto axis = std::make_unique<A2DAxis>(content.frame.xDirection, 1, nullptr, 0);
    graph_ = new ALevelsColorGraph(axis.get(), cells, content.frame.centres(), 0);
    graph_->setStatistics(content.range, content.noise);
    graph_->contours().setWidth(1);
    bar_ = std::make_unique<AAxisColorOP>(*graph_);
    axis_ = std::move(axis);
    describeMap(*axis_, *graph_, content.frame, {});
    beam_ = content.frame.beam;
    setHeaderNote({});
    figure_.setAxis(axis_.get());
    figure_.setMap(graph_);
    figure_.setBar(bar_.get());
}

void MapPicture::contentChanged()
{
    graph_->cellsChanged();
    graph_->setStatistics(content_->range, content_->noise);
    // a plane may have a beam of its own; one that someone gave the graph stays
    if (graph_->beam() == beam_)
        graph_->setBeam(content_->frame.beam);
    beam_ = content_->frame.beam;
    setHeaderNote({});
}

void MapPicture::setRgb(const std::shared_ptr<RgbImage>& image)
{
    graph_->setRgb(image);
    if (image && !legend_)
        legend_ = new ARgbLegend(axis_.get());
    if (legend_)
        legend_->setImage(image.get());
    figure_.setBar(image ? nullptr : bar_.get());
    setHeaderNote({});
}

const std::shared_ptr<RgbImage>& MapPicture::rgb() const { return graph_->rgb(); }

void MapPicture::setHeaderNote(const CString& note)
{
    if (rgb()) {
        // what is told of one map is not that of all three
        MapHeader header = content_->map.header;
        header.axes.resize(std::min<std::size_t>(header.axes.size(), 2));
        header.frequency = 0;
        header.planes = 1;
        return graph_->setUsualHeader(mapHeaderLine(header, {}, {}, note));
    }
    graph_->setUsualHeader(
        mapHeaderLine(content_->map.header, content_->range, content_->noise, note));
}

void MapPicture::draw(CDC& dc, const CRect& rect) { figure_.draw(dc, figure_.layOut(dc, rect)); }

}  // namespace pavane

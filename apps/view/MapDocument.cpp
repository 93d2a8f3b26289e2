#include "apps/view/MapDocument.h"

#include "apps/view/map_graph.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/images/palettes.h"

namespace pavane
{

MapDocument::MapDocument() : cells_(inputs_.map.cells) {}

MapDocument::~MapDocument() = default;

int MapDocument::open(const std::string& file, int plane, const ViewOptions& options,
                      std::string& error, const ProgressFunction& progress)
{
    int goesOn = 1;
    const auto asked = [&](double fraction) { return goesOn = goesOn && progress(fraction); };
    if (!readMapInputs(file, plane, inputs_, error, asked)) {
        error = goesOn ? file + ": " + error : std::string();
        return 0;
    }
    file_ = file;
    std::string noSky;
    (void)sky_.init(inputs_.map.header, noSky);
    const AMatrix<float>& cells = inputs_.map.cells;
    format_ = StatusFormat(inputs_.map.header, inputs_.frame, cells.rows(), cells.columns());
    axis_ = std::make_unique<A2DAxis>(inputs_.frame.xDirection, 1, nullptr, 0);
    graph_ = addMapGraph(*axis_, cells_, options, inputs_);
    bar_ = std::make_unique<AAxisColorOP>(*graph_);
    return 1;
}

AreaPlace MapDocument::place() const
{
    const AMatrix<float>& cells = inputs_.map.cells;
    return {centresOf(inputs_.frame), cells.rows(), cells.columns(), &sky_};
}

void MapDocument::show(const ViewOptions& options)
{
    graph_->setScale(scaleKind(options.scale));
    graph_->contours().setLevels(levelsOf(options.levels, inputs_));
}

}  // namespace pavane

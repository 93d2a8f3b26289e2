#include "apps/view/MapDocument.h"

#include "apps/view/map_options.h"

namespace pavane
{

int MapDocument::open(const std::string& file, int plane, const ViewOptions& options,
                      std::string& error, const ProgressFunction& progress)
{
    int goesOn = 1;
    const auto asked = [&](double fraction) { return goesOn = goesOn && progress(fraction); };
    if (!readMapContent(file, plane, inputs_, error, asked)) {
        error = goesOn ? file + ": " + error : std::string();
        return 0;
    }
    file_ = file;
    cube_.begin(file, inputs_);
    std::string noSky;
    (void)sky_.init(inputs_.map.header, noSky);
    const AMatrix<float>& cells = inputs_.map.cells;
    format_ = StatusFormat(inputs_.map.header, inputs_.frame, cells.rows(), cells.columns());
    picture_.show(inputs_);
    show(options);
    return 1;
}

int MapDocument::setPlane(int plane, const ViewOptions& options, std::string& error)
{
    if (!cube_.exchange(plane, inputs_, error))
        return 0;
    picture_.contentChanged();
    show(options);
    return 1;
}

AreaPlace MapDocument::place() const
{
    const AMatrix<float>& cells = inputs_.map.cells;
    return {inputs_.frame.centres(), cells.rows(), cells.columns(), &sky_};
}

void MapDocument::show(const ViewOptions& options) { applyOptions(picture_, options); }

}  // namespace pavane

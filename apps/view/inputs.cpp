#include "apps/view/inputs.h"

#include "apps/view/area_files.h"
#include "apps/view/map_graph.h"
#include "apps/view/progress.h"
#include "pavane/tables/component_file.h"
#include "pavane/trackers/area_file.h"
#include "pavane/trackers/ATrackerArrayInAxis.h"

namespace pavane
{

namespace
{

/// Puts the file's name in front of what is wrong with it.
int refuse(const std::string& file, std::string& error)
{
    error = file + ": " + error;
    return 0;
}

AreaPlace placeOf(const ViewInputs& inputs, const SkyCoordinates& sky)
{
    const AMatrix<float>& cells = inputs.map.cells;
    return {centresOf(inputs.frame), cells.rows(), cells.columns(), &sky};
}

/// Areas of any kind but .cma; `notes` say what of them could not be taken.
int readAreas(const std::string& file, ViewInputs& inputs, std::vector<std::string>& notes,
              std::string& error)
{
    SkyCoordinates sky;
    std::string noSky;
    (void)sky.init(inputs.map.header, noSky);
    const AreaPlace place = placeOf(inputs, sky);
    ATrackerArrayInAxis areas;
    AreaNotes found;
    if (!openAreas(file, place, areas, found, error))
        return 0;
    notes = std::move(found.lines);
    inputs.areas = outlinesOf(areas);
    areas.FillMatrix(inputs.mask, place.columns, place.rows, place.range);
    return 1;
}

/// Polygons in cells are drawn and filled as they are.
int readCellAreas(const std::string& file, ViewInputs& inputs, std::string& error)
{
    AAreaArray areas;
    if (!readAreaFile(file, areas, error))
        return 0;
    inputs.areas = outlinesOf(areas, inputs.frame);
    areas.FillBits(inputs.mask);
    return 1;
}

int makeMask(const std::string& file, ViewInputs& inputs, std::vector<std::string>& notes,
             std::string& error)
{
    const AMatrix<float>& cells = inputs.map.cells;
    inputs.mask = ABitMatrix(cells.rows(), cells.columns());
    if (!inputs.mask.rows()) {
        error = "there is no memory for a mask";
        return 0;
    }
    inputs.mask.setAll(1);
    if (file.empty())
        return 1;
    return isCellFile(file) ? readCellAreas(file, inputs, error)
                            : readAreas(file, inputs, notes, error);
}

}  // namespace

int readMapInputs(const std::string& file, int plane, ViewInputs& inputs, std::string& error,
                  const ProgressFunction& progress)
{
    if (!readFitsMap(file, plane, inputs.map, error, progress))
        return 0;
    const AMatrix<float>& cells = inputs.map.cells;
    inputs.frame = frameOf(inputs.map.header, cells.rows(), cells.columns());
    const AFloatMatrixAccess access(cells);
    inputs.range = mapRange(access);
    inputs.noise = mapNoise(access);
    return 1;
}

int readInputs(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
               std::string& error)
{
    if (!options.model.empty() && !readComponentFile(options.model, inputs.model, error))
        return refuse(options.model, error);
    if (!options.visibilities.empty() && !readUvPoints(options.visibilities, inputs.uv, error))
        return refuse(options.visibilities, error);
    ProgressLine progress("Reading " + options.map);
    if (!readMapInputs(options.map, options.plane, inputs, error,
                       [&](double fraction) { return progress.show(fraction); }))
        return refuse(options.map, error);
    return makeMask(options.areas, inputs, notes, error);  // names the file itself
}

}  // namespace pavane

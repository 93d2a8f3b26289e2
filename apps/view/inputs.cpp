#include "apps/view/inputs.h"

#include "apps/view/progress.h"
#include "pavane/tables/component_file.h"
#include "pavane/trackers/area_file.h"

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

int readMap(const ViewOptions& options, ViewInputs& inputs, std::string& error)
{
    ProgressLine progress("Reading " + options.map);
    if (!readFitsMap(options.map, options.plane, inputs.map, error,
                     [&](double fraction) { return progress.show(fraction); }))
        return 0;
    const AMatrix<float>& cells = inputs.map.cells;
    inputs.frame = frameOf(inputs.map.header, cells.rows(), cells.columns());
    return 1;
}

int makeMask(ViewInputs& inputs, std::string& error)
{
    const AMatrix<float>& cells = inputs.map.cells;
    inputs.mask = ABitMatrix(cells.rows(), cells.columns());
    if (!inputs.mask.rows()) {
        error = "there is no memory for its mask";
        return 0;
    }
    inputs.areas.FillBits(inputs.mask);
    return 1;
}

}  // namespace

int readInputs(const ViewOptions& options, ViewInputs& inputs, std::string& error)
{
    if (!options.areas.empty() && !readAreaFile(options.areas, inputs.areas, error))
        return 0;  // names the file itself
    if (!options.model.empty() && !readComponentFile(options.model, inputs.model, error))
        return refuse(options.model, error);
    if (!options.visibilities.empty() && !readUvPoints(options.visibilities, inputs.uv, error))
        return refuse(options.visibilities, error);
    if (!readMap(options, inputs, error) || !makeMask(inputs, error))
        return refuse(options.map, error);
    const AFloatMatrixAccess cells(inputs.map.cells);
    inputs.range = mapRange(cells);
    inputs.noise = mapNoise(cells);
    return 1;
}

}  // namespace pavane

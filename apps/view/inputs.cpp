#include "apps/view/inputs.h"

#include "apps/view/any_area_file.h"
#include "apps/view/area_numbers.h"
#include "apps/view/progress.h"
#include "apps/view/rgb_maps.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/regions/area_kind.h"
#include "tessel/plain_text.h"

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
    return {inputs.frame.centres(), cells.rows(), cells.columns(), &sky};
}

/// Areas of any kind but polygons of cells. Those that the file does not hold leave the mask.
int readShapes(const std::string& file, ViewInputs& inputs, AreaNotes& notes, std::string& error)
{
    SkyCoordinates sky;
    std::string noSky;
    (void)sky.init(inputs.map.header, noSky);
    const AreaPlace place = placeOf(inputs, sky);
    ATrackerArrayInAxis areas;
    if (!openAreas(file, place, areas, notes, error))
        return 0;
    if (const int last = areas.count(); last && !areas(last - 1)->IsReady()) {
        const std::string loss = "area " + std::to_string(last) + ": its polygon is not closed";
        notes.loss = notes.loss.empty() ? loss : notes.loss;
        notes.lines.push_back(loss);
        notes.read = areas.DeleteItems(last - 1, 1);
    }
    inputs.areas = outlinesOf(areas);
    inputs.measured = measuredAreas(areas, place);
    areas.FillMatrix(inputs.mask, place.columns, place.rows, place.range);
    return 1;
}

/// Polygons in cells are drawn and filled as they are.
int readCells(const std::string& file, ViewInputs& inputs, AreaNotes& notes, std::string& error)
{
    AAreaArray areas;
    if (!openCellAreas(file, areas, notes, error))
        return 0;
    inputs.areas = outlinesOf(areas, inputs.frame);
    inputs.measured = measuredAreas(areas);
    areas.FillBits(inputs.mask);
    return 1;
}

int readAreas(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
              std::string& error)
{
    const std::string& file = options.areas;
    AreaNotes found;
    if (!(areaKindOfFile(file) == AreaKind::cells ? readCells(file, inputs, found, error)
                                                  : readShapes(file, inputs, found, error)))
        return 0;
    if (!found.loss.empty()) {
        error = found.lossText();
        if (!options.partial || !found.read)
            return refuse(file, error);
        notes.push_back(file + ": " + error);
        std::erase(found.lines, found.loss);
    }
    for (const std::string& line : found.lines)
        notes.emplace_back(file).append(": ").append(line);
    if (!inputs.mask.count())
        notes.push_back(file + ": no cell of the map lies in its areas: the mask is empty");
    return 1;
}

int readMarks(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
              std::string& error)
{
    const std::string& file = options.marks;
    SkyCoordinates sky;
    std::string noSky;
    (void)sky.init(inputs.map.header, noSky);
    SkyMarks read;
    if (!readSkyMarks(file, sky.skyFrame(), read, error))
        return refuse(file, error);
    if (!read.lost.empty()) {
        error = lostMarksText(read);
        if (!options.partial)
            return refuse(file, error);
        notes.push_back(file + ": " + error);
    }
    inputs.marks.setMarks(read.marks, sky, inputs.frame);
    if (!inputs.marks.placed() && !sky.isSet()) {
        error = "holds positions, but the map has no place on the sky: " + noSky;
        return refuse(file, error);
    }
    if (const std::size_t placed = static_cast<std::size_t>(inputs.marks.placed());
        placed < read.marks.size())
        notes.push_back(file + ": " + std::to_string(read.marks.size() - placed) + " of " +
                        std::to_string(read.marks.size()) + " marks have no place in the map");
    return 1;
}

int makeMask(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
             std::string& error)
{
    const AMatrix<float>& cells = inputs.map.cells;
    inputs.mask = ABitMatrix(cells.rows(), cells.columns());
    if (!inputs.mask.rows()) {
        error = "there is no memory for a mask";
        return 0;
    }
    inputs.mask.setAll(1);
    return options.areas.empty() || readAreas(options, inputs, notes, error);
}

}  // namespace

int readInputs(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
               std::string& error)
{
    if (!options.model.empty() && !readComponentFile(options.model, inputs.model, error))
        return refuse(options.model, error);
    if (!options.visibilities.empty() && !readUvPoints(options.visibilities, inputs.uv, error))
        return refuse(options.visibilities, error);
    if (options.map.empty())
        return 1;
    ProgressLine progress("Reading " + plainText(options.map));
    // of an RGB map the first plane stands for all where numbers are made
    const int plane = options.plane < 0 && isRgbFile(options.map) ? 0 : options.plane;
    if (!readMapContent(options.map, plane, inputs, error,
                        [&](double fraction) { return progress.show(fraction); }))
        return refuse(options.map, error);
    if (const std::string note = noiseNoteOf(options.levels, inputs); !note.empty())
        notes.push_back(options.map + ": " + note);
    if (options.skyGrid.shown != SkyGridShown::none && !inputs.sky.init(inputs.map.header, error)) {
        error.insert(0, "there is no grid of the sky: ");
        return refuse(options.map, error);
    }
    // all name the file themselves
    return readRgb(options, inputs, notes, error) &&
           readOverlays(options, inputs, inputs.overlays, error) &&
           (options.marks.empty() || readMarks(options, inputs, notes, error)) &&
           makeMask(options, inputs, notes, error);
}

}  // namespace pavane

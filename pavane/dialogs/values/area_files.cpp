#include "pavane/dialogs/values/area_files.h"

#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/exchange_file.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_windows.h"
#include "pavane/trackers/shapes/area_values.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cctype>

namespace pavane
{

namespace
{

int hasEnding(const std::string& file, std::string_view ending)
{
    return file.size() > ending.size() &&
           std::equal(ending.rbegin(), ending.rend(), file.rbegin(), [](char a, char b) {
               return a == std::tolower(static_cast<unsigned char>(b));
           });
}

int isCollection(const std::string& file) { return hasEnding(file, ".areas"); }

AMnMxMCTransform transformOf(const AreaMap& map)
{
    return AMnMxMCTransform(map.range, map.rows, map.columns);
}

/// The areas in cells; what has no shape is noted.
std::vector<AreaShape> shapesOf(const AreaCollection& areas, const AreaMap& map, RegionNotes& notes)
{
    std::vector<AreaShape> shapes;
    const AMnMxMCTransform transform = transformOf(map);
    for (int i = 0; i < areas.count(); ++i) {
        ShapeValues values;
        AreaShape shape;
        if (areas.shape(i, values) && shapeOf(values, transform, shape)) {
            shape.isNeverClean = areas.isNeverClean(i);
            shapes.push_back(std::move(shape));
        } else
            notes.add(RegionNotes::Kind::leftOut, "area", i + 1,
                      "it has no shape on this map; left out");
    }
    return shapes;
}

/// Region files on the sky need one.
RegionSystem systemOf(const AreaMap& map)
{
    return map.sky && map.sky->isSet() ? map.system : RegionSystem::image;
}

int readCollection(const std::string& file, AreaCollection& areas, RegionNotes& notes,
                   std::string& error)
{
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = file + ": " + readFault(file);
        return 0;
    }
    LoadReport report;
    AreaCollection read;
    const int isWhole = read.Load(in, report);
    if (report.promised < 0 || (!isWhole && !read.count())) {
        error = file + ": not a file of areas" +
                (report.lines.empty() ? std::string() : ": " + report.lines.front());
        return 0;
    }
    for (const std::string& line : report.lines)
        notes.add(RegionNotes::Kind::damaged, "", 0, line);
    MemoryFile bytes;
    if (!read.Store(bytes) || !bytes.seek(0) || !areas.Load(bytes)) {
        error = file + ": its areas cannot be kept";
        return 0;
    }
    return 1;
}

}  // namespace

int readAreas(const std::string& file, const AreaMap& map, AreaCollection& areas,
              RegionNotes& notes, std::string& error)
{
    notes = RegionNotes();
    error.clear();
    if (isCollection(file))
        return readCollection(file, areas, notes, error);
    std::vector<AreaShape> shapes;
    if (!readAreaShapes(file, map.sky, shapes, notes, error))
        return 0;
    const AMnMxMCTransform transform = transformOf(map);
    const AreaEdits::Step step(areas.edits(), "Loading of areas");
    areas.clear();
    for (std::size_t i = 0; i < shapes.size(); ++i)
        if (areas.add(shapes[i], transform) < 0)
            notes.add(RegionNotes::Kind::leftOut, "area", static_cast<long long>(i) + 1,
                      "it has no place on this map; left out");
    return 1;
}

RegionNotes lossesOfAreas(const std::string& file, const AreaMap& map, const AreaCollection& areas)
{
    RegionNotes notes;
    if (isCollection(file))
        return notes;
    const std::vector<AreaShape> shapes = shapesOf(areas, map, notes);
    AAreaArray polygons;
    switch (areaFormatOf(file)) {
    case AreaFileFormat::ds9:
        (void)ds9RegionText(shapes, systemOf(map), map.sky, notes);
        break;
    case AreaFileFormat::crtf:
        (void)crtfRegionText(shapes, systemOf(map), map.sky, notes);
        break;
    case AreaFileFormat::windows:
        (void)windowRegionText(shapes, map.sky, notes);
        break;
    case AreaFileFormat::cells:
        if (shapes.empty())
            notes.addOnce(RegionNotes::Kind::changed,
                          "a file without areas stands for the whole map");
        (void)polygonsOf(shapes, polygons, notes);
        break;
    }
    return notes;
}

int writeAreas(const std::string& file, const AreaMap& map, const AreaCollection& areas,
               std::string& error)
{
    error.clear();
    if (!isCollection(file)) {
        RegionNotes notes;
        const std::vector<AreaShape> shapes = shapesOf(areas, map, notes);
        return writeAreaShapes(file, areaFormatOf(file), shapes, systemOf(map), map.sky, notes,
                               error);
    }
    SafeFile out;
    if (out.open(file) && areas.Store(out.file()) && out.commit())
        return 1;
    error = file + ": " + out.fault();
    return 0;
}

}  // namespace pavane

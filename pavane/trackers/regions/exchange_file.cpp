#include "pavane/trackers/regions/exchange_file.h"

#include "pavane/trackers/masks/cell_area_file.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_values.h"
#include "pavane/trackers/regions/region_windows.h"
#include "tessel/AFile.h"

#include <cstring>

namespace pavane
{

namespace
{

int beginsAsCrtf(const std::string& file)
{
    char start[5] = {};
    AFile in;
    return in.open(file, AFile::readOnly) && in.read(start, 5) && !std::memcmp(start, "#CRTF", 5);
}

int hasSuffix(const std::string& file, std::string_view suffix)
{
    return file.size() >= suffix.size() &&
           sameWord(std::string_view(file).substr(file.size() - suffix.size()), suffix);
}

int readCells(const std::string& file, std::vector<AreaShape>& shapes, RegionNotes& notes,
              std::string& error)
{
    shapes.clear();
    notes = RegionNotes();
    AAreaArray areas;
    if (!readCellAreaFile(file, areas, error))
        return 0;
    shapes = shapesOf(areas, notes);
    return 1;
}

int writeCells(const std::string& file, const std::vector<AreaShape>& shapes, RegionNotes& notes,
               std::string& error)
{
    notes = RegionNotes();
    AAreaArray areas;
    if (shapes.empty())
        notes.addOnce(RegionNotes::Kind::changed, "a file without areas stands for the whole map");
    if (polygonsOf(shapes, areas, notes))
        return writeCellAreaFile(file, areas, error);
    error = file + ": there is no memory for the outlines";
    return 0;
}

}  // namespace

AreaFileFormat areaFormatOf(const std::string& file)
{
    return hasSuffix(file, ".reg")    ? AreaFileFormat::ds9
           : hasSuffix(file, ".crtf") ? AreaFileFormat::crtf
           : hasSuffix(file, ".win")  ? AreaFileFormat::windows
                                      : AreaFileFormat::cells;
}

int readAreaShapes(const std::string& file, const SkyCoordinates* sky,
                   std::vector<AreaShape>& shapes, RegionNotes& notes, std::string& error)
{
    const AreaFileFormat format = beginsAsCrtf(file) ? AreaFileFormat::crtf : areaFormatOf(file);
    if (format == AreaFileFormat::ds9)
        return readDs9Regions(file, sky, shapes, notes, error);
    if (format == AreaFileFormat::crtf)
        return readCrtfRegions(file, sky, shapes, notes, error);
    if (format == AreaFileFormat::windows)
        return readWindowRegions(file, sky, shapes, notes, error);
    return readCells(file, shapes, notes, error);
}

int writeAreaShapes(const std::string& file, AreaFileFormat format,
                    const std::vector<AreaShape>& shapes, RegionSystem system,
                    const SkyCoordinates* sky, RegionNotes& notes, std::string& error)
{
    if (format == AreaFileFormat::ds9)
        return writeDs9Regions(file, shapes, system, sky, notes, error);
    if (format == AreaFileFormat::crtf)
        return writeCrtfRegions(file, shapes, system, sky, notes, error);
    if (format == AreaFileFormat::windows)
        return writeWindowRegions(file, shapes, sky, notes, error);
    return writeCells(file, shapes, notes, error);
}

}  // namespace pavane

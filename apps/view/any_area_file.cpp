#include "apps/view/any_area_file.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/area_names.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/collections/shape_trackers.h"
#include "pavane/trackers/masks/cell_area_file.h"
#include "pavane/trackers/regions/any_region_file.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/exchange_file.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_windows.h"
#include "pavane/trackers/tracker_shape.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

using Kind = AreaKind;

int refuse(const std::string& file, const std::string& why, std::string& error)
{
    error = file + ": " + why;
    return 0;
}

int openCollection(const std::string& file, ARPTrackerArray& areas, AreaNotes& notes,
                   std::string& error)
{
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return refuse(file, readFault(file), error);
    LoadReport report;
    const int whole = areas.Load(in, report);
    if (report.promised < 0)
        return refuse(file,
                      "not an area file: its number of areas is " + std::to_string(report.promised),
                      error);
    if (!whole && !report.promised)
        return refuse(file, "not an area file: " + (report.lines.empty() ? "" : report.lines[0]),
                      error);
    if (whole && in.left())
        report.lines.push_back(std::to_string(in.left()) + " bytes follow the last area");
    for (int i = 0; i < areas.count() - 1; ++i)
        if (!areas(i)->IsReady())
            areas(i)->SetStyle(areas(i)->GetStyle() | trackerReady);
    takeReport(report, notes);
    std::vector<AreaLabel> labels;
    std::string misfit;
    if (!readNamesFile(file, areas.count(), labels, misfit))
        notes.lines.push_back(misfit + "; names and colours are left aside");
    for (std::size_t i = 0; i < labels.size(); ++i)
        areas(static_cast<int>(i))->SetLabel(labels[i]);
    return 1;
}

int openRegions(const std::string& file, Kind kind, const AreaPlace& place, ARPTrackerArray& areas,
                AreaNotes& notes, std::string& error)
{
    std::vector<AreaShape> shapes;
    RegionNotes found;
    if (!readRegionFile(file, kind, place.sky, shapes, found, notes.promised, error))
        return refuse(file, error, error);
    notes.read = addShapes(areas, nullptr, shapes, place.transform(), found);
    takeNotes(found, notes);
    return 1;
}

/// Polygons of cells as shapes that can be changed.
int openCells(const std::string& file, const AreaPlace& place, ARPTrackerArray& areas,
              AreaNotes& notes, std::string& error)
{
    AAreaArray polygons;
    if (!openCellAreas(file, polygons, notes, error))
        return 0;
    RegionNotes found;
    const std::vector<AreaShape> shapes = shapesOf(polygons, found);
    const AreaNotes damaged = notes;
    notes.read = addShapes(areas, nullptr, shapes, place.transform(), found);
    takeNotes(found, notes);
    notes.lines.insert(notes.lines.end(), damaged.lines.begin(), damaged.lines.end());
    if (notes.loss.empty())
        notes.loss = damaged.loss;
    return 1;
}

int saveCollection(const std::string& file, const ARPTrackerArray& areas, std::string& error)
{
    SafeFile out;
    if (!out.open(file)) {
        error = file + ": " + out.fault();
        return 0;
    }
    if (!storeAreas(areas, out.file()) || !out.commit()) {
        error = file + ": " + out.fault();
        return 0;
    }
    return writeNamesFile(file, labelsOf(areas), error);
}

}  // namespace

std::vector<AreaLabel> labelsOf(const ARPTrackerArray& areas)
{
    std::vector<AreaLabel> labels;
    labels.reserve(static_cast<std::size_t>(areas.count()));
    for (int i = 0; i < areas.count(); ++i)
        labels.push_back(areas(i)->label());
    return labels;
}

int openAreas(const std::string& file, const AreaPlace& place, ARPTrackerArray& areas,
              AreaNotes& notes, std::string& error)
{
    notes = AreaNotes();
    const Kind kind = areaKindOfFile(file);
    return kind == Kind::cells ? openCells(file, place, areas, notes, error)
           : kind == Kind::ds9 || kind == Kind::crtf || kind == Kind::windows
               ? openRegions(file, kind, place, areas, notes, error)
               : openCollection(file, areas, notes, error);
}

int openCellAreas(const std::string& file, AAreaArray& areas, AreaNotes& notes, std::string& error)
{
    LoadReport report;
    if (!readCellAreaFile(file, areas, report, error))
        return 0;
    takeReport(report, notes);
    return 1;
}

int storeAreas(const ARPTrackerArray& areas, AFile& file)
{
    MemoryFile bytes;
    return areas.Store(bytes) &&
           file.write(bytes.bytes().data(), static_cast<std::int64_t>(bytes.bytes().size()));
}

int storeAllAreas(const ARPTrackerArray& areas, AFile& file)
{
    MemoryFile bytes;
    return areas.StoreKept(bytes) &&
           file.write(bytes.bytes().data(), static_cast<std::int64_t>(bytes.bytes().size()));
}

AreaNotes lossesOfSaving(const std::string& file, const AreaPlace& place,
                         const ARPTrackerArray& areas)
{
    AreaNotes notes;
    const Kind kind = areaKindOfName(file);
    if (kind == Kind::collection || kind == Kind::unknown)
        return notes;
    RegionNotes found;
    const std::vector<AreaShape> shapes = shapesOf(areas, place.transform(), found);
    const RegionSystem system = place.system();
    AAreaArray polygons;
    if (kind == Kind::ds9)
        (void)ds9RegionText(shapes, system, place.sky, found);
    else if (kind == Kind::crtf)
        (void)crtfRegionText(shapes, system, place.sky, found);
    else if (kind == Kind::windows)
        (void)windowRegionText(shapes, place.sky, found);
    else
        (void)polygonsOf(shapes, polygons, found);
    takeNotes(found, notes);
    return notes;
}

int saveAreas(const std::string& file, const AreaPlace& place, const ARPTrackerArray& areas,
              std::string& error)
{
    const Kind kind = areaKindOfName(file);
    if (kind == Kind::collection || kind == Kind::unknown)
        return saveCollection(file, areas, error);
    if (kind == Kind::cells) {
        AAreaArray polygons;
        if (polygonsOf(areas, place.columns, place.rows, place.range, polygons))
            return writeCellAreaFile(file, polygons, error);
        error = file + ": there is no memory for the outlines";
        return 0;
    }
    RegionNotes notes;
    const std::vector<AreaShape> shapes = shapesOf(areas, place.transform(), notes);
    return writeAreaShapes(file, areaFormatOf(file), shapes, place.system(), place.sky, notes,
                           error);
}

}  // namespace pavane

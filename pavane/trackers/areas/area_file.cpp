#include "pavane/trackers/areas/area_file.h"

#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/area_names.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/trackers/areas/step_record.h"
#include "pavane/trackers/masks/cell_area_file.h"
#include "pavane/trackers/regions/any_region_file.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/exchange_file.h"
#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_windows.h"
#include "pavane/trackers/shapes/area_geometry.h"
#include "pavane/trackers/shapes/area_values.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

namespace pavane
{

namespace
{

using Kind = AreaKind;
using NoteKind = RegionNotes::Kind;

constexpr const char* placeNeeded =
    "an .areas file holds positions on a map: which map must be told";

int refuse(const std::string& file, const std::string& why, std::string& error)
{
    std::string line = file;
    line += ": ";
    error = line + why;
    return 0;
}

int isKnown(const AreaPlace& place) { return place.rows > 0 && place.columns > 0; }

int isOpen(const AreaRecord& record, const ShapeValues& shape)
{
    return shape.kind == ShapeValues::Kind::polygon &&
           !(styleOfRecord(record.bytes) & trackerReady);
}

/// The shapes of a collection in cells; what has none is noted.
void takeShapes(const AreaCollection& collection, const AreaPlace& place, AreaList& areas,
                AreaNotes& notes)
{
    const auto lose = [&](int i, const char* why) {
        notes.lines.push_back("area " + std::to_string(i + 1) + ": " + why);
        if (notes.loss.empty())
            notes.loss = notes.lines.back();
    };
    const AMnMxMCTransform map = place.transform();
    for (int i = 0; i < collection.count(); ++i) {
        ShapeValues values;
        AreaShape shape;
        if (!collection.shape(i, values))
            continue;  // the report of reading tells
        if (i == collection.count() - 1 && isOpen(collection.record(i), values))
            lose(i, "its polygon is not closed");
        else if (!shapeOf(values, map, shape))
            lose(i, "has no size or lies too far away");
        else {
            shape.isNeverClean = collection.isNeverClean(i);
            shape.label = collection.label(i);
            areas.push_back(std::move(shape));
        }
    }
    notes.read = static_cast<int>(areas.size());
}

int readCollection(const std::string& file, const AreaPlace& place, AreaList& areas,
                   AreaNotes& notes, std::string& error)
{
    AFile in;
    if (!isKnown(place))
        return refuse(file, placeNeeded, error);
    if (!in.open(file, AFile::readOnly))
        return refuse(file, readFault(file), error);
    LoadReport report;
    AreaCollection collection;
    const int whole = collection.Load(in, report);
    if (report.promised < 0 || (!whole && !report.promised))
        return refuse(file, "not an area file", error);
    if (whole && in.left())
        report.lines.push_back(std::to_string(in.left()) + " bytes follow the last area");
    takeReport(report, notes);
    std::vector<AreaLabel> labels;
    std::string misfit;
    if (!readNamesFile(file, collection.count(), labels, misfit))
        notes.lines.push_back(misfit + "; names and colours are left aside");
    for (std::size_t i = 0; i < labels.size(); ++i)
        (void)collection.setLabel(static_cast<int>(i), labels[i]);
    takeShapes(collection, place, areas, notes);
    return 1;
}

int readCells(const std::string& file, AreaList& areas, AreaNotes& notes, std::string& error)
{
    AAreaArray polygons;
    LoadReport report;
    if (!readCellAreaFile(file, polygons, report, error))
        return 0;
    takeReport(report, notes);
    RegionNotes found;
    areas = shapesOf(polygons, found);
    AreaNotes more;
    takeNotes(found, more);
    notes.lines.insert(notes.lines.end(), more.lines.begin(), more.lines.end());
    notes.loss = notes.loss.empty() ? more.loss : notes.loss;
    notes.read = static_cast<int>(areas.size());
    return 1;
}

int readRegions(const std::string& file, Kind kind, const AreaPlace& place, AreaList& areas,
                AreaNotes& notes, std::string& error)
{
    RegionNotes found;
    if (!readRegionFile(file, kind, place.sky, areas, found, notes.promised, error))
        return refuse(file, error, error);
    takeNotes(found, notes);
    notes.read = static_cast<int>(areas.size());
    return 1;
}

int isRegions(Kind kind)
{
    return kind == Kind::ds9 || kind == Kind::crtf || kind == Kind::windows;
}

/// What a file of the kind cannot hold, found before anything is written.
void findLosses(Kind kind, const AreaPlace& place, const AreaList& areas, RegionNotes& notes)
{
    AAreaArray polygons;
    if (kind == Kind::ds9)
        (void)ds9RegionText(areas, place.system(), place.sky, notes);
    else if (kind == Kind::crtf)
        (void)crtfRegionText(areas, place.system(), place.sky, notes);
    else if (kind == Kind::windows)
        (void)windowRegionText(areas, place.sky, notes);
    else if (kind == Kind::cells)
        (void)polygonsOf(areas, polygons, notes);
}

/// The bytes of a collection; areas that it cannot hold are noted.
std::string collected(const AreaPlace& place, const AreaList& areas, std::vector<AreaLabel>& labels,
                      RegionNotes& notes)
{
    AreaCollection collection;
    const AMnMxMCTransform map = place.transform();
    for (std::size_t i = 0; i < areas.size(); ++i)
        if (collection.add(areas[i], map) < 0)
            notes.add(NoteKind::leftOut, "area", static_cast<long long>(i) + 1,
                      "has no size or lies too far away; left out");
        else
            labels.push_back(areas[i].label);
    MemoryFile bytes;
    (void)collection.Store(bytes);  // memory takes every write
    return bytes.bytes();
}

int writeBytes(const std::string& file, const std::string& bytes, std::string& error)
{
    SafeFile out;
    if (!out.open(file) ||
        !out.file().write(bytes.data(), static_cast<std::int64_t>(bytes.size())) || !out.commit())
        return refuse(file, out.fault(), error);
    return 1;
}

}  // namespace

std::string AreaNotes::lossText() const
{
    return std::to_string(read) + " of " + std::to_string(promised) +
           (promised == 1 ? " area" : " areas") + " can be used: " + loss;
}

void takeNotes(const RegionNotes& from, AreaNotes& to)
{
    to.lines = from.lines;
    to.loss = from.firstLoss;
    if (from.more > 0)
        to.lines.push_back("... and " + std::to_string(from.more) + " more");
}

void takeReport(const LoadReport& report, AreaNotes& notes)
{
    notes.promised = report.promised;
    notes.read = report.loaded;
    notes.lines = report.lines;
    notes.loss = report.lines.empty() ? std::string() : report.lines.front();
}

int readAreaFile(const std::string& file, const AreaPlace& place, AreaList& areas, AreaNotes& notes,
                 std::string& error)
{
    areas.clear();
    notes = AreaNotes();
    const Kind kind = areaKindOfFile(file);
    const int done = kind == Kind::cells ? readCells(file, areas, notes, error)
                     : isRegions(kind)   ? readRegions(file, kind, place, areas, notes, error)
                                         : readCollection(file, place, areas, notes, error);
    if (!done)
        areas.clear();
    return done;
}

int writeAreaFile(const std::string& file, const AreaPlace& place, const AreaList& areas,
                  int partial, AreaNotes& notes, std::string& error)
{
    notes = AreaNotes();
    const Kind kind = areaKindOfName(file);
    if (kind == Kind::unknown)
        return refuse(file, "areas are written as .reg, .crtf, .win, .cma or .areas", error);
    if (kind == Kind::collection && !isKnown(place))
        return refuse(file, placeNeeded, error);
    RegionNotes found;
    std::vector<AreaLabel> labels;
    const std::string bytes =
        kind == Kind::collection ? collected(place, areas, labels, found) : std::string();
    findLosses(kind, place, areas, found);
    takeNotes(found, notes);
    notes.promised = static_cast<int>(areas.size());
    notes.read = notes.promised - found.leftOut;
    if (!notes.loss.empty() && !partial)
        return refuse(file, "not all areas can be written: " + notes.loss, error);
    if (kind == Kind::collection)
        return writeBytes(file, bytes, error) && writeNamesFile(file, labels, error);
    RegionNotes again;
    return writeAreaShapes(file, areaFormatOf(file), areas, place.system(), place.sky, again,
                           error);
}

}  // namespace pavane

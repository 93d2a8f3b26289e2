#include "apps/view/area_files.h"

#include "apps/view/file_ending.h"
#include "pavane/trackers/area_file.h"
#include "pavane/trackers/area_polygons.h"
#include "pavane/trackers/area_shape_file.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPTrackerArray.h"
#include "pavane/trackers/MemoryFile.h"
#include "pavane/trackers/region_crtf.h"
#include "pavane/trackers/region_ds9.h"
#include "pavane/trackers/shape_trackers.h"
#include "pavane/trackers/tracker_shape.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

constexpr std::size_t fewestCorners = 3;

enum class Kind { collection, cells, ds9, crtf, unknown };

Kind kindOfName(const std::string& file)
{
    const std::string ending = fileEnding(file);
    return ending == "areas"  ? Kind::collection
           : ending == "cma"  ? Kind::cells
           : ending == "reg"  ? Kind::ds9
           : ending == "crtf" ? Kind::crtf
                              : Kind::unknown;
}

/// What a file of another name holds: CASA regions say so, texts have no bytes that are no
/// characters, polygons of cells fill their file exactly.
Kind kindOfContent(const std::string& file)
{
    std::array<char, 64> start{};
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return Kind::unknown;
    const auto n = std::min<std::int64_t>(in.left(), static_cast<std::int64_t>(start.size()));
    if (!in.read(start.data(), n))
        return Kind::unknown;
    const std::string_view text(start.data(), static_cast<std::size_t>(n));
    if (text.starts_with("#CRTF"))
        return Kind::crtf;
    const auto isOdd = [](char c) {
        return static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\r' && c != '\t';
    };
    if (!text.empty() && std::none_of(text.begin(), text.end(), isOdd))
        return Kind::ds9;
    AAreaArray areas;
    std::string ignored;
    return readAreaFile(file, areas, ignored) ? Kind::cells : Kind::collection;
}

Kind kindOf(const std::string& file)
{
    const Kind kind = kindOfName(file);
    return kind == Kind::unknown ? kindOfContent(file) : kind;
}

AMnMxMCTransform cellsOf(const AreaPlace& place)
{
    return AMnMxMCTransform(place.range, place.rows, place.columns);
}

void take(const RegionNotes& from, AreaNotes& to)
{
    to.lines = from.lines;
    if (from.more > 0)
        to.lines.push_back("... and " + std::to_string(from.more) + " more");
}

int openCollection(const std::string& file, ARPTrackerArray& areas, AreaNotes& notes,
                   std::string& error)
{
    AFile in;
    if (!in.open(file, AFile::readOnly)) {
        error = file + ": the area file cannot be opened";
        return 0;
    }
    LoadReport report;
    const int whole = areas.Load(in, report);
    if (!whole && !report.loaded) {
        error = file + ": not an area file" +
                (report.lines.empty() ? std::string() : ": " + report.lines.front());
        return 0;
    }
    notes.promised = report.promised;
    notes.read = report.loaded;
    notes.lines = report.lines;
    return 1;
}

int openShapes(const std::string& file, Kind kind, const AreaPlace& place, ARPTrackerArray& areas,
               AreaNotes& notes, std::string& error)
{
    std::vector<AreaShape> shapes;
    RegionNotes found;
    const int read = kind == Kind::ds9    ? readDs9Regions(file, place.sky, shapes, found, error)
                     : kind == Kind::crtf ? readCrtfRegions(file, place.sky, shapes, found, error)
                                          : readAreaShapes(file, place.sky, shapes, found, error);
    if (!read)
        return 0;
    notes.promised = static_cast<int>(shapes.size()) + found.leftOut + found.damaged;
    notes.read = addShapes(areas, nullptr, shapes, cellsOf(place), found);
    take(found, notes);
    return 1;
}

RegionSystem systemOf(const AreaPlace& place)
{
    return place.skyRegions && place.sky && place.sky->isSet() ? RegionSystem::sky
                                                               : RegionSystem::image;
}

int saveCollection(const std::string& file, const ARPTrackerArray& areas, std::string& error)
{
    SafeFile out;
    if (!out.open(file)) {
        error = file + ": the area file cannot be made";
        return 0;
    }
    if (!storeAreas(areas, out.file()) || !out.commit()) {
        error = file + ": the area file cannot be written";
        return 0;
    }
    return 1;
}

}  // namespace

int isCellFile(const std::string& file) { return kindOfName(file) == Kind::cells; }

int openAreas(const std::string& file, const AreaPlace& place, ARPTrackerArray& areas,
              AreaNotes& notes, std::string& error)
{
    notes = AreaNotes();
    const Kind kind = kindOf(file);
    return kind == Kind::collection || kind == Kind::unknown
               ? openCollection(file, areas, notes, error)
               : openShapes(file, kind, place, areas, notes, error);
}

int storeAreas(const ARPTrackerArray& areas, AFile& file)
{
    MemoryFile bytes;
    return areas.Store(bytes) &&
           file.write(bytes.bytes().data(), static_cast<std::int64_t>(bytes.bytes().size()));
}

int storeAllAreas(const ARPTrackerArray& areas, AFile& file)
{
    const ATracker* const open = areas.workingTracker();
    ShapeValues shape;
    MemoryFile bytes;
    ARPTrackerArray all;
    if (!open || !shapeOf(*open, shape) || shape.points.size() < fewestCorners ||
        !areas.Store(bytes) || !bytes.seek(0) || !all.Load(bytes))
        return storeAreas(areas, file);
    std::unique_ptr<ATracker> closed(open->Duplicate());
    auto* const polygon = dynamic_cast<ARPAreaTracker*>(closed.get());
    if (polygon) {
        polygon->SetStyle(polygon->GetStyle() | trackerReady);
        if (all.Add(polygon) >= 0)
            (void)closed.release();
    }
    return storeAreas(all, file);
}

AreaNotes lossesOfSaving(const std::string& file, const AreaPlace& place,
                         const ARPTrackerArray& areas)
{
    AreaNotes notes;
    const Kind kind = kindOfName(file);
    if (kind == Kind::collection || kind == Kind::unknown)
        return notes;
    RegionNotes found;
    const std::vector<AreaShape> shapes = shapesOf(areas, cellsOf(place), found);
    const RegionSystem system = systemOf(place);
    AAreaArray polygons;
    if (kind == Kind::ds9)
        (void)ds9RegionText(shapes, system, place.sky, found);
    else if (kind == Kind::crtf)
        (void)crtfRegionText(shapes, system, place.sky, found);
    else
        (void)polygonsOf(shapes, polygons, found);
    take(found, notes);
    return notes;
}

int saveAreas(const std::string& file, const AreaPlace& place, const ARPTrackerArray& areas,
              std::string& error)
{
    const Kind kind = kindOfName(file);
    if (kind == Kind::collection || kind == Kind::unknown)
        return saveCollection(file, areas, error);
    if (kind == Kind::cells) {
        AAreaArray polygons;
        if (polygonsOf(areas, place.columns, place.rows, place.range, polygons))
            return writeAreaFile(file, polygons, error);
        error = file + ": there is no memory for the outlines";
        return 0;
    }
    RegionNotes notes;
    const std::vector<AreaShape> shapes = shapesOf(areas, cellsOf(place), notes);
    return writeAreaShapes(file, areaFormatOf(file), shapes, systemOf(place), place.sky, notes,
                           error);
}

}  // namespace pavane

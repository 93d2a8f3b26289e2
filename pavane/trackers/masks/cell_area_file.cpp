#include "pavane/trackers/masks/cell_area_file.h"

#include "pavane/containers/item_io.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <new>
#include <string>

namespace pavane
{

namespace
{

constexpr std::int64_t pointBytes = 8;

std::string number(std::int64_t n) { return std::to_string(n); }

/// Reads the polygons that the file promises; returns what is wrong with one, "" when nothing is.
std::string readPolygons(AFile& in, std::int32_t promised, AAreaArray& areas)
{
    for (std::int32_t i = 0; i < promised; ++i) {
        const std::string which = "polygon " + number(std::int64_t{i} + 1);
        const std::int64_t start = in.tell();
        std::int32_t points = 0;
        if (!loadItem(in, points))
            return "it ends before " + which + " of " + number(promised);
        if (points < 0)
            return which + " has a count of " + number(points);
        if (points * pointBytes > in.left())
            return which + " promises " + number(points) + " points, more than the file holds";
        auto* const polygon = new (std::nothrow) APolyPoints();
        if (!polygon || !in.seek(start) || !polygon->Load(in) || areas.Add(polygon) < 0) {
            delete polygon;
            return which + " cannot be read, or there is no memory for it";
        }
    }
    return in.left() ? number(in.left()) + " bytes follow its last polygon" : std::string();
}

int refuse(const std::string& file, const std::string& why, std::string& error)
{
    error = file + ": " + why;
    return 0;
}

int storePolygon(AFile& out, const APolyPoints* polygon)
{
    return polygon ? polygon->Store(out) : storeItem(out, std::int32_t{0});
}

}  // namespace

int readCellAreaFile(const std::string& file, AAreaArray& areas, std::string& error)
{
    LoadReport report;
    if (!readCellAreaFile(file, areas, report, error))
        return 0;
    if (report.complete())
        return 1;
    areas.Free();
    return refuse(file, "not an area file: " + report.lines.front(), error);
}

int readCellAreaFile(const std::string& file, AAreaArray& areas, LoadReport& report,
                     std::string& error)
{
    areas.Free();
    report = {};
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return refuse(file, readFault(file), error);
    std::int32_t promised = 0;
    if (!loadItem(in, promised))
        return refuse(file, "not an area file: it is too short for the number of polygons", error);
    if (promised < 0)
        return refuse(file, "not an area file: its number of polygons is " + number(promised),
                      error);
    constexpr std::int64_t leastRecord = sizeof(std::int32_t);
    areas.Begin(static_cast<int>(std::min<std::int64_t>(promised, in.left() / leastRecord)));
    const std::string fault = readPolygons(in, promised, areas);
    report.promised = promised;
    report.loaded = areas.count();
    if (!fault.empty())
        report.lines.push_back(fault);
    return 1;
}

int writeCellAreaFile(const std::string& file, const AAreaArray& areas, std::string& error)
{
    SafeFile out;
    if (!out.open(file))
        return refuse(file, out.fault(), error);
    int written = storeItem(out.file(), std::int32_t{areas.count()});
    for (int i = 0; written && i < areas.count(); ++i)
        written = storePolygon(out.file(), areas(i));
    if (!written || !out.commit())
        return refuse(file, out.fault(), error);
    return 1;
}

}  // namespace pavane

#include "pavane/trackers/area_file.h"

#include "pavane/containers/item_io.h"
#include "tessel/SafeFile.h"

#include <string>

namespace pavane
{

namespace
{

constexpr std::int64_t pointBytes = 8;

std::string number(std::int64_t n) { return std::to_string(n); }

/// What is wrong with the file's numbers and length; "" when nothing is. Counts from its start.
std::string faultOf(AFile& in)
{
    std::int32_t polygons = 0;
    if (!loadItem(in, polygons))
        return "it is too short for the number of polygons";
    if (polygons < 0)
        return "its number of polygons is " + number(polygons);
    for (std::int32_t i = 0; i < polygons; ++i) {
        std::int32_t points = 0;
        const std::string which = "polygon " + number(std::int64_t{i} + 1);
        if (!loadItem(in, points))
            return "it ends before " + which + " of " + number(polygons);
        if (points < 0)
            return which + " has a count of " + number(points);
        if (points * pointBytes > in.left() || !in.seek(points * pointBytes, AFile::current))
            return which + " promises " + number(points) + " points, more than the file holds";
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

int readAreaFile(const std::string& file, AAreaArray& areas, std::string& error)
{
    areas.Free();
    AFile in;
    if (!in.open(file, AFile::readOnly))
        return refuse(file, "the area file cannot be opened", error);
    const std::string fault = faultOf(in);
    if (!fault.empty())
        return refuse(file, "not an area file: " + fault, error);
    if (!in.seek(0) || !areas.Load(in))
        return refuse(file, "the area file cannot be read", error);
    return 1;
}

int writeAreaFile(const std::string& file, const AAreaArray& areas, std::string& error)
{
    SafeFile out;
    if (!out.open(file))
        return refuse(file, "the area file cannot be made", error);
    int written = storeItem(out.file(), std::int32_t{areas.count()});
    for (int i = 0; written && i < areas.count(); ++i)
        written = storePolygon(out.file(), areas(i));
    if (!written || !out.commit())
        return refuse(file, "the area file cannot be written", error);
    return 1;
}

}  // namespace pavane

#include "pavane/trackers/regions/region_lines.h"

#include "pavane/trackers/shapes/area_geometry.h"

namespace pavane
{

namespace
{

constexpr const char* beyond = "has no size or lies too far away; left out";

}  // namespace

void appendRegionLines(const std::vector<AreaShape>& shapes, RegionSystem system,
                       const SkyCoordinates* sky, const SkyFrame& frame, const RegionLine& line,
                       RegionNotes& notes, std::string& text)
{
    long long number = 0;
    int written = 0;
    const auto append = [&](const AreaShape& shape) {
        line(shape, text);
        ++written;
    };
    for (const AreaShape& shape : shapes) {
        ++number;
        if (!isWhole(shape)) {
            notes.add(RegionNotes::Kind::leftOut, "area", number, beyond);
            continue;
        }
        if (system == RegionSystem::image) {
            append(shape);
            continue;
        }
        AreaShape onSky;
        if (!sky || !shapeToSky(*sky, frame, shape, onSky)) {
            notes.add(RegionNotes::Kind::leftOut, "area", number,
                      "reaches beyond the projected sky; left out");
            continue;
        }
        if (onSky.kind == AreaShape::Kind::polygon && shape.kind != onSky.kind)
            notes.add(RegionNotes::Kind::changed, "area", number,
                      "is not a rectangle on the sky; written as a polygon");
        append(onSky);
    }
    text.insert(text.find('\n') + 1,
                "# " + std::to_string(written) + (written == 1 ? " area\n" : " areas\n"));
}

int canWrite(const std::string& file, RegionSystem system, const SkyCoordinates* sky,
             std::string& error)
{
    if (system == RegionSystem::image || (sky && sky->isSet()))
        return 1;
    error = file + ": the map has no sky coordinates that can be used; write pixels";
    return 0;
}

}  // namespace pavane

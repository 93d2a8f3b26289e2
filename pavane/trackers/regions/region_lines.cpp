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
                       RegionNotes& notes, std::string& text, int excludedLast)
{
    int written = 0;
    const auto append = [&](const AreaShape& shape) {
        line(shape, text);
        ++written;
    };
    const auto write = [&](const AreaShape& shape, long long number) {
        if (!isWhole(shape))
            return notes.add(RegionNotes::Kind::leftOut, "area", number, beyond);
        if (system == RegionSystem::image)
            return append(shape);
        AreaShape onSky;
        if (!sky || !shapeToSky(*sky, frame, shape, onSky))
            return notes.add(RegionNotes::Kind::leftOut, "area", number,
                             "reaches beyond the projected sky; left out");
        if (onSky.kind == AreaShape::Kind::polygon && shape.kind != onSky.kind)
            notes.add(RegionNotes::Kind::changed, "area", number,
                      "is not a rectangle on the sky; written as a polygon");
        onSky.isNeverClean = shape.isNeverClean;
        onSky.label = shape.label;
        append(onSky);
    };
    for (const int last : {0, 1})
        for (std::size_t i = 0; i < shapes.size(); ++i)
            if ((excludedLast && shapes[i].isNeverClean) == (last != 0))
                write(shapes[i], static_cast<long long>(i) + 1);
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

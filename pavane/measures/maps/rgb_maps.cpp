#include "pavane/measures/maps/rgb_maps.h"

#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/measures/maps/regrid_map.h"

#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// What is wrong with a map by itself.
PairFault faultOf(const MapOfRgb& map, std::string& error)
{
    if (!std::isfinite(map.low) || !std::isfinite(map.high) || map.low > map.high) {
        error = "has a range of colours that is not finite or begins above its end";
        return PairFault::units;
    }
    if (mapRange(AFloatMatrixAccess(*map.cells)).isEmpty()) {
        error = "has no cell with a value";
        return PairFault::memory;
    }
    return PairFault::none;
}

SkyBeam beamOf(const MapHeader& header) { return {header.bmaj, header.bmin, header.bpa}; }

void note(const MapOfRgb& first, const MapOfRgb& other, const MapHeader& brought,
          std::vector<std::string>& notes)
{
    const MapHeader& like = *first.header;
    if (brought.bunit != like.bunit)
        notes.push_back(other.name + " has values in '" + brought.bunit + "', " + first.name +
                        " in '" + like.bunit + "'");
    if (like.hasBeam && brought.hasBeam && !areSameBeams(beamOf(like), beamOf(brought)))
        notes.push_back(other.name + " has another beam than " + first.name +
                        ": colours at the edges of what it shows are those of the beams");
}

}  // namespace

PairFault combineRgb(const MapOfRgb (&maps)[rgbBands], int regrid, RgbMap& made,
                     std::vector<std::string>& notes, std::size_t& at, std::string& error,
                     const ProgressFunction& progress)
{
    made = RgbMap();
    error.clear();
    const MapHeader& like = *maps[0].header;
    for (at = 0; at < rgbBands; ++at) {
        const MapOfRgb& map = maps[at];
        if (const PairFault fault = faultOf(map, error); fault != PairFault::none)
            return fault;
        RegriddedMap brought;
        const int brings = at > 0 && (regrid || !map.moved.isNone());
        if (!brings && at > 0 &&
            (map.cells->rows() != maps[0].cells->rows() ||
             map.cells->columns() != maps[0].cells->columns() ||
             !haveSameCells(like, *map.header))) {
            error = "has other cells than the first map";
            return PairFault::cells;
        }
        if (brings) {
            const auto part = [&](double done) {
                return !progress || progress((static_cast<double>(at - 1) + done) / 2);
            };
            if (!regridMap(*map.cells, *map.header, like, map.moved, brought, error, part))
                return PairFault::memory;
        } else {
            brought.cells = *map.cells;
        }
        if (!brought.cells.rows()) {
            error = "needs more memory than there is";
            return PairFault::memory;
        }
        if (at > 0)
            note(maps[0], map, brings ? brought.header : *map.header, notes);
        made.cells[at] = std::move(brought.cells);
        made.bands[at] = {map.name, map.header->bunit, map.low, map.high};
    }
    return PairFault::none;
}

}  // namespace pavane

#include "tessel/sky_axes.h"

#include <string_view>

namespace pavane
{

namespace
{

struct Parts {
    std::string name;
    std::string projection;
};

Parts partsOf(const std::string& ctype)
{
    const std::size_t dash = ctype.find('-');
    const std::size_t code = ctype.find_first_not_of('-', dash);
    return {ctype.substr(0, dash),
            dash == std::string::npos || code == std::string::npos ? "" : ctype.substr(code)};
}

SkyAxes::Kind kindOf(const std::string& longitude, const std::string& latitude)
{
    static constexpr struct {
        std::string_view longitude, latitude;
        SkyAxes::Kind kind;
    } pairs[] = {{"RA", "DEC", SkyAxes::Kind::equatorial},
                 {"GLON", "GLAT", SkyAxes::Kind::galactic},
                 {"ELON", "ELAT", SkyAxes::Kind::ecliptic}};
    for (const auto& pair : pairs)
        if (longitude == pair.longitude && latitude == pair.latitude)
            return pair.kind;
    // xLON and xLAT, xyLN and xyLT: supergalactic, helioecliptic, those of planets ...
    for (const auto& [lon, lat] :
         {std::pair<std::string_view, std::string_view>{"LON", "LAT"}, {"LN", "LT"}})
        if (longitude.size() == 4 && latitude.size() == 4 && longitude.ends_with(lon) &&
            latitude.ends_with(lat) &&
            longitude.compare(0, 4 - lon.size(), latitude, 0, 4 - lat.size()) == 0)
            return SkyAxes::Kind::other;
    return SkyAxes::Kind::none;
}

}  // namespace

SkyAxes skyAxesOf(const std::string& first, const std::string& second)
{
    const Parts a = partsOf(first);
    const Parts b = partsOf(second);
    SkyAxes axes;
    axes.kind = kindOf(a.name, b.name);
    if (axes.kind == SkyAxes::Kind::none) {
        axes.kind = kindOf(b.name, a.name);
        axes.longitude = axes.kind != SkyAxes::Kind::none;
    }
    if (a.projection == b.projection)
        axes.projection = a.projection;
    return axes;
}

}  // namespace pavane

#include "tessel/angle_unit.h"

#include <cctype>
#include <numbers>

namespace pavane
{

namespace
{

struct Unit {
    std::string_view name;
    double scale;
};

constexpr double arcsecond = 1.0 / 3600;
constexpr Unit angleUnits[] = {
    {"", 1},
    {"DEG", 1},
    {"DEGREE", 1},
    {"DEGREES", 1},
    {"ARCMIN", 60 * arcsecond},
    {"ARCSEC", arcsecond},
    {"ARCSECS", arcsecond},
    {"ARCSECOND", arcsecond},
    {"ARCSECONDS", arcsecond},
    {"ASEC", arcsecond},
    {"MAS", arcsecond / 1e3},
    {"MARCSEC", arcsecond / 1e3},
    {"MILLIARCSEC", arcsecond / 1e3},
    {"UAS", arcsecond / 1e6},
    {"UARCSEC", arcsecond / 1e6},
    {"RAD", 180 / std::numbers::pi},
    {"RADIAN", 180 / std::numbers::pi},
    {"RADIANS", 180 / std::numbers::pi},
};

}  // namespace

std::string capitals(std::string_view text)
{
    std::string all;
    for (const char c : text)
        all += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return all;
}

double degreesOfUnit(std::string_view unit)
{
    const std::string known = capitals(unit);
    for (const Unit& each : angleUnits)
        if (each.name == known)
            return each.scale;
    return 0;
}

}  // namespace pavane

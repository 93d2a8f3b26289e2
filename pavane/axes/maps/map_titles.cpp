#include "pavane/axes/maps/map_titles.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "tessel/map_steps.h"
#include "tessel/rgb_map.h"
#include "tessel/rounding.h"
#include "tessel/sky_text.h"
#include "tessel/SkyCoordinates.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int headerDigits = 4;
/// Keeps the words of one fact on one line.
constexpr const char* hardBlank = "\u00a0";

/// The value with the prefix, where the unit takes one, that leaves one to three digits before the
/// point.
std::string scaledText(double value, const std::string& unit, int digits)
{
    const int power = takesPrefix(unit) ? prefixPower(value, digits) : 0;
    const std::string prefix = prefixText(power);
    const double scaled = value / std::pow(10.0, power);
    return valToStr(scaled, digits) + (unit.empty() ? "" : hardBlank + prefix + unit);
}

void append(std::string& text, const std::string& part)
{
    if (part.empty())
        return;
    if (!text.empty())
        text += "   ";
    text += part;
}

}  // namespace

namespace
{

/// The Stokes parameter of a number on its axis.
const char* stokesOf(double value)
{
    static constexpr const char* names[] = {"YX", "XY", "YY", "XX", "LR", "RL", "LL",
                                            "RR", "",   "I",  "Q",  "U",  "V"};
    const double index = std::round(value) + 8;
    return index >= 0 && index < 13 ? names[static_cast<std::size_t>(index)] : "";
}

/// What a place on an axis is; empty for one that tells nothing.
std::string planeText(const MapAxis& axis, int pixel)
{
    const double value = axis.crval + (pixel + 1 - axis.crpix) * axis.cdelt;
    if (axis.ctype.empty() || !std::isfinite(value))
        return {};
    if (axis.ctype == "STOKES")
        return *stokesOf(value) ? std::string("Stokes") + hardBlank + stokesOf(value) : "";
    if (const double band = std::round(value) - 1;
        axis.ctype == "RGB" && band >= 0 && band < static_cast<double>(rgbBands))
        return rgbNames[static_cast<std::size_t>(band)];
    // as many digits as tell a plane from the next
    const double planes = std::log10(std::max(std::fabs(value / axis.cdelt), 1.0));
    const int digits = std::clamp(truncated(std::ceil(planes)) + 1, headerDigits, 12);
    const bool isSpeed = axis.ctype.starts_with("V") || axis.ctype.starts_with("FELO");
    const bool isFrequency = axis.ctype.starts_with("FREQ");
    const std::string unit = !axis.cunit.empty() ? axis.cunit
                             : isFrequency       ? "Hz"
                             : isSpeed           ? "m/s"
                                                 : "";
    if (unit == "m/s")
        return valToStr(value / 1000, digits) + hardBlank + "km/s";
    if (unit == "Hz")
        return scaledText(value, unit, digits);
    const std::string number = valToStr(value, digits) + (unit.empty() ? "" : hardBlank + unit);
    return isSpeed || isFrequency ? number : axis.ctype + hardBlank + number;
}

}  // namespace

CString mapPlaneText(const MapHeader& header)
{
    CString text;
    int rest = header.plane;
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        const MapAxis& axis = header.axes[i];
        const int length = std::max(axis.length, 1);
        if (length > 1)
            append(text, planeText(axis, rest % length));
        rest /= length;
    }
    return text.empty() && header.planes > 1
               ? CString("plane") + hardBlank + std::to_string(header.plane)
               : text;
}

CString mapTitle(const MapHeader& header) { return header.object.empty() ? "map" : header.object; }

CString mapValueTitle(const MapHeader& header)
{
    if (header.bunit.empty())
        return {};
    const MapUnit unit = mapUnit(header.bunit);
    return titleUnit(unit.prefix + unit.name);  // one prefix is enough
}

namespace
{

/// Where the offsets on the axes count from; empty for a map that has no place on the sky.
std::string referenceText(const MapHeader& header)
{
    SkyCoordinates sky;
    std::string none;
    if (!sky.init(header, none))
        return {};
    std::string text =
        skyPositionText({sky.referenceLongitude(), sky.referenceLatitude(), sky.skyFrame()},
                        std::fabs(stepsOf(header).row));
    for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at))
        text.replace(at, 1, hardBlank);
    return text;
}

}  // namespace

CString mapHeaderLine(const MapHeader& header, const MapRange& range, const MapNoise& noise,
                      const CString& note)
{
    // what the planes of a cube differ in is told by the plane
    const auto isOfPlane = [&](const char* ctype) {
        for (std::size_t i = 2; i < header.axes.size(); ++i)
            if (header.axes[i].ctype.starts_with(ctype) && header.axes[i].length > 1)
                return true;
        return false;
    };
    CString text;
    append(text, header.object);
    append(text, mapPlaneText(header));
    if (header.frequency > 0 && !isOfPlane("FREQ"))
        append(text, scaledText(header.frequency, "Hz", headerDigits));
    if (!header.stokes.empty() && header.stokes != "I" && !isOfPlane("STOKES"))
        append(text, std::string("Stokes") + hardBlank + header.stokes);
    append(text, header.dateObs.substr(0, header.dateObs.find('T')));
    MapUnit unit = mapUnit(header.bunit);
    if (unit.name == "m/s") {  // velocities are told in km/s
        unit.factor /= 1000;
        unit.name = "km/s";
    }
    if (!range.isEmpty() && (unit.name == "km/s" || unit.name == "deg" || unit.name == "%")) {
        // velocities, angles and shares have no peak, and their robust width is no noise
        append(text, std::string("from") + hardBlank +
                         scaledText(range.least * unit.factor, unit.name, headerDigits));
        append(text, std::string("to") + hardBlank +
                         scaledText(range.greatest * unit.factor, unit.name, headerDigits));
    } else if (!range.isEmpty()) {
        append(text, std::string("peak") + hardBlank +
                         scaledText(range.greatest * unit.factor, unit.name, headerDigits));
        append(text, std::string("noise") + hardBlank +
                         scaledText(noise.sigma * unit.factor, unit.name, headerDigits - 1));
    }
    append(text, note);
    append(text, referenceText(header));  // what is too long loses its end
    return text;
}

}  // namespace pavane

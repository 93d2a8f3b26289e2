#include "pavane/axes/maps/map_titles.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int headerDigits = 4;
/// Beyond the letters, powers are clearer in the number.
constexpr int mostPrefixPower = 12;

/// Keeps the words of one fact on one line.
constexpr const char* hardBlank = "\u00a0";

/// The value with the prefix, where the unit takes one, that leaves one to three digits before the
/// point.
std::string scaledText(double value, const std::string& unit, int digits)
{
    int power = 0;
    if (value != 0 && std::isfinite(value) && takesPrefix(unit))
        power = 3 * truncated(std::floor(std::log10(std::fabs(value)) / 3));
    if (std::abs(power) > mostPrefixPower)
        power = 0;
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

CString mapTitle(const MapHeader& header) { return header.object.empty() ? "map" : header.object; }

CString mapValueTitle(const MapHeader& header)
{
    if (header.bunit.empty())
        return {};
    const MapUnit unit = mapUnit(header.bunit);
    return titleUnit(unit.prefix + unit.name);  // one prefix is enough
}

CString mapHeaderLine(const MapHeader& header, const MapRange& range, const MapNoise& noise)
{
    CString text;
    append(text, header.object);
    if (header.frequency > 0)
        append(text, scaledText(header.frequency, "Hz", headerDigits));
    if (!header.stokes.empty() && header.stokes != "I")
        append(text, std::string("Stokes") + hardBlank + header.stokes);
    append(text, header.dateObs.substr(0, header.dateObs.find('T')));
    const MapUnit unit = mapUnit(header.bunit);
    if (!range.isEmpty()) {
        append(text, std::string("peak") + hardBlank +
                         scaledText(range.greatest * unit.factor, unit.name, headerDigits));
        append(text, std::string("noise") + hardBlank +
                         scaledText(noise.sigma * unit.factor, unit.name, headerDigits - 1));
    }
    return text;
}

}  // namespace pavane

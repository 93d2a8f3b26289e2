#include "apps/view/status_text.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "tessel/rounding.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>

namespace pavane
{

namespace
{

constexpr int valueDigits = 4;
constexpr int fluxDigits = 5;
constexpr int farthestDigits = 9;
constexpr int mostDecimals = 9;
constexpr double arcsecondsPerDegree = 3600.0;
constexpr double degreesPerHour = 15.0;

/// Decimals that show a tenth of `step`.
int decimalsOf(double step)
{
    const double size = std::fabs(step) / 10;
    if (!(size > 0) || !std::isfinite(size))
        return 0;
    return std::clamp(truncated(std::ceil(-std::log10(size) - 1e-6)), 0, mostDecimals);
}

/// The unit between the brackets of a title, without the marker of its prefix.
std::string unitOfTitle(const std::string& title)
{
    const std::size_t open = title.find('[');
    const std::size_t close = title.find(']', open == std::string::npos ? 0 : open);
    if (open == std::string::npos || close == std::string::npos)
        return {};
    const std::string unit = title.substr(open + 1, close - open - 1);
    return unit.starts_with("%s") ? unit.substr(2) : unit;
}

}  // namespace

StatusWidths fittingPanes(StatusWidths wanted, int room)
{
    for (const StatusPane least : {statusCell, statusSky, statusOffset, statusValue, statusMask})
        if (std::accumulate(wanted.begin(), wanted.end(), std::int64_t{0}) > room)
            wanted[least] = 0;
    return wanted;
}

std::string groupedText(long long count)
{
    std::string text = std::to_string(count);
    for (auto at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<std::size_t>(at), "\u202f");  // a narrow blank
    return text;
}

std::string pixelText(int row, int column)
{
    std::string text = "pixel ";
    text.append(std::to_string(std::int64_t{column} + 1)).append(", ");
    return text.append(std::to_string(std::int64_t{row} + 1));
}

std::string prefixedText(double value, const std::string& unit, int digits)
{
    const int power = takesPrefix(unit) ? prefixPower(value, digits) : 0;
    const std::string text = valToStr(value / std::pow(10.0, power), digits);
    return unit.empty() ? text : text + ' ' + prefixText(power) + unit;
}

StatusFormat::StatusFormat(const MapHeader& header, const MapFrame& frame, int rows, int columns)
    : frame_(frame), flux_(fluxUnit(header, frame))
{
    const MapUnit unit = mapUnit(header.bunit);
    valueFactor_ = unit.factor;
    valueUnit_ = unit.name;

    offsetUnit_ = unitOfTitle(frame.xTitle);
    const int hasPrefix = hasPrefixMarker(frame.xTitle) && !offsetUnit_.empty();
    const double farthest = std::max({std::fabs(frame.xFirst), std::fabs(frame.xLast),
                                      std::fabs(frame.yFirst), std::fabs(frame.yLast)});
    const int power =
        hasPrefix && rows > 0 && columns > 0 ? prefixPower(farthest, farthestDigits) : 0;
    offsetFactor_ = std::pow(10.0, -power);
    offsetUnit_ = prefixText(power) + offsetUnit_;
    xDecimals_ = decimalsOf(frame.xStep * offsetFactor_);
    yDecimals_ = decimalsOf(frame.yStep * offsetFactor_);
    raDecimals_ = decimalsOf(frame.xStep * frame.arcseconds / degreesPerHour);
    decDecimals_ = decimalsOf(frame.yStep * frame.arcseconds);
    degreeDecimals_ = decimalsOf(frame.yStep * frame.arcseconds / arcsecondsPerDegree);
}

std::string StatusFormat::offsetText(double value, int decimals) const
{
    return nValToStr(value * offsetFactor_, decimals);
}

std::string StatusFormat::skyText(const SkyCoordinates& sky, double column, double row) const
{
    double ra = 0;
    double dec = 0;
    if (!sky.isSet() || !sky.toSky(column, row, ra, dec))
        return {};
    const char* const sign = dec < 0 ? "" : "+";
    const SkyFrame& frame = sky.skyFrame();
    const bool isGalactic = frame.system == SkyFrame::System::galactic;
    if (isGalactic || frame.system == SkyFrame::System::ecliptic)
        return std::string(isGalactic ? "l " : "\u03bb ")
            .append(nValToStr(ra, degreeDecimals_))
            .append(isGalactic ? "\u00b0  b " : "\u00b0  \u03b2 ")
            .append(sign)
            .append(nValToStr(dec, degreeDecimals_))
            .append("\u00b0  ")
            .append(nameOf(frame));
    const auto equinoxOf = [&](char letter) {
        return std::string(1, letter).append(valToStr(frame.equinox));
    };
    const std::string name = frame.system == SkyFrame::System::icrs  ? "ICRS"
                             : frame.system == SkyFrame::System::fk4 ? equinoxOf('B')
                                                                     : equinoxOf('J');
    return timeToStr(ra / degreesPerHour * arcsecondsPerDegree, raDecimals_) + "  " + sign +
           timeToStr(dec * arcsecondsPerDegree, decDecimals_) + "  " + name;
}

StatusTexts StatusFormat::texts(const AxisStatus& status, const SkyCoordinates& sky) const
{
    StatusTexts texts;
    if (status.inPlot) {
        const std::string unit = offsetUnit_.empty() ? "" : ' ' + offsetUnit_;
        texts[statusOffset] =
            offsetText(status.x, xDecimals_) + ", " + offsetText(status.y, yDecimals_) + unit;
        texts[statusSky] = skyText(sky, (status.x - frame_.xFirst) / frame_.xStep,
                                   (status.y - frame_.yFirst) / frame_.yStep);
    }
    if (status.inPlot && status.inMap) {
        texts[statusCell] = pixelText(status.row, status.column);
        texts[statusValue] =
            std::isnan(status.value)
                ? "blank"
                : prefixedText(double{status.value} * valueFactor_, valueUnit_, valueDigits);
    }
    if (status.hasAreas)
        texts[statusMask] = groupedText(status.cells) + (status.cells == 1 ? " cell" : " cells") +
                            ",  " + prefixedText(status.sum * flux_.factor, flux_.unit, fluxDigits);
    return texts;
}

}  // namespace pavane

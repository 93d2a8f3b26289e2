#include "apps/view/profiles/curves.h"

#include "apps/view/options.h"
#include "apps/view/status_text.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/profiles/sky_ruler.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double none = MapProfile::none;
/// Digits of what is told in a line, and of places that are typed.
constexpr int shownDigits = 5;
constexpr int pixelDecimals = 3;

/// The value with its unit as a title, without a unit the word alone.
CString valueTitle(const ViewInputs& inputs) { return "Value" + mapValueTitle(inputs.map.header); }

}  // namespace

MeasuredCurve curveOf(const MapProfile& profile, const ViewInputs& inputs,
                      const SkyCoordinates& sky)
{
    static constexpr const char* names[] = {"Profile", "Profile, greatest across",
                                            "Profile, sum across"};
    const MapFrame& frame = inputs.frame;
    MeasuredCurve curve;
    curve.name = names[static_cast<std::size_t>(profile.across)];
    curve.yTitle = valueTitle(inputs);
    curve.xTitle = !profile.hasSky            ? "Distance along the line [cells]"
                   : frame.arcseconds >= 3600 ? "Distance along the line~ [deg]"
                   : frame.arcseconds >= 60   ? "Distance along the line~ [arcmin]"
                                              : "Distance along the line [%sas]";
    for (const MapProfile::Sample& sample : profile.samples) {
        curve.x.push_back(profile.hasSky ? sample.arcseconds / frame.arcseconds : sample.cells);
        curve.y.push_back(sample.value);
    }
    curve.table =
        profileTable(profile, FluxScale::of(inputs.map.header, frame).valueUnit, sky, frame);
    return curve;
}

MeasuredCurve curveOf(const CellSpectrum& spectrum, const CString& name, int isCell,
                      const std::vector<MomentPlane>& planes, const CString& axisUnit,
                      const ViewInputs& inputs)
{
    const FluxScale scale = FluxScale::of(inputs.map.header, inputs.frame);
    const int isFlux = !isCell && (std::isfinite(scale.beamCells) || scale.perCell);
    MeasuredCurve curve;
    curve.name = name;
    curve.xTitle = axisUnit.empty()   ? CString("Plane")
                   : axisUnit == "Hz" ? CString("Frequency [%sHz]")
                                      : "Velocity~ [" + axisUnit + "]";
    curve.yTitle = isFlux   ? "Flux" + titleUnit(scale.unit)
                   : isCell ? valueTitle(inputs)
                            : "Mean" + mapValueTitle(inputs.map.header);
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const CellNumbers& n = spectrum.numbers[i];
        curve.x.push_back(axisUnit.empty() ? planes[i].plane : planes[i].value);
        curve.y.push_back(!n.cells ? none : isFlux ? scale.flux(n.sum) : n.mean);
    }
    curve.table = spectrumTable({{name, &spectrum}}, planes, axisUnit, scale);
    return curve;
}

MeasuredCurve curveOf(const CellHistogram& histogram, const CString& name, const ViewInputs& inputs)
{
    // a logarithmic scale has no 0: empty bins end below one cell
    constexpr double lowest = 0.5;
    MeasuredCurve curve;
    curve.name = name;
    curve.xTitle = valueTitle(inputs);
    curve.yTitle = "Cells of a bin";
    curve.isLogarithmic = 1;
    for (int bin = 0; bin < histogram.bins(); ++bin) {
        const double count = static_cast<double>(histogram.count(bin));
        const double noise = histogram.normal(bin);
        for (const int end : {bin, bin + 1}) {
            curve.x.push_back(histogram.edge(end));
            curve.y.push_back(count > 0 ? count : lowest);
            curve.noise.push_back(noise >= lowest ? noise : none);
        }
    }
    curve.table = histogramTable({{name, &histogram}},
                                 FluxScale::of(inputs.map.header, inputs.frame).valueUnit);
    return curve;
}

std::string rulerText(const ProfileLine& line, const ViewInputs& inputs, const SkyCoordinates& sky)
{
    if (line.corners.size() < 2)
        return {};
    const MapDistance ends =
        distanceBetween(line.corners.front(), line.corners.back(), sky, inputs.frame);
    if (!std::isfinite(ends.arcseconds))
        return valToStr(ends.cells, shownDigits) + " cells";
    const auto angle = [](double arcseconds) {
        constexpr double perDegree = 3600, perMinute = 60;
        const double size = std::fabs(arcseconds);
        return size >= perDegree   ? valToStr(arcseconds / perDegree, shownDigits) + " deg"
               : size >= perMinute ? valToStr(arcseconds / perMinute, shownDigits) + " arcmin"
                                   : prefixedText(arcseconds, "as", shownDigits);
    };
    return angle(ends.arcseconds) + " at " + nValToStr(ends.positionAngle, 2) + "\u00b0, east " +
           angle(ends.east) + ", north " + angle(ends.north) + ", " +
           valToStr(ends.cells, shownDigits) + " cells";
}

std::string lineText(const ProfileLine& line)
{
    static constexpr const char* names[] = {"mean", "greatest", "sum"};
    std::string text;
    for (const MapPlace& corner : line.corners)
        text += nValToStr(corner.x + 1, pixelDecimals) + ',' +
                nValToStr(corner.y + 1, pixelDecimals) + ',';
    return text + valToStr(line.width, 6) + ' ' + names[static_cast<std::size_t>(line.across)];
}

int readLine(const std::string& text, ProfileLine& line)
{
    std::string ignored;
    const std::size_t blank = text.find(' ');
    std::vector<std::string> arguments = {"map.fits", "--batch", "--profile",
                                          text.substr(0, blank)};
    if (blank != std::string::npos) {
        const std::size_t word = text.find_first_not_of(' ', blank);
        if (word != std::string::npos && text.substr(word) != "mean")
            arguments.insert(arguments.end(), {"--across", text.substr(word)});
    }
    ViewOptions options;
    if (!parseOptions(arguments, options, ignored))
        return 0;
    line = options.profile.line;
    return 1;
}

}  // namespace pavane

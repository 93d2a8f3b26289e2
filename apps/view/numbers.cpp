#include "apps/view/numbers.h"

#include "apps/view/batch_output.h"
#include "apps/view/mask_sum.h"
#include "tessel/value_text.h"

#include <cmath>
#include <complex>
#include <limits>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double milli = 1000.0;
/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;
constexpr int sumDigits = 12;
/// Digits that tell any two doubles apart.
constexpr int doubleDigits = 17;

/// The place of the peak: its offset to the east and north on the sky, else its cell, from 0.
std::string peakPlace(const MapRange& range, const MapFrame& frame)
{
    const double blank = std::numeric_limits<double>::quiet_NaN();
    if (!frame.onSky)
        return statLine("peak_column", range.isEmpty() ? blank : range.peakColumn, floatDigits,
                        "") +
               statLine("peak_row", range.isEmpty() ? blank : range.peakRow, floatDigits, "");
    const MapPlace place =
        range.isEmpty() ? MapPlace{blank, blank} : frame.offsetOf(range.peakColumn, range.peakRow);
    return statLine("peak_x", place.x * milli, floatDigits, "mas") +
           statLine("peak_y", place.y * milli, floatDigits, "mas");
}

}  // namespace

std::string statisticsText(const ViewInputs& inputs)
{
    const MapRange& range = inputs.range;
    const double blank = std::numeric_limits<double>::quiet_NaN();
    const MapFrame& frame = inputs.frame;
    const MapHeader& header = inputs.map.header;
    std::string text =
        statLine("peak", range.isEmpty() ? blank : range.greatest, floatDigits, header.bunit);
    text += peakPlace(range, frame);
    text += statLine("noise", inputs.noise.finiteCells ? inputs.noise.sigma : blank, floatDigits,
                     header.bunit);
    text += "mask_cells " + std::to_string(inputs.mask.count()) + " cells\n";
    const FluxUnit flux = fluxUnit(header, frame);
    return text + statLine("mask_flux", sumInside(inputs.map.cells, inputs.mask) * flux.factor,
                           sumDigits, flux.unit);
}

std::string visibilitiesText(const AComponents& model, const UvPoints& points)
{
    const int count = static_cast<int>(points.u.size());
    std::vector<std::complex<double>> values(points.u.size());
    model.VfromUV(points.u.data(), points.v.data(), count, values.data());
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (const double number : {points.u[i], points.v[i], values[i].real()})
            text += valToStr(number, doubleDigits) + ',';
        text += valToStr(values[i].imag(), doubleDigits) + '\n';
    }
    return text;
}

}  // namespace pavane

#include "apps/view/numbers.h"

#include "apps/view/batch_output.h"
#include "pavane/axes/maps/MapNumbers.h"
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
std::string peakPlace(const MapNumbers& numbers, int onSky)
{
    if (onSky)
        return statLine("peak_x", numbers.peakOffset.x * milli, floatDigits, "mas") +
               statLine("peak_y", numbers.peakOffset.y * milli, floatDigits, "mas");
    const double blank = std::numeric_limits<double>::quiet_NaN();
    const int isNone = numbers.peakRow < 0;
    return statLine("peak_column", isNone ? blank : numbers.peakColumn, floatDigits, "") +
           statLine("peak_row", isNone ? blank : numbers.peakRow, floatDigits, "");
}

}  // namespace

std::string statisticsText(const ViewInputs& inputs)
{
    const MapNumbers numbers =
        mapNumbers(AFloatMatrixAccess(inputs.map.cells), inputs, &inputs.mask);
    return statLine("peak", numbers.peak, floatDigits, numbers.unit) +
           peakPlace(numbers, inputs.frame.onSky) +
           statLine("noise", numbers.noise, floatDigits, numbers.unit) + "mask_cells " +
           std::to_string(numbers.maskCells) + " cells\n" +
           statLine("mask_flux", numbers.flux, sumDigits, numbers.fluxUnit);
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

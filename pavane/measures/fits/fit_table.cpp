#include "pavane/measures/fits/fit_table.h"

#include "pavane/measures/profiles/profile_tables.h"

#include <cmath>

namespace pavane
{

namespace
{

using Form = NumberColumn::Form;
constexpr int valueDigits = 9, errorDigits = 6;

/// Gathers the numbers with their titles.
class Numbers
{
public:
    void add(const char* key, const char* title, const CString& unit, const char* tip, double value,
             int digits = valueDigits)
    {
        numbers_.push_back(
            {key, unit, {titleWithUnit(title, unit), tip, Form::number, digits}, value});
    }
    /// A number with its error behind it.
    void add(const char* key, const char* errorKey, const char* title, const char* errorTitle,
             const CString& unit, const char* tip, const FittedValue& number,
             int digits = valueDigits)
    {
        add(key, title, unit, tip, number.value, digits);
        add(errorKey, errorTitle, unit, "Its error", number.error, errorDigits);
    }
    std::vector<FitNumber>& all() { return numbers_; }

private:
    std::vector<FitNumber> numbers_;
};

FittedValue times(const FittedValue& number, double factor)
{
    return {number.value * factor, number.error * factor};
}

}  // namespace

std::vector<FitNumber> numbersOf(const GaussianFit& fit, int source, const FluxScale& scale,
                                 const SkyCoordinates& sky, const MapFrame& frame)
{
    constexpr double milli = 1000;
    const FittedGaussian& g = fit.sources[static_cast<std::size_t>(source)];
    const CString length = fit.onSky ? "mas" : "cells";
    const double unit = fit.onSky ? milli : 1;
    Numbers n;
    n.add("peak", "peak_error", "Peak", "Peak error", scale.valueUnit,
          "Height above the background", g.peak);
    n.add("flux", "flux_error", "Flux", "Flux error", scale.unit, "Over the whole Gaussian",
          g.flux);
    n.add("pixel_x", "pixel_x_error", "pixel_x", "pixel_x error", "", "Pixel, from 1",
          {g.column.value + 1, g.column.error});
    n.add("pixel_y", "pixel_y_error", "pixel_y", "pixel_y error", "", "Pixel, from 1",
          {g.row.value + 1, g.row.error});
    if (fit.onSky) {
        n.add("east", "east_error", "East", "East error", "mas", "From the reference pixel",
              times(g.east, milli));
        n.add("north", "north_error", "North", "North error", "mas", "From the reference pixel",
              times(g.north, milli));
    }
    if (sky.isSet()) {
        double place[2] = {NumberTable::none, NumberTable::none};
        (void)sky.toSky(g.column.value, g.row.value, place[0], place[1]);
        static constexpr const char* keys[] = {"longitude", "latitude"};
        const std::vector<NumberColumn> columns = skyColumns(sky, frame, "");
        for (std::size_t i = 0; i < 2; ++i)
            n.all().push_back({keys[i], "deg", columns[i], place[i]});
    }
    n.add("major", "major_error", "Major axis", "Major axis error", length,
          "Full width at half maximum", times(g.shape.major, unit));
    n.add("minor", "minor_error", "Minor axis", "Minor axis error", length,
          "Full width at half maximum", times(g.shape.minor, unit));
    n.add("angle", "angle_error", "Angle", "Angle error", "deg",
          "Of the major axis, north through east", g.shape.angle);
    if (fit.hasBeam && !fit.isShapeFixed) {
        const FittedShape& d = g.deconvolved;
        n.add("deconvolved_major", "deconvolved_major_error", "Deconvolved major axis",
              "Deconvolved major axis error", length, "Without the beam; none: unresolved",
              times(d.major, unit));
        n.add("deconvolved_minor", "deconvolved_minor_error", "Deconvolved minor axis",
              "Deconvolved minor axis error", length, "Without the beam; none: unresolved",
              times(d.minor, unit));
        n.add("deconvolved_angle", "deconvolved_angle_error", "Deconvolved angle",
              "Deconvolved angle error", "deg", "Without the beam", d.angle);
        n.add("major_limit", "Major axis limit", length, "Upper limit of an unresolved axis",
              g.majorLimit * unit, errorDigits);
        n.add("minor_limit", "Minor axis limit", length, "Upper limit of an unresolved axis",
              g.minorLimit * unit, errorDigits);
    }
    n.add("snr", "SNR", "", "Peak over the noise of a cell", g.snr, errorDigits);
    return std::move(n.all());
}

NumberTable fitTable(const std::vector<NamedFit>& fits, const FluxScale& scale,
                     const SkyCoordinates& sky, const MapFrame& frame)
{
    NumberTable table;
    for (const NamedFit& named : fits)
        for (int i = 0; i < static_cast<int>(named.fit.sources.size()); ++i) {
            const std::vector<FitNumber> numbers = numbersOf(named.fit, i, scale, sky, frame);
            if (!table.columns()) {
                std::vector<NumberColumn> columns = {
                    {"Name", "What the cells are called", Form::words, 0, 16},
                    {"Gaussian", "In the order in which they were found", Form::whole, 0, 9}};
                for (const FitNumber& number : numbers)
                    columns.push_back(number.column);
                for (const auto& [title, unit] :
                     {std::pair<const char*, CString>{"Background", scale.valueUnit},
                      {"Background error", scale.valueUnit},
                      {"Residual rms", scale.valueUnit}})
                    columns.push_back({titleWithUnit(title, unit), "Of all Gaussians of the fit"});
                table.setColumns(columns);
            }
            table.addRow();
            table.put(0, named.name);
            table.put(1, i + 1.0);
            int column = 2;
            for (const FitNumber& number : numbers)
                table.put(column++, number.value);
            for (const double number :
                 {named.fit.background.value, named.fit.background.error, named.fit.residual})
                table.put(column++, number);
        }
    return table;
}

}  // namespace pavane

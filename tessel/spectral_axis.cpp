#include "tessel/spectral_axis.h"

#include "tessel/fits_header.h"
#include "tessel/HeaderCards.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double lightSpeed = 299792.458;  // km/s

struct UnitFactor {
    std::string_view unit;
    double factor;
};

double factorOf(const std::string& unit, const UnitFactor* first, const UnitFactor* last)
{
    for (; first != last; ++first)
        if (unit == first->unit)
            return first->factor;
    return 0;
}

/// Hertz in the unit of a frequency, 0 for an unknown one.
double hertzOf(const std::string& unit)
{
    static constexpr UnitFactor units[] = {{"", 1},      {"Hz", 1},    {"HZ", 1},
                                           {"kHz", 1e3}, {"KHZ", 1e3}, {"MHz", 1e6},
                                           {"MHZ", 1e6}, {"GHz", 1e9}, {"GHZ", 1e9}};
    return factorOf(unit, std::begin(units), std::end(units));
}

/// Kilometres per second in the unit of a velocity, 0 for an unknown one.
double kilometresOf(const std::string& unit)
{
    static constexpr UnitFactor units[] = {{"", 1e-3},      {"m/s", 1e-3}, {"M/S", 1e-3},
                                           {"m s-1", 1e-3}, {"km/s", 1},   {"KM/S", 1},
                                           {"km s-1", 1},   {"km.s-1", 1}, {"m.s-1", 1e-3}};
    return factorOf(unit, std::begin(units), std::end(units));
}

/// The step of an axis, from CDELT, CD or PC.
double stepOf(const HeaderCards& cards, const MapAxis& axis, int number)
{
    const std::string n = std::to_string(number);
    double value = 0;
    if (cards.number("CD" + n + "_" + n, value) && value != 0)
        return value;
    if (cards.number("PC" + n + "_" + n, value) && value != 0)
        return axis.cdelt * value;
    return axis.cdelt;
}

}  // namespace

SpectralAxis SpectralAxis::of(const MapHeader& header)
{
    HeaderCards cards;
    std::string text, ignored;
    for (std::string card : header.coordinateCards) {
        card.resize(80, ' ');
        text += card;
    }
    (void)cards.take(text, ignored);
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        const MapAxis& axis = header.axes[i];
        const std::string_view type = axis.ctype;
        const std::string_view name = type.substr(0, 4);
        const std::string_view rest = type.size() > 4 ? type.substr(4) : std::string_view();
        const int isChanged = rest.size() == 4 && rest[2] == '2';  // not linear: "-F2W"
        SpectralAxis found;
        double factor = 0;
        if (name == "FREQ" && !isChanged) {
            factor = hertzOf(axis.cunit);
            found.kind_ = Kind::hertz;
            double velref = 0;
            if ((cards.number("RESTFRQ", found.rest_) && found.rest_ > 0) ||
                (cards.number("RESTFREQ", found.rest_) && found.rest_ > 0)) {
                constexpr int radio = 256;
                const int isOptical =
                    cards.number("VELREF", velref) && velref >= 1 && velref < radio;
                found.kind_ = Kind::velocity;
                found.form_ = isOptical ? Form::optical : Form::radio;
                found.convention_ = isOptical ? "optical" : "radio";
            }
        } else if (name == "FELO" || type == "VOPT-F2W") {
            factor = kilometresOf(axis.cunit);
            found.kind_ = Kind::velocity;
            found.form_ = Form::felo;
            found.convention_ = "optical";
        } else if ((name == "VELO" || name == "VRAD" || name == "VOPT" || name == "ZOPT") &&
                   !isChanged) {
            factor = name == "ZOPT" ? lightSpeed : kilometresOf(axis.cunit);
            found.kind_ = Kind::velocity;
            found.convention_ = name == "VRAD" ? "radio" : name == "VELO" ? "" : "optical";
        }
        if (factor == 0)
            continue;
        found.axis_ = static_cast<int>(i);
        found.at_ = axis.crpix - 1;
        found.start_ = axis.crval * factor;
        found.step_ = stepOf(cards, axis, found.axis_ + 1) * factor;
        return found;
    }
    return {};
}

double SpectralAxis::value(double pixel) const
{
    const double x = (pixel - at_) * step_;
    const double frequency = start_ + x;
    switch (form_) {
    case Form::linear:
        break;
    case Form::radio:
        return lightSpeed * (1 - frequency / rest_);
    case Form::optical:
        return frequency > 0 ? lightSpeed * (rest_ / frequency - 1)
                             : std::numeric_limits<double>::quiet_NaN();
    case Form::felo: {
        // the wavelength over that at rest; equal steps of its inverse
        const double stretch = 1 + start_ / lightSpeed;
        const double inverse = 1 / stretch - x / (lightSpeed * stretch * stretch);
        return inverse > 0 ? lightSpeed * (1 / inverse - 1)
                           : std::numeric_limits<double>::quiet_NaN();
    }
    }
    return frequency;
}

double SpectralAxis::width(double pixel) const
{
    return std::fabs(value(pixel + 0.5) - value(pixel - 0.5));
}

std::vector<int> pixelsOfPlane(const MapHeader& header, int plane)
{
    return planePixels(header.axes, plane);
}

}  // namespace pavane

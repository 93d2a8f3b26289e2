#include "pavane/axes/maps/beam_form.h"

#include "pavane/resources/map_display_messages.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr int shownDigits = 6;

int isOnSky(double arcseconds) { return std::isfinite(arcseconds) && arcseconds > 0; }

/// Units of the axes in one of `unit`.
double axisUnits(int unit, double arcseconds)
{
    return unit >= 0 && unit < beamUnits && isOnSky(arcseconds)
               ? beamUnitArcseconds[unit] / arcseconds
               : 1;
}

int isBlank(const CString& text) { return text.find_first_not_of(' ') == CString::npos; }

}  // namespace

BeamForm BeamForm::of(const MapBeam& beam, double arcseconds, int unit)
{
    BeamForm form;
    form.unit = isOnSky(arcseconds) ? unit : beamAxisUnit;
    if (!beam.isSet())
        return form;
    const double scale = axisUnits(form.unit, arcseconds);
    form.major = valToStr(beam.major / scale, shownDigits);
    form.minor = valToStr(beam.minor / scale, shownDigits);
    form.angle = valToStr(beam.angle, shownDigits);
    return form;
}

int BeamForm::handyUnit(const MapBeam& beam, double arcseconds)
{
    if (!isOnSky(arcseconds))
        return beamAxisUnit;
    constexpr double leastNumber = 0.2;
    int unit = beam.isSet() ? beamUnits - 1 : 1;
    while (beam.isSet() && unit > 0 &&
           beam.minor * arcseconds < leastNumber * beamUnitArcseconds[unit])
        --unit;
    return unit;
}

int BeamForm::beam(double arcseconds, MapBeam& beam, CString& error, int& faulty) const
{
    if (isBlank(major) && isBlank(minor))
        return beam = {}, 1;
    const CString* const texts[] = {&major, &minor, &angle};
    double values[3] = {};
    for (faulty = 0; faulty < 3; ++faulty) {
        const CString& text = *texts[faulty];
        if (faulty == 2 && isBlank(text))
            break;
        if (!stoval(text, values[faulty]) || !std::isfinite(values[faulty]))
            return error = displayNoNumberText, 0;
        if (faulty < 2 && !(values[faulty] > 0))
            return error = displayBeamSizeText, 0;
    }
    faulty = 1;
    if (values[1] > values[0])
        return error = displayBeamOrderText, 0;
    const double scale = axisUnits(unit, arcseconds);
    const MapBeam typed{values[0] * scale, values[1] * scale, values[2]};
    faulty = 0;
    if (!typed.isSet() || !std::isfinite(typed.major))
        return error = displayBeamSizeText, 0;
    beam = typed;
    return 1;
}

}  // namespace pavane

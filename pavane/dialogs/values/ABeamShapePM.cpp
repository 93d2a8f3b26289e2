#include "pavane/dialogs/values/ABeamShapePM.h"

#include "pavane/dialogs/values/typed_number.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double greatestAxis = 1e8;  // mas, 27 degrees
constexpr const char* kindNames[] = {"fitted", "circular", "typed"};
constexpr TypedNumber anyAxis = {"", 0, greatestAxis};
constexpr TypedNumber anyAngle = {"", -360, 360};

int readEntry(const CString& text, const TypedNumber& range, double& value)
{
    double read = 0;
    if (!stoval(text, read) || !isTyped(read, range))
        return 0;
    value = read;
    return 1;
}

}  // namespace

CString faultOfBeam(const MapBeam& beam)
{
    if (!std::isfinite(beam.major) || !std::isfinite(beam.minor) || !beam.isSet())
        return "The beam needs a major and a minor axis above 0.";
    if (beam.minor > beam.major)
        return "The minor axis of the beam is longer than the major one.";
    if (beam.major > greatestAxis)
        return "The beam is wider than 27 degrees.";
    if (!(std::abs(beam.angle) <= anyAngle.most))
        return "The angle of the beam has to be a number from -360 to 360.";
    return {};
}

MapBeam ABeamShapePM::GetBeam() const
{
    if (kind == BeamKind::fitted)
        return fitted;
    if (kind == BeamKind::typed)
        return typed;
    const double round = diameter > 0 || !fitted.isSet()
                             ? diameter
                             : std::sqrt(fitted.major) * std::sqrt(fitted.minor);
    return {round, round, 0};
}

std::vector<RecordEntry> ABeamShapePM::entries() const
{
    return {{"BS KIND", kindNames[static_cast<std::size_t>(kind)]},
            {"BS DIA", valToStr(diameter)},
            {"BS MAJ", valToStr(typed.major)},
            {"BS MIN", valToStr(typed.minor)},
            {"BS PA", valToStr(typed.angle)}};
}

int ABeamShapePM::takeEntry(const RecordEntry& entry)
{
    if (entry.key == "BS DIA")
        return readEntry(entry.text, anyAxis, diameter);
    if (entry.key == "BS MAJ")
        return readEntry(entry.text, anyAxis, typed.major);
    if (entry.key == "BS MIN")
        return readEntry(entry.text, anyAxis, typed.minor);
    if (entry.key == "BS PA")
        return readEntry(entry.text, anyAngle, typed.angle);
    for (int i = 0; entry.key == "BS KIND" && i < 3; ++i)
        if (entry.text == kindNames[i])
            return kind = static_cast<BeamKind>(i), 1;
    return 0;
}

}  // namespace pavane

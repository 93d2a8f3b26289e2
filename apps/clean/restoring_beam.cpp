// Which beam the maps of a study are restored with.
#include "apps/clean/CleanSession.h"

namespace pavane
{

namespace
{

/// A line of the settings for each field of the choice: "beam-shape BS KIND=typed".
constexpr std::string_view lineName = "beam-shape ";
constexpr double masOfArcsecond = 1000;

MapBeam scaled(const MapBeam& beam, double factor)
{
    return {beam.major * factor, beam.minor * factor, beam.angle};
}

}  // namespace

ABeamShapePM CleanSession::beamShape(int round) const
{
    ABeamShapePM shape;
    if (!study_.isOpen())
        return shape;
    for (const std::string& line : study_.settings().other) {
        const std::size_t equals = line.find('=');
        if (line.starts_with(lineName) && equals != std::string::npos)
            (void)shape.takeEntry(
                {line.substr(lineName.size(), equals - lineName.size()), line.substr(equals + 1)});
    }
    if (const StudyRound* const found = study_.round(round))
        shape.fitted = scaled(found->beam, masOfArcsecond);
    return shape;
}

MapBeam CleanSession::restoringBeam(int round) const
{
    const ABeamShapePM shape = beamShape(round);
    const MapBeam beam = shape.GetBeam();
    return shape.kind == BeamKind::fitted || !beam.isSet() ? MapBeam()
                                                           : scaled(beam, 1 / masOfArcsecond);
}

int CleanSession::keepBeamShape(const ABeamShapePM& shape, std::string& error)
{
    StudySettings settings = study_.settings();
    std::erase_if(settings.other,
                  [](const std::string& line) { return line.starts_with(lineName); });
    for (const RecordEntry& entry : shape.entries())
        settings.other.push_back(std::string(lineName) + entry.key + '=' + entry.text);
    if (study_.setSettings(settings))
        return 1;
    error = study_.fault();
    return 0;
}

}  // namespace pavane

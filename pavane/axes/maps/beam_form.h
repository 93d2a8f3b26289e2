#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// Units that beams are typed in: so many arcseconds each, in the order of beamUnitTexts.
inline constexpr double beamUnitArcseconds[] = {1e-3, 1, 60, 3600};
inline constexpr int beamUnits = 4;
/// The unit of the axes themselves, the only one of a map that is not on the sky.
inline constexpr int beamAxisUnit = beamUnits;

/// A beam as it is typed: axes in a unit, angle in degrees.
struct PAVANE_API BeamForm {
    CString major, minor, angle;
    int unit = beamAxisUnit;

    /// The form of a beam in units of axes that are `arcseconds` each; 0: not on the sky. All
    /// empty without a beam.
    static BeamForm of(const MapBeam& beam, double arcseconds, int unit);
    /// The unit in which the numbers of a beam are handy.
    static int handyUnit(const MapBeam& beam, double arcseconds);
    /// The beam that is typed, unset when both axes are empty; an empty angle is 0. Non-zero on
    /// success; else 0, `error` says why and `faulty` which text: 0 major, 1 minor, 2 angle.
    int beam(double arcseconds, MapBeam& beam, CString& error, int& faulty) const;
};

}  // namespace pavane

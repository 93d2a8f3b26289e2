#pragma once

namespace pavane
{

/// How the ellipse of a beam is filled; `none`: no beam is drawn.
enum class BeamFill { hatched, filled, outline, none };
/// The corner of the plot that it stands in.
enum class BeamCorner { lowerLeft, lowerRight, upperLeft, upperRight };
inline constexpr int beamFills = 4;
inline constexpr int beamCorners = 4;

/// How a map shows its beam.
struct BeamLook {
    BeamFill fill = BeamFill::hatched;
    BeamCorner corner = BeamCorner::lowerLeft;
    friend bool operator==(const BeamLook&, const BeamLook&) = default;
};

}  // namespace pavane

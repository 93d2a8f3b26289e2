#pragma once

#include "tessel/sky_frame.h"

namespace pavane
{

/// Positions of one frame in another, many of them: `convertSky` once and then a rotation, which is
/// what all frames but FK4 differ by. Degrees.
class SkyTurn
{
public:
    SkyTurn() = default;
    /// 0 when one of the frames is not known.
    int init(const SkyFrame& from, const SkyFrame& to);
    /// 0, and the results left alone, for what is no position.
    int there(double longitude, double latitude, double& toLongitude, double& toLatitude) const;
    int back(double longitude, double latitude, double& toLongitude, double& toLatitude) const;

private:
    enum class Kind { none, rotation, any };
    Kind kind_ = Kind::none;
    double matrix_[3][3] = {};
    SkyFrame from_, to_;
};

}  // namespace pavane

#include "tessel/sky_turn.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
constexpr double farthestLongitude = 3600;

int rotated(const double (&matrix)[3][3], int isBack, double longitude, double latitude,
            double& toLongitude, double& toLatitude)
{
    if (!(std::fabs(longitude) <= farthestLongitude) || !(std::fabs(latitude) <= 90))
        return 0;
    const double cosine = std::cos(latitude * degree);
    const double from[3] = {cosine * std::cos(longitude * degree),
                            cosine * std::sin(longitude * degree), std::sin(latitude * degree)};
    double to[3] = {};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            to[i] += (isBack ? matrix[j][i] : matrix[i][j]) * from[j];
    const double angle = std::atan2(to[1], to[0]) / degree;
    toLongitude = angle < 0 ? angle + 360 : angle;
    toLatitude = std::atan2(to[2], std::hypot(to[0], to[1])) / degree;
    return 1;
}

}  // namespace

int SkyTurn::init(const SkyFrame& from, const SkyFrame& to)
{
    from_ = from;
    to_ = to;
    kind_ = Kind::none;
    if (!isKnown(from) || !isKnown(to))
        return 0;
    if (from == to)
        return 1;
    if (from.system == SkyFrame::System::fk4 || to.system == SkyFrame::System::fk4) {
        kind_ = Kind::any;  // aberration in its positions is no rotation
        return 1;
    }
    static constexpr double ends[3][2] = {{0, 0}, {90, 0}, {0, 90}};
    for (int j = 0; j < 3; ++j) {
        double longitude = 0;
        double latitude = 0;
        (void)convertSky(from, to, ends[j][0], ends[j][1], longitude, latitude);
        const double cosine = std::cos(latitude * degree);
        matrix_[0][j] = cosine * std::cos(longitude * degree);
        matrix_[1][j] = cosine * std::sin(longitude * degree);
        matrix_[2][j] = std::sin(latitude * degree);
    }
    kind_ = Kind::rotation;
    return 1;
}

int SkyTurn::there(double longitude, double latitude, double& toLongitude, double& toLatitude) const
{
    if (kind_ == Kind::rotation)
        return rotated(matrix_, 0, longitude, latitude, toLongitude, toLatitude);
    return convertSky(from_, to_, longitude, latitude, toLongitude, toLatitude);
}

int SkyTurn::back(double longitude, double latitude, double& toLongitude, double& toLatitude) const
{
    if (kind_ == Kind::rotation)
        return rotated(matrix_, 1, longitude, latitude, toLongitude, toLatitude);
    return convertSky(to_, from_, longitude, latitude, toLongitude, toLatitude);
}

}  // namespace pavane

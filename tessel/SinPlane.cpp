#include "tessel/SinPlane.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
constexpr double farthest = 0.1;

int isNear(double l, double m) { return std::abs(l) < farthest && std::abs(m) < farthest; }

}  // namespace

int SinPlane::init(const MapHeader& header)
{
    for (int i = 0; i < 2; ++i) {
        const int axis = header.longitudeAxis ? 1 - i : i;
        crpix_[i] = header.axes[static_cast<std::size_t>(i)].crpix;
        crval_[i] = header.axes[static_cast<std::size_t>(axis)].crval;
        for (int j = 0; j < 2; ++j)
            cd_[i][j] = header.cd[axis][j];
    }
    const double det = cd_[0][0] * cd_[1][1] - cd_[0][1] * cd_[1][0];
    inverse_[0][0] = cd_[1][1] / det;
    inverse_[0][1] = -cd_[0][1] / det;
    inverse_[1][0] = -cd_[1][0] / det;
    inverse_[1][1] = cd_[0][0] / det;
    sinDec_ = std::sin(crval_[1] * degree);
    cosDec_ = std::cos(crval_[1] * degree);
    isSet_ = std::isfinite(1 / det) && cosDec_ > 2 * farthest;
    return isSet_;
}

int SinPlane::toSky(const double (&pixel)[2], double (&world)[2]) const
{
    const double dx = pixel[0] - crpix_[0];
    const double dy = pixel[1] - crpix_[1];
    const double l = (cd_[0][0] * dx + cd_[0][1] * dy) * degree;
    const double m = (cd_[1][0] * dx + cd_[1][1] * dy) * degree;
    if (!isSet_ || !isNear(l, m))
        return 0;
    // cos(dec) cos(ra - ra0), positive as the pole is far
    const double x = std::sqrt(1 - l * l - m * m) * cosDec_ - m * sinDec_;
    world[0] = crval_[0] + std::atan2(l, x) / degree;
    world[1] = crval_[1] + std::asin(m - sinDec_ * l * l / (std::hypot(x, l) + x)) / degree;
    return 1;
}

int SinPlane::toPixel(const double (&world)[2], double (&pixel)[2]) const
{
    const double da = std::remainder(world[0] - crval_[0], 360.0) * degree;
    const double dd = (world[1] - crval_[1]) * degree;
    if (!isSet_ || !(std::abs(da) < std::numbers::pi / 2) || !(std::abs(dd) < 2 * farthest))
        return 0;
    const double cosine = std::cos(world[1] * degree);
    const double half = std::sin(da / 2);
    const double l = cosine * std::sin(da);
    const double m = std::sin(dd) + 2 * cosine * sinDec_ * half * half;
    if (!isNear(l, m))
        return 0;
    pixel[0] = crpix_[0] + (inverse_[0][0] * l + inverse_[0][1] * m) / degree;
    pixel[1] = crpix_[1] + (inverse_[1][0] * l + inverse_[1][1] * m) / degree;
    return 1;
}

}  // namespace pavane

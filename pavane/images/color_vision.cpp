#include "pavane/images/color_vision.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{

namespace
{

/// Red, green and blue, or the three coordinates of another space of colours.
using Triple = std::array<double, 3>;

/// Places of a palette that are compared with one another.
constexpr int comparedPlaces = 24;
/// Values that lie this part of the range apart are meant to look different, by this distance in
/// CIELAB.
constexpr int partOfRange = 6;
constexpr double toldApart = 10;

/// What light looks like without one kind of cones (the model of Machado, Oliveira and Fernandes at
/// full severity), in linear light: for red, green and blue.
constexpr std::array<std::array<Triple, 3>, 3> missingCones = {{
    {{{0.152286, 1.052583, -0.204868},
      {0.114503, 0.786281, 0.099216},
      {-0.003882, -0.048116, 1.051998}}},
    {{{0.367322, 0.860646, -0.227968},
      {0.280085, 0.672501, 0.047413},
      {-0.011820, 0.042940, 0.968881}}},
    {{{1.255528, -0.076749, -0.178779},
      {-0.078411, 0.930809, 0.147602},
      {0.004733, 0.691367, 0.303900}}},
}};
/// Linear sRGB to CIE XYZ relative to the white of the screen (D65).
constexpr std::array<Triple, 3> toRelativeXYZ = {{{0.433953, 0.376219, 0.189828},
                                                  {0.212671, 0.715160, 0.072169},
                                                  {0.017758, 0.109477, 0.872765}}};

Triple product(const std::array<Triple, 3>& matrix, const Triple& v)
{
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            result[i] += matrix[i][k] * v[k];
    return result;
}

double linearLight(int part)
{
    const double v = part / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

Triple labOf(const Triple& linear)
{
    Triple light = product(toRelativeXYZ, linear);
    for (double& v : light) {
        v = std::clamp(v, 0.0, 1.0);
        v = v > 216.0 / 24389 ? std::cbrt(v) : (24389.0 / 27 * v + 16) / 116;
    }
    return {116 * light[1] - 16, 500 * (light[0] - light[1]), 200 * (light[1] - light[2])};
}

double distance(const Triple& a, const Triple& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

}  // namespace

int isColorBlindSafe(const AArray<COLORREF>& colours)
{
    const int count = std::min(colours.count(), comparedPlaces);
    if (count < 2)
        return 0;
    // by place: as most see it, then without each kind of cones
    std::array<std::array<Triple, 4>, comparedPlaces> seen;
    for (int i = 0; i < count; ++i) {
        const COLORREF c = colours(i * (colours.count() - 1) / (count - 1));
        const Triple linear = {linearLight(GetRValue(c)), linearLight(GetGValue(c)),
                               linearLight(GetBValue(c))};
        auto& views = seen[static_cast<std::size_t>(i)];
        views[0] = labOf(linear);
        for (std::size_t k = 0; k < 3; ++k)
            views[k + 1] = labOf(product(missingCones[k], linear));
    }
    const int apart = std::max(1, count / partOfRange);
    for (int i = 0; i < count; ++i)
        for (int j = i + apart; j < count; ++j)
            for (std::size_t k = 0; k < 4; ++k)
                if (distance(seen[static_cast<std::size_t>(i)][k],
                             seen[static_cast<std::size_t>(j)][k]) < toldApart)
                    return 0;
    return 1;
}

}  // namespace pavane

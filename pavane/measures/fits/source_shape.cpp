#include "pavane/measures/fits/source_shape.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
constexpr double arcsecondsPerDegree = 3600;
/// Exponent of a Gaussian at its full width, times the square of that: 4 ln 2.
constexpr double atHalf = 4 * std::numbers::ln2;

double determinant(const Symmetric2& m) { return m.xx * m.yy - m.xy * m.xy; }

/// m * s * m'
Symmetric2 turned(const double (&m)[2][2], const Symmetric2& s)
{
    const auto product = [&](int p, int q) {
        return m[p][0] * m[q][0] * s.xx + (m[p][0] * m[q][1] + m[p][1] * m[q][0]) * s.xy +
               m[p][1] * m[q][1] * s.yy;
    };
    return {product(0, 0), product(0, 1), product(1, 1)};
}

/// Half the sum and half the difference of the eigenvalues.
struct Middle {
    double half, spread;
};

Middle middleOf(const Symmetric2& w)
{
    return {(w.xx + w.yy) / 2, std::hypot((w.yy - w.xx) / 2, w.xy)};
}

/// Angle of the larger eigenvalue, from y through x, radians.
double angleOf(const Symmetric2& w) { return std::atan2(2 * w.xy, w.yy - w.xx) / 2; }

double rootOf(double square) { return square > 0 ? std::sqrt(square) : SourceShape::none; }

}  // namespace

CellSteps CellSteps::of(const MapFrame& frame)
{
    CellSteps steps;
    const double(&s)[2][2] = frame.sky;
    const double area = s[0][0] * s[1][1] - s[0][1] * s[1][0];
    if (!frame.onSky || area == 0 || !std::isfinite(area))
        return steps;
    steps.onSky = 1;
    for (int i = 0; i < 2; ++i) {
        steps.east[i] = s[0][i];
        steps.north[i] = s[1][i];
    }
    return steps;
}

double CellSteps::cellArea() const { return std::fabs(east[0] * north[1] - east[1] * north[0]); }

Symmetric2 CellSteps::toSky(const Symmetric2& cells) const
{
    return turned({{east[0], east[1]}, {north[0], north[1]}}, cells);
}

Symmetric2 CellSteps::toCells(const Symmetric2& sky) const
{
    const double area = east[0] * north[1] - east[1] * north[0];
    return turned({{north[1] / area, -east[1] / area}, {-north[0] / area, east[0] / area}}, sky);
}

Symmetric2 widthsOf(const CellSource& source)
{
    const double factor = atHalf / determinant({source.xx, source.xy, source.yy});
    return {factor * source.yy, -factor * source.xy, factor * source.xx};
}

void setWidths(const Symmetric2& widths, CellSource& source)
{
    const double factor = atHalf / determinant(widths);
    source.xx = factor * widths.yy;
    source.xy = -factor * widths.xy;
    source.yy = factor * widths.xx;
}

int beamWidths(const MapHeader& header, const MapFrame& frame, Symmetric2& beam)
{
    if (!header.hasBeam || !CellSteps::of(frame).onSky || !(header.bmaj > 0 && header.bmin > 0))
        return 0;
    const double a = header.bmaj * arcsecondsPerDegree, b = header.bmin * arcsecondsPerDegree;
    const double east = std::sin(header.bpa * degree), north = std::cos(header.bpa * degree);
    beam = {a * a * east * east + b * b * north * north, (a * a - b * b) * east * north,
            a * a * north * north + b * b * east * east};
    return 1;
}

SourceShape shapeOf(const Symmetric2& widths)
{
    const Middle m = middleOf(widths);
    return {rootOf(m.half + m.spread), rootOf(m.half - m.spread), angleOf(widths) / degree};
}

ShapeSlopes slopesOf(const Symmetric2& widths)
{
    const SourceShape shape = shapeOf(widths);
    const Middle m = middleOf(widths);
    const double angle = angleOf(widths);
    const double s = std::sin(angle), c = std::cos(angle);
    // of the eigenvalues u'Wu and v'Wv, u = (s, c) and v = (c, -s), and of the angle of u
    const double first[3] = {s * s, 2 * s * c, c * c};
    const double second[3] = {c * c, -2 * s * c, s * s};
    const double between[3] = {s * c, c * c - s * s, -s * c};
    ShapeSlopes slopes{};
    for (int i = 0; i < 3; ++i) {
        slopes.major[i] = first[i] / (2 * shape.major);
        slopes.minor[i] = second[i] / (2 * shape.minor);
        slopes.angle[i] = m.spread > 0 ? between[i] / (2 * m.spread) / degree : SourceShape::none;
    }
    return slopes;
}

double widthAlong(const Symmetric2& widths, double angle)
{
    const double s = std::sin(angle * degree), c = std::cos(angle * degree);
    // one over the root of u' W^-1 u
    return std::sqrt(determinant(widths) /
                     (widths.yy * s * s - 2 * widths.xy * s * c + widths.xx * c * c));
}

}  // namespace pavane

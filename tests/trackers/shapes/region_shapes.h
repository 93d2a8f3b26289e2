#pragma once

#include "pavane/trackers/shapes/area_geometry.h"
#include "tessel/value_text.h"
#include "tests/tessel/sin_map.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace pavane
{

/// "box 10 20 4 2 30" (turned; degrees), "rect x y w h", "ellipse x y w h a", "poly x y x y ...".
inline std::string asText(const AreaShape& shape)
{
    const auto number = [](double v) {
        return ' ' + valToStr(std::floor(v * 1e6 + 0.5) / 1e6, 10);
    };
    std::string text;
    if (shape.kind == AreaShape::Kind::polygon) {
        for (const APoint<double>& p : shape.vertices)
            text += number(p.x) + number(p.y);
        return "poly" + text;
    }
    text = number(shape.centre.x) + number(shape.centre.y) + number(shape.width) +
           number(shape.height);
    if (shape.kind == AreaShape::Kind::rectangle)
        return "rect" + text;
    return (shape.kind == AreaShape::Kind::ellipse ? "ellipse" : "box") + text +
           number(shape.angle / degree);
}

inline std::string asText(const std::vector<AreaShape>& shapes)
{
    std::string text;
    for (const AreaShape& shape : shapes)
        text += asText(shape) + '\n';
    return text;
}

/// A digit for each area: 1 for those that are never cleaned.
inline std::string neverOnes(const std::vector<AreaShape>& shapes)
{
    std::string digits;
    for (const AreaShape& shape : shapes)
        digits += shape.isNeverClean ? '1' : '0';
    return digits;
}

/// Areas of all kinds on a map of 1000 x 1000 cells, the same for the same seed.
inline std::vector<AreaShape> randomShapes(int count, unsigned seed)
{
    std::mt19937_64 random(seed);
    const auto between = [&](double a, double b) {
        return std::uniform_real_distribution<double>(a, b)(random);
    };
    std::vector<AreaShape> shapes(static_cast<std::size_t>(count));
    for (AreaShape& shape : shapes) {
        shape.kind = static_cast<AreaShape::Kind>(random() % 4);
        shape.centre = {between(0, 1000), between(0, 1000)};
        shape.width = between(0.01, 300);
        shape.height = between(0.01, 300);
        shape.angle = shape.kind == AreaShape::Kind::rectangle ? 0 : between(-10, 10);
        for (auto n = shape.kind == AreaShape::Kind::polygon ? random() % 20 + 3 : 0; n; --n)
            shape.vertices.push_back({between(-50, 1050), between(-50, 1050)});
    }
    return shapes;
}

/// How far a point lies from the outline of an ellipse, to first order.
inline double offEllipse(const AreaShape& e, APoint<double> p)
{
    const double x = p.x - e.centre.x;
    const double y = p.y - e.centre.y;
    const double c = std::cos(e.angle);
    const double s = std::sin(e.angle);
    const double u = (x * c + y * s) / e.width;
    const double v = (y * c - x * s) / e.height;
    const double part = std::hypot(u, v);
    return std::abs(part - 0.5) * part / std::hypot(u / e.width, v / e.height);
}

/// How far a point lies from the outline of an ellipse, or from the nearest corner of another
/// shape.
inline double offOutline(const AreaShape& shape, APoint<double> p)
{
    if (shape.kind == AreaShape::Kind::ellipse)
        return offEllipse(shape, p);
    double nearest = 1e9;
    for (const APoint<double>& corner : outlineOf(shape))
        nearest = std::min(nearest, std::hypot(p.x - corner.x, p.y - corner.y));
    return nearest;
}

/// The farthest that an outline moved, cells; 1e9 for lists that do not go together.
inline double worstOutline(const std::vector<AreaShape>& a, const std::vector<AreaShape>& b)
{
    double worst = a.size() == b.size() ? 0 : 1e9;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto points = outlineOf(a[i], 16);
        if (points.size() != outlineOf(b[i], 16).size())
            return 1e9;
        for (const APoint<double>& p : points)
            worst = std::max(worst, offOutline(b[i], p));
    }
    return worst;
}

}  // namespace pavane

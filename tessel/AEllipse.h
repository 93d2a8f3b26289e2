#pragma once

#include <cmath>

namespace pavane
{

/// Generator of ellipse outlines. Derive from it, say in `Point` where the points go, call `Draw`.
class AEllipse
{
public:
    virtual ~AEllipse() = default;

    /// Calls `Point` once for each index 0 to count - 1, in order around the ellipse with the
    /// centre (x, y) and the semi-axes `a` and `b`, the first point at the end of `a`. With y
    /// downwards the ellipse is turned counter-clockwise by `turn` tenths of a degree. A count
    /// below 1 calls nothing.
    void Draw(double x, double y, double a, double b, int turn, int count)
    {
        constexpr double pi = 3.141592653589793;
        const double t = turn * pi / 1800;
        const double step = 2 * pi / count;
        for (int i = 0; i < count; ++i) {
            const double along = a * std::cos(i * step);
            const double across = b * std::sin(i * step);
            Point(i, x + along * std::cos(t) + across * std::sin(t),
                  y - along * std::sin(t) + across * std::cos(t));
        }
    }

protected:
    /// Receives outline point `index`.
    virtual void Point(int index, double x, double y) = 0;
};

}  // namespace pavane

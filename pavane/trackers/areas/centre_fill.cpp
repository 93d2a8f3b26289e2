#include "pavane/trackers/areas/centre_fill.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

/// The first cell at or after a place, at most `count` and at least -1.
int cellFrom(double place, int count)
{
    return static_cast<int>(std::ceil(std::clamp(place, -1.0, static_cast<double>(count))));
}

/// An edge from (x, y) on; it crosses rows from `first` to `last`, both inside the mask.
struct Edge {
    APoint<double> from;
    APoint<double> to;
    int first;
    int last;
    /// In this order of sums two polygons that share the edge, or another program, find the same.
    double crossing(int row) const
    {
        return (to.x - from.x) * (row - from.y) / (to.y - from.y) + from.x;
    }
};

void fillPolygonCentres(ABitMatrix& mask, const std::vector<APoint<double>>& vertices,
                        const StopFlag* stop)
{
    std::vector<Edge> edges;
    const std::size_t n = vertices.size();
    for (std::size_t i = 0; i < n; ++i) {
        const APoint<double> from = vertices[i];
        const APoint<double> to = vertices[(i + n - 1) % n];
        const int first = std::max(cellFrom(std::min(from.y, to.y), mask.rows()), 0);
        const int last = cellFrom(std::max(from.y, to.y), mask.rows()) - 1;
        if (first <= last)
            edges.push_back({from, to, first, last});
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge& a, const Edge& b) { return a.first < b.first; });
    std::vector<Edge> active;
    std::vector<double> crossings;
    auto next = edges.begin();
    int row = edges.empty() ? mask.rows() : next->first;
    for (; row < mask.rows() && !isStopped(stop); ++row) {
        std::erase_if(active, [&](const Edge& e) { return e.last < row; });
        for (; next != edges.end() && next->first == row; ++next)
            active.push_back(*next);
        if (active.empty() && next == edges.end())
            return;
        crossings.clear();
        for (const Edge& edge : active)
            crossings.push_back(edge.crossing(row));
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            mask.setSpan(row, cellFrom(crossings[i], mask.columns()),
                         cellFrom(crossings[i + 1], mask.columns()) - 1);
    }
}

/// Offsets from the centre that a row has inside a shape, to within rounding; none: empty.
struct Reach {
    double least = -1e300;
    double greatest = 1e300;
    /// Cuts it to |slope * x + offset| < half.
    void cut(double slope, double offset, double half)
    {
        constexpr double level = 1e-12;
        if (std::abs(slope) < level) {
            if (std::abs(offset) > half + level * std::abs(greatest))
                greatest = least - 1;
            return;
        }
        const double a = (-half - offset) / slope;
        const double b = (half - offset) / slope;
        least = std::max(least, std::min(a, b));
        greatest = std::min(greatest, std::max(a, b));
    }
};

/// A rectangle or an ellipse about its centre.
struct Turned {
    int isEllipse;
    double cosine, sine;
    double along, across;  // half the sizes
    double perAlong, perAcross;

    explicit Turned(const AreaShape& shape)
        : isEllipse(shape.kind == AreaShape::Kind::ellipse),
          cosine(shape.kind == AreaShape::Kind::rectangle ? 1 : std::cos(shape.angle)),
          sine(shape.kind == AreaShape::Kind::rectangle ? 0 : std::sin(shape.angle)),
          along(0.5 * shape.width), across(0.5 * shape.height), perAlong(1 / (along * along)),
          perAcross(1 / (across * across))
    {
    }
    int holds(double x, double y) const
    {
        const double u = y * sine + x * cosine;
        const double v = y * cosine - x * sine;
        return isEllipse ? u * u * perAlong + v * v * perAcross < 1
                         : std::abs(u) < along && std::abs(v) < across;
    }
    /// Farthest row from that of the centre.
    double height() const
    {
        return isEllipse ? std::hypot(along * sine, across * cosine)
                         : std::abs(along * sine) + std::abs(across * cosine);
    }
    Reach reach(double y) const
    {
        Reach found;
        if (!isEllipse) {
            found.cut(cosine, y * sine, along);
            found.cut(-sine, y * cosine, across);
            return found;
        }
        // the roots of a x^2 + 2 b x + c
        const double a = cosine * cosine * perAlong + sine * sine * perAcross;
        const double b = sine * cosine * y * (perAlong - perAcross);
        const double c = y * y * (sine * sine * perAlong + cosine * cosine * perAcross) - 1;
        const double half = std::sqrt(std::max(b * b - a * c, 0.0)) / a;
        return {-b / a - half, -b / a + half};
    }
};

void fillTurnedCentres(ABitMatrix& mask, const AreaShape& shape, const StopFlag* stop)
{
    const Turned turned(shape);
    const double height = turned.height();
    const APoint<double> centre = shape.centre;
    const int last = cellFrom(centre.y + height + 1, mask.rows());
    for (int row = std::max(cellFrom(centre.y - height - 1, mask.rows()), 0);
         row < std::min(last, mask.rows()) && !isStopped(stop); ++row) {
        const double y = row - centre.y;
        const Reach reach = turned.reach(y);
        int from = cellFrom(centre.x + reach.least - 1, mask.columns());
        int to = cellFrom(centre.x + reach.greatest + 1, mask.columns());
        while (from <= to && !turned.holds(from - centre.x, y))
            ++from;
        while (from <= to && !turned.holds(to - centre.x, y))
            --to;
        mask.setSpan(row, from, to);
    }
}

}  // namespace

void fillCentres(ABitMatrix& mask, const AreaShape& shape, const StopFlag* stop)
{
    if (shape.kind == AreaShape::Kind::polygon)
        fillPolygonCentres(mask, shape.vertices, stop);
    else
        fillTurnedCentres(mask, shape, stop);
}

}  // namespace pavane

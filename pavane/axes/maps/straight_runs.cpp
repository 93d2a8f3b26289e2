#include "pavane/axes/maps/straight_runs.h"

#include <cmath>
#include <cstddef>

namespace pavane
{

namespace
{

double cross(const CPointF& a, const CPointF& b) { return a.x * b.y - a.y * b.x; }

/// The directions from one point in which a ray passes all that came after it near enough.
class Sleeve
{
public:
    explicit Sleeve(double tolerance) : tolerance_(tolerance) {}

    void begin(const CPointF& anchor)
    {
        anchor_ = anchor;
        isOpen_ = 1;
        reach_ = 0;
    }

    /// 0 where a run from the anchor to the point would pass one before it too far off.
    int takes(const CPointF& point)
    {
        const CPointF way{point.x - anchor_.x, point.y - anchor_.y};
        const double length2 = way.x * way.x + way.y * way.y;
        if (!(length2 > reach_))
            return length2 == 0 && reach_ == 0;  // else it turned back, or is not a number
        if (!isOpen_ && (cross(low_, way) < 0 || cross(way, high_) < 0))
            return 0;
        reach_ = length2;
        const double tolerance2 = tolerance_ * tolerance_;
        if (length2 <= tolerance2)
            return 1;  // every direction passes it
        const double sine = tolerance_ / std::sqrt(length2);
        const double cosine = std::sqrt(1 - sine * sine);
        const CPointF low{way.x * cosine + way.y * sine, way.y * cosine - way.x * sine};
        const CPointF high{way.x * cosine - way.y * sine, way.y * cosine + way.x * sine};
        if (isOpen_ || cross(low_, low) > 0)
            low_ = low;
        if (isOpen_ || cross(high, high_) > 0)
            high_ = high;
        isOpen_ = 0;
        return 1;
    }

private:
    double tolerance_;
    CPointF anchor_, low_, high_;
    int isOpen_ = 1;
    double reach_ = 0;
};

}  // namespace

void keepStraightRuns(std::vector<CPointF>& points, double tolerance)
{
    if (points.size() < 3 || !(tolerance > 0))
        return;
    Sleeve sleeve(tolerance);
    sleeve.begin(points[0]);
    std::size_t kept = 1, anchor = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (sleeve.takes(points[i]))
            continue;
        if (anchor + 1 < i)  // the point before ends the run
            points[kept++] = points[i - 1];
        anchor = i - 1;
        sleeve.begin(points[kept - 1]);
        (void)sleeve.takes(points[i]);
    }
    points[kept++] = points.back();
    points.resize(kept);
}

}  // namespace pavane

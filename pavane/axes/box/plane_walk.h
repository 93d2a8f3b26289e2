#pragma once

#include "pavane/axes/box/SurfaceGrid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace pavane
{

/// A surface as a column of pixels sees it. Index i goes away from the eye and j across it, and a
/// line of the base that is seen as one upright line is j = start + slope i, 0 <= slope <= 1: this
/// is reached by exchanging rows and columns and by turning either round.
class PlaneWalk
{
public:
    PlaneWalk(const SurfaceGrid& grid, const BoxTransform& view)
    {
        const double stepP = grid.stepP(), stepQ = grid.stepQ();
        Side column{grid.columns(), 1, view.xp * stepP, view.yp * stepP, stepP, 0};
        Side row{grid.rows(), grid.columns(), view.xq * stepQ, view.yq * stepQ, 0, stepQ};
        origin_ = {grid.p(0), grid.q(0), 0};
        if (column.count < 2 || row.count < 2 || (column.x == 0 && row.x == 0))
            return;
        rowsAway_ = std::fabs(column.x) >= std::fabs(row.x);
        away_ = rowsAway_ ? row : column;
        across_ = rowsAway_ ? column : row;
        slope_ = -away_.x / across_.x;
        // a step of i along the line, and whether it leads away from the eye
        const double p = away_.p + slope_ * across_.p, q = away_.q + slope_ * across_.q;
        if (q * view.xp - p * view.xq < 0) {
            turn(away_);
            slope_ = -slope_;
        }
        if (slope_ < 0) {
            turn(across_);
            slope_ = -slope_;
        }
        const CPointF at = view.project(origin_);
        x_ = at.x;
        y_ = at.y;
        heights_ = grid.heights().data() + node_;
        perSlope_ = slope_ > 0 ? 1 / slope_ : 0;
        perLess_ = slope_ < 1 ? 1 / (1 - slope_) : 0;
        perMore_ = 1 / (1 + slope_);
    }

    int isEmpty() const { return !heights_; }
    int rowsAway() const { return rowsAway_; }
    /// Steps of i and of j: number of centres, distance in the grid's memory, in the picture and in
    /// the box.
    struct Side {
        int count = 0;
        std::ptrdiff_t stride = 0;
        double x = 0, y = 0, p = 0, q = 0;
    };
    const Side& away() const { return away_; }
    const Side& across() const { return across_; }
    std::ptrdiff_t node(int i, int j) const
    {
        return node_ + i * away_.stride + j * across_.stride;
    }
    /// Where the line of an x of the picture starts.
    double start(double x) const { return (x - x_) / across_.x; }
    /// y of the picture along such a line at s = 0: at i = 0, and for a step of i.
    double yAt(double start) const { return y_ + across_.y * start; }
    double yStep() const { return away_.y + slope_ * across_.y; }
    double slope() const { return slope_; }
    BoxPoint base(double i, double j) const
    {
        return {origin_.p + away_.p * i + across_.p * j, origin_.q + away_.q * i + across_.q * j,
                0};
    }
    double leastX() const
    {
        return x_ + std::min(away_.x * (away_.count - 1), 0.0) + leastAcross();
    }
    double mostX() const
    {
        return x_ + std::max(away_.x * (away_.count - 1), 0.0) + leastAcross() +
               std::fabs(across_.x * (across_.count - 1));
    }

    /// Calls visitor.begin(i, s) and then visitor.to(i, s) at each place where the line crosses a
    /// side of a triangle. A height is NaN where one it is made of is, so that a stretch inside a
    /// hole has an end that is NaN. The visitor may end the walk by a `to` that answers false.
    template <typename Visitor>
    void walk(double start, Visitor& visitor) const
    {
        const int rows = away_.count, last = across_.count - 1;
        const std::ptrdiff_t next = across_.stride, up = away_.stride;
        if (!(start <= last) || (start < 0 && slope_ == 0))
            return;
        int i = 0;
        if (start < 0) {
            const double enter = -start * perSlope_;
            if (!(enter < rows - 1))
                return;
            i = static_cast<int>(enter);
            const float* low = heights_ + i * up;
            const float* high = low + up;
            const double f = enter - i;
            visitor.begin(enter, mix(low[0], high[0], f));
            if (isTurned_) {
                const double g = std::min((1 - start - slope_ * i) * perMore_, 1.0);
                visitor.to(i + g, mix(low[next], high[0], g));
            }
            ++i;
            Place place = at(start, i);
            if (!visitor.to(i, height(place, i)))
                return;
        } else {
            visitor.begin(0, height(at(start, 0), 0));
        }
        Place place = at(start, i);
        for (; i < rows - 1; ++i) {
            const double a = place.part, b = a + slope_;
            if (a > 1 || (a == 1 && slope_ > 0))
                return;
            const float* low = heights_ + i * up + place.cell * next;
            const float* high = low + up;
            if (isTurned_) {
                const double f = (1 - a) * perMore_;
                visitor.to(i + f, mix(low[next], high[0], f));
            } else if (b <= 1) {
                const double f = std::min(a * perLess_, 1.0);
                visitor.to(i + f, mix(low[0], high[next], f));
            }
            if (b > 1) {
                const double f = (1 - a) * perSlope_;
                visitor.to(i + f, mix(low[next], high[next], f));
                if (place.cell == last - 1)
                    return;
                if (isTurned_) {
                    const double g = std::min((2 - a) * perMore_, 1.0);
                    visitor.to(i + g, mix(low[2 * next], high[next], g));
                }
            }
            place = at(start, i + 1);
            if (!visitor.to(i + 1, height(place, i + 1)))
                return;
        }
    }

private:
    struct Place {
        int cell;
        double part;
    };
    Place at(double start, int i) const
    {
        const double j = start + slope_ * i;
        const int cell = std::clamp(static_cast<int>(j), 0, across_.count - 2);
        return {cell, j - cell};
    }
    static double mix(float from, float to, double part)
    {
        return static_cast<double>(from) * (1 - part) + static_cast<double>(to) * part;
    }
    double height(const Place& place, int i) const
    {
        const float* low = heights_ + i * away_.stride + place.cell * across_.stride;
        return mix(low[0], low[across_.stride], place.part);
    }
    double leastAcross() const { return std::min(across_.x * (across_.count - 1), 0.0); }
    void turn(Side& side)
    {
        const int last = side.count - 1;
        node_ += last * side.stride;
        origin_.p += last * side.p;
        origin_.q += last * side.q;
        side = {side.count, -side.stride, -side.x, -side.y, -side.p, -side.q};
        isTurned_ = !isTurned_;
    }

    Side away_, across_;
    BoxPoint origin_;
    std::ptrdiff_t node_ = 0;
    const float* heights_ = nullptr;
    double x_ = 0, y_ = 0;
    double slope_ = 0, perSlope_ = 0, perLess_ = 0, perMore_ = 0;
    int rowsAway_ = 0;
    bool isTurned_ = false;  ///< the diagonals run from (i + 1, j) to (i, j + 1)
};

}  // namespace pavane

#include "pavane/axes/box/SurfaceSight.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
/// Heights nearer to each other than this are the same.
constexpr double sameHeight = 1e-7;
/// What lies nearer to a curtain or a floor than this, in steps, lies on it.
constexpr double onIt = 1e-7;
/// How far beyond a border of squares, in squares, one looks which square comes next.
constexpr double ahead = 1e-9;

/// A line goes on by this part at least, or it would stay where a step is lost.
constexpr double leastStep = 1e-15;

/// A line through a surface in columns, rows and heights.
struct GridRay {
    double column, row, s;
    double columnStep, rowStep, sStep;

    double columnAt(double t) const { return column + columnStep * t; }
    double rowAt(double t) const { return row + rowStep * t; }
    double sAt(double t) const { return s + sStep * t; }
};

/// One by a step; 0 for none.
double inverse(double step) { return std::fabs(step) < 1e-300 ? 0 : 1 / step; }

/// Cuts first..last to where from + t / per lies in low..high.
void clip(double from, double per, double low, double high, double& first, double& last)
{
    if (per == 0) {
        if (!(from >= low && from <= high))
            last = -infinity;
        return;
    }
    const double a = (low - from) * per, b = (high - from) * per;
    first = std::max(first, std::min(a, b));
    last = std::min(last, std::max(a, b));
}

}  // namespace

/// Follows a line through a surface until it passes from one side of it to the other.
class SurfaceSight::Crossing
{
public:
    Crossing(const SurfaceGrid& grid, const GridRay& ray, const Steps& steps)
        : grid_(grid), ray_(ray), ahead_(steps.ahead), perColumn_(steps.perColumn),
          perRow_(steps.perRow), perSlant_(steps.perSlant)
    {
    }
    /// On which side the line starts: above 0, below 0, on the surface or unknown 0.
    void startAt(double height) { side_ = sideOf(height); }
    /// Whether it crosses between first and last; where and to which side then.
    bool find(double first, double last)
    {
        int level = 0;
        for (double t = first; t < last;) {
            const int column = squareOf(ray_.columnAt(t + ahead_), grid_.columns());
            const int row = squareOf(ray_.rowAt(t + ahead_), grid_.rows());
            const int shift = HeightBlocks::firstShift + level;
            const double end = std::min(exitOf(column, row, shift, t), last);
            const HeightBlocks::Range range = grid_.blocks().range(level, column, row);
            const double from = ray_.sAt(t), to = ray_.sAt(end);
            if (std::min(from, to) > static_cast<double>(range.greatest) ||
                std::max(from, to) < static_cast<double>(range.least)) {
                side_ = 0;  // where it comes out is looked at anew
                t = end;
                level = std::min(level + 1, grid_.blocks().levels() - 1);
            } else if (level > 0) {
                --level;
            } else {
                if (goThrough(t, end))
                    return true;
                t = end;
            }
        }
        return false;
    }
    double at() const { return at_; }
    int fromBelow() const { return side_ > 0; }

private:
    static int sideOf(double height)
    {
        return height > sameHeight ? 1 : height < -sameHeight ? -1 : 0;
    }
    static int squareOf(double place, int centres)
    {
        return place > 0 ? static_cast<int>(std::min(place, centres - 2.0)) : 0;
    }
    /// Where the line leaves the block of a square, later than t.
    double exitOf(int column, int row, int shift, double t) const
    {
        const auto leaves = [shift](int square, double from, double step, double per) {
            const int border = ((square >> shift) + (step > 0 ? 1 : 0)) << shift;
            return per != 0 ? (border - from) * per : infinity;
        };
        return std::max(std::min(leaves(column, ray_.column, ray_.columnStep, perColumn_),
                                 leaves(row, ray_.row, ray_.rowStep, perRow_)),
                        t + std::max(ahead_, std::fabs(t) * leastStep));
    }
    /// Square after square of a block, from one side of a triangle to the next.
    bool goThrough(double t, double last)
    {
        int column = squareOf(ray_.columnAt(t + ahead_), grid_.columns());
        int row = squareOf(ray_.rowAt(t + ahead_), grid_.rows());
        const int right = ray_.columnStep > 0, up = ray_.rowStep > 0;
        passAt(t, triangleHeight(column, row, t));
        while (t < last) {
            const double leavesColumn =
                perColumn_ != 0 ? (column + right - ray_.column) * perColumn_ : infinity;
            const double leavesRow = perRow_ != 0 ? (row + up - ray_.row) * perRow_ : infinity;
            const double end = std::min(std::min(leavesColumn, leavesRow), last);
            // the diagonal is where the parts of column and row are equal
            const double diagonal = (ray_.row - row - (ray_.column - column)) * perSlant_;
            if (perSlant_ != 0 && diagonal > t && diagonal < end) {
                const double part = ray_.columnAt(diagonal) - column;
                if (passAt(diagonal, mix(height(column, row), height(column + 1, row + 1), part)))
                    return true;
            }
            double at;
            if (end == leavesColumn) {
                const int c = column + right;
                at = mix(height(c, row), height(c, row + 1), ray_.rowAt(end) - row);
                column += right ? 1 : -1;
            } else if (end == leavesRow) {
                const int r = row + up;
                at = mix(height(column, r), height(column + 1, r), ray_.columnAt(end) - column);
                row += up ? 1 : -1;
            } else {
                at = triangleHeight(column, row, end);
            }
            if (passAt(end, at))
                return true;
            t = end;
            if (column < 0 || row < 0 || column > grid_.columns() - 2 || row > grid_.rows() - 2)
                return false;
        }
        return false;
    }
    double height(int column, int row) const
    {
        return static_cast<double>(grid_.height(column, row));
    }
    static double mix(double from, double to, double part) { return from + (to - from) * part; }
    double triangleHeight(int column, int row, double t) const
    {
        const double x = ray_.columnAt(t) - column, y = ray_.rowAt(t) - row;
        const double low = height(column, row), high = height(column + 1, row + 1);
        if (ray_.columnAt(t + ahead_) - column >= ray_.rowAt(t + ahead_) - row) {
            const double side = height(column + 1, row);
            return low + (side - low) * x + (high - side) * y;
        }
        const double side = height(column, row + 1);
        return low + (side - low) * y + (high - side) * x;
    }
    /// Goes on to a place where the surface is `surface` high, NaN when a hole lies before it.
    bool passAt(double t, double surface)
    {
        const double above = ray_.sAt(t) - surface;
        const int side = sideOf(above);
        if (side == 0) {
            if (!(above == above))
                side_ = 0;
        } else {
            const bool isOther = side_ == -side;
            side_ = side;
            if (isOther) {
                at_ = above_ != above ? t_ + (t - t_) * above_ / (above_ - above) : t;
                return true;
            }
        }
        t_ = t;
        above_ = above;
        return false;
    }

    const SurfaceGrid& grid_;
    const GridRay& ray_;
    double ahead_;
    double perColumn_, perRow_, perSlant_;
    int side_ = 0;
    double t_ = 0, above_ = 0;  ///< where it has come to
    double at_ = 0;
};

SurfaceSight::SurfaceSight(const BoxView& view, const SurfaceScene& scene)
    : view_(view), scene_(scene), sight_(view.sight())
{
    const BoxPoint toEye{-sight_.p, -sight_.q, -sight_.s};
    toEye_[0] = stepsOf(scene.first, toEye);
    toEye_[1] = stepsOf(scene.second, toEye);
}

SurfaceSight::Steps SurfaceSight::stepsOf(const SceneSurface& surface, const BoxPoint& step)
{
    Steps steps;
    if (!surface.grid || surface.grid->columns() < 2 || surface.grid->rows() < 2)
        return steps;
    steps.column = step.p / surface.grid->stepP();
    steps.row = step.q / surface.grid->stepQ();
    steps.s = step.s;
    steps.perColumn = inverse(steps.column);
    steps.perRow = inverse(steps.row);
    steps.perSlant = inverse(steps.column - steps.row);
    steps.perS = inverse(steps.s);
    const double faster = std::max(std::fabs(steps.column), std::fabs(steps.row));
    steps.ahead = std::min(ahead / faster, 1.0);
    return steps;
}

SurfaceSight::Meeting SurfaceSight::meet(const SceneSurface& surface, const Ray& ray,
                                         const Steps& steps)
{
    Meeting meeting;
    if (!surface.grid || surface.grid->columns() < 2 || surface.grid->rows() < 2)
        return meeting;
    const SurfaceGrid& grid = *surface.grid;
    const GridRay line{grid.columnOf(ray.from.p),
                       grid.rowOf(ray.from.q),
                       ray.from.s,
                       steps.column,
                       steps.row,
                       steps.s};
    double first = ray.first, last = ray.last;
    clip(line.column, steps.perColumn, 0, grid.columns() - 1, first, last);
    clip(line.row, steps.perRow, 0, grid.rows() - 1, first, last);
    if (!(first <= last))
        return meeting;
    const auto keep = [&meeting](Kind kind, double at, int fromBelow) {
        if (meeting.kind == Kind::nothing || at < meeting.at)
            meeting = {kind, at, fromBelow};
    };
    // height above the surface where the line comes in and goes out
    const auto inside = [](double place, int centres) {
        const double whole = std::floor(place + 0.5);
        return std::clamp(std::fabs(place - whole) < 1e-9 ? whole : place, 0.0, centres - 1.0);
    };
    const auto above = [&](double t) {
        return line.sAt(t) - grid.heightAt(inside(line.columnAt(t), grid.columns()),
                                           inside(line.rowAt(t), grid.rows()));
    };
    const auto passesSkirt = [&](double t) {
        return surface.skirt && std::isfinite(t) && above(t) < 0 && line.sAt(t) >= grid.floor();
    };
    if (first > ray.first + onIt && passesSkirt(first))
        keep(Kind::skirt, first, 0);
    if (last < ray.last && last > ray.first + onIt && passesSkirt(last))
        keep(Kind::skirt, last, 0);
    // no part of the surface is above its greatest height or below its least one
    const HeightBlocks::Range range = grid.blocks().range(grid.blocks().levels() - 1, 0, 0);
    double from = first, to = last;
    clip(line.s, steps.perS, static_cast<double>(range.least) - sameHeight * 2,
         static_cast<double>(range.greatest) + sameHeight * 2, from, to);
    double lowest = infinity;  // a surface that lies on its floor shows, not the floor
    if (from < to) {
        Crossing crossing(grid, line, steps);
        crossing.startAt(above(from));
        if (crossing.find(from, to)) {
            keep(Kind::surface, crossing.at(), crossing.fromBelow());
            lowest = line.sAt(crossing.at()) - grid.floor();
        }
    }
    if (surface.floor && line.sStep != 0 && lowest > sameHeight * 4) {
        const double at = (grid.floor() - line.s) / line.sStep;
        if (at > ray.first + onIt && at >= first && at <= last)
            keep(Kind::floor, at, 0);
    }
    return meeting;
}

int SurfaceSight::isHidden(const BoxPoint& point) const
{
    if (!std::isfinite(point.p + point.q + point.s))
        return 1;
    const Ray ray{point, {-sight_.p, -sight_.q, -sight_.s}, 0, infinity};
    return meet(scene_.first, ray, toEye_[0]).kind != Kind::nothing ||
           meet(scene_.second, ray, toEye_[1]).kind != Kind::nothing;
}

SurfaceSight::Ray SurfaceSight::rayThrough(const CPointF& at) const
{
    const BoxTransform& t = view_.transform();
    BoxPoint point;
    if (std::fabs(t.ys) < 0.1 * std::hypot(t.yp, t.yq)) {
        view_.unproject(at, 0, point);
    } else {
        const double x = (at.x - t.x0) / (t.xp * t.xp + t.xq * t.xq);
        point.p = x * t.xp;
        point.q = x * t.xq;
        point.s = (at.y - t.y0 - t.yp * point.p - t.yq * point.q) / t.ys;
    }
    return {point, sight_, -infinity, infinity};
}

int SurfaceSight::pick(const CPointF& at, SurfaceHit& hit) const
{
    if (!std::isfinite(at.x + at.y))
        return 0;
    const Ray ray = rayThrough(at);
    const Meeting first = meet(scene_.first, ray, stepsOf(scene_.first, ray.step));
    const Meeting second = meet(scene_.second, ray, stepsOf(scene_.second, ray.step));
    const bool isSecond = second.kind != Kind::nothing &&
                          (first.kind == Kind::nothing || second.at < first.at - onIt);
    const Meeting& nearest = isSecond ? second : first;
    if (nearest.kind != Kind::surface)
        return 0;
    const SurfaceGrid& grid = *(isSecond ? scene_.second : scene_.first).grid;
    hit.at = {ray.from.p + ray.step.p * nearest.at, ray.from.q + ray.step.q * nearest.at,
              ray.from.s + ray.step.s * nearest.at};
    hit.second = isSecond;
    const auto centre = [](double place, int count) {
        return static_cast<int>(std::clamp(std::floor(place + 0.5), 0.0, count - 1.0));
    };
    hit.column = centre(grid.columnOf(hit.at.p), grid.columns());
    hit.row = centre(grid.rowOf(hit.at.q), grid.rows());
    hit.cell = grid.cell(hit.column, hit.row);
    hit.fromBelow = nearest.fromBelow;
    return 1;
}

}  // namespace pavane

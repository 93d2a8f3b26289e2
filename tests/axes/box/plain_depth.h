#pragma once

#include "pavane/axes/box/SurfaceRaster.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// The picture of a box by a plain depth buffer, triangle by triangle, to compare with.
class PlainDepth
{
public:
    PlainDepth(const pavane::BoxView& view, int width, int height)
        : view_(view), width_(width), height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
          depths_(pixels_.size(), INFINITY)
    {
    }
    void add(const pavane::SceneSurface& surface, int second)
    {
        using pavane::BoxPoint;
        using pavane::SurfacePart;
        if (!surface.grid || surface.grid->columns() < 2 || surface.grid->rows() < 2)
            return;
        grid_ = surface.grid;
        second_ = second;
        const int right = grid_->columns() - 1, top = grid_->rows() - 1;
        for (int r = 0; r < top; ++r)
            for (int c = 0; c < right; ++c) {
                const BoxPoint at[] = {grid_->point(c, r), grid_->point(c + 1, r),
                                       grid_->point(c, r + 1), grid_->point(c + 1, r + 1)};
                triangle({at[0], at[1], at[3]}, SurfacePart::upper);
                triangle({at[0], at[3], at[2]}, SurfacePart::upper);
                if (surface.floor)
                    quad(at[0], at[1], at[2], at[3], SurfacePart::floor);
            }
        for (int k = 0; surface.skirt && k < std::max(right, top); ++k)
            for (const int far : {0, 1}) {
                if (k < right)
                    curtain(grid_->point(k, far * top), grid_->point(k + 1, far * top));
                if (k < top)
                    curtain(grid_->point(far * right, k), grid_->point(far * right, k + 1));
            }
    }
    const pavane::SurfacePixel& pixel(int x, int y) const { return pixels_[index(x, y)]; }
    std::size_t triangles() const { return triangles_.size(); }
    /// Whether a triangle stands between a point and the eye.
    int isHidden(const pavane::BoxPoint& at) const
    {
        const pavane::BoxPoint sight = view_.sight();
        for (const auto& c : triangles_) {
            const pavane::BoxPoint u = minus(c[1], c[0]), v = minus(c[2], c[0]);
            const pavane::BoxPoint w = minus(at, c[0]), n = cross(u, v);
            // at - t sight = c0 + a u + b v
            const double volume = dot(n, sight);
            if (std::fabs(volume) < 1e-15)
                continue;
            const double t = dot(n, w) / volume;
            const double a = dot(cross(w, v), sight) / volume;
            const double b = dot(cross(u, w), sight) / volume;
            if (t > 1e-6 && a >= 0 && b >= 0 && a + b <= 1)
                return 1;
        }
        return 0;
    }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
               static_cast<std::size_t>(x);
    }
    pavane::BoxPoint ground(pavane::BoxPoint at) const
    {
        at.s = grid_->floor();
        return at;
    }
    void quad(const pavane::BoxPoint& a, const pavane::BoxPoint& b, const pavane::BoxPoint& c,
              const pavane::BoxPoint& d, pavane::SurfacePart part)
    {
        triangle({ground(a), ground(b), ground(d)}, part);
        triangle({ground(a), ground(d), ground(c)}, part);
    }
    void curtain(const pavane::BoxPoint& a, const pavane::BoxPoint& b)
    {
        if (!(a.s == a.s && b.s == b.s))
            return;
        triangle({a, b, ground(b)}, pavane::SurfacePart::skirt);
        triangle({a, ground(b), ground(a)}, pavane::SurfacePart::skirt);
    }
    void triangle(const std::array<pavane::BoxPoint, 3>& corners, pavane::SurfacePart part)
    {
        std::array<pavane::CPointF, 3> at;
        double left = INFINITY, right = -INFINITY, top = INFINITY, bottom = -INFINITY;
        for (std::size_t k = 0; k < 3; ++k) {
            if (!(corners[k].s == corners[k].s))
                return;
            at[k] = view_.project(corners[k]);
            left = std::min(left, at[k].x);
            right = std::max(right, at[k].x);
            top = std::min(top, at[k].y);
            bottom = std::max(bottom, at[k].y);
        }
        triangles_.push_back(corners);
        const double area = cross(at[0], at[1], at[2]);
        if (std::fabs(area) < 1e-12)
            return;
        const auto first = [](double v) { return static_cast<int>(std::max(0.0, v - 0.5)); };
        for (int y = first(top); y < std::min<double>(height_, bottom + 1); ++y)
            for (int x = first(left); x < std::min<double>(width_, right + 1); ++x) {
                const pavane::CPointF p{x + 0.5, y + 0.5};
                const double a = cross(p, at[1], at[2]) / area, b = cross(at[0], p, at[2]) / area;
                const double c = 1 - a - b;
                if (!(a >= 0 && b >= 0 && c >= 0))
                    continue;
                const auto mix = [&](double pavane::BoxPoint::*of) {
                    return corners[0].*of * a + corners[1].*of * b + corners[2].*of * c;
                };
                const pavane::BoxPoint met{mix(&pavane::BoxPoint::p), mix(&pavane::BoxPoint::q),
                                           mix(&pavane::BoxPoint::s)};
                const pavane::BoxPoint sight = view_.sight();
                const double depth = met.p * sight.p + met.q * sight.q + met.s * sight.s;
                if (!(depth < depths_[index(x, y)] - 1e-9))
                    continue;
                depths_[index(x, y)] = depth;
                const auto centre = [](double place, int count) {
                    return std::clamp(static_cast<int>(std::floor(place + 0.5)), 0, count - 1);
                };
                pavane::SurfacePixel& pixel = pixels_[index(x, y)];
                pixel.cell = grid_->cell(centre(grid_->columnOf(met.p), grid_->columns()),
                                         centre(grid_->rowOf(met.q), grid_->rows()));
                pixel.second = static_cast<std::uint8_t>(second_);
                pixel.part = part;
                if (part == pavane::SurfacePart::upper && seenFromBelow(corners))
                    pixel.part = pavane::SurfacePart::under;
            }
    }
    static double cross(const pavane::CPointF& o, const pavane::CPointF& a,
                        const pavane::CPointF& b)
    {
        return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
    }
    static pavane::BoxPoint minus(const pavane::BoxPoint& a, const pavane::BoxPoint& b)
    {
        return {a.p - b.p, a.q - b.q, a.s - b.s};
    }
    static pavane::BoxPoint cross(const pavane::BoxPoint& a, const pavane::BoxPoint& b)
    {
        return {a.q * b.s - a.s * b.q, a.s * b.p - a.p * b.s, a.p * b.q - a.q * b.p};
    }
    static double dot(const pavane::BoxPoint& a, const pavane::BoxPoint& b)
    {
        return a.p * b.p + a.q * b.q + a.s * b.s;
    }
    /// Whether the normal that points up points away from the eye.
    bool seenFromBelow(const std::array<pavane::BoxPoint, 3>& c) const
    {
        const pavane::BoxPoint normal = cross(minus(c[1], c[0]), minus(c[2], c[0]));
        const double along = dot(normal, view_.sight());
        return (normal.s > 0) == (along > 0);
    }

    pavane::BoxView view_;
    int width_, height_;
    std::vector<pavane::SurfacePixel> pixels_;
    std::vector<double> depths_;
    std::vector<std::array<pavane::BoxPoint, 3>> triangles_;
    const pavane::SurfaceGrid* grid_ = nullptr;
    int second_ = 0;
};

#include "platform/core/clip_geometry.h"

#include "platform/gdi_constants.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

CPointF between(CPointF a, CPointF b, double t)
{
    return {a.x * (1 - t) + b.x * t, a.y * (1 - t) + b.y * t};
}

/// Rounding of far coordinates may leave a cut point beside the box.
CPointF putInside(CPointF p, const BoxF& box)
{
    return {std::clamp(p.x, box.left, box.right), std::clamp(p.y, box.top, box.bottom)};
}

/// Part t0 .. t1 of the segment a, b that is inside, by Liang and Barsky's parametric clipping;
/// false for none. Halves keep the differences of extreme coordinates finite.
bool insidePart(CPointF a, CPointF b, const BoxF& box, double& t0, double& t1)
{
    t0 = 0;
    t1 = 1;
    const double dx = b.x / 2 - a.x / 2;
    const double dy = b.y / 2 - a.y / 2;
    const double steps[4] = {-dx, dx, -dy, dy};
    const double rooms[4] = {a.x / 2 - box.left / 2, box.right / 2 - a.x / 2, a.y / 2 - box.top / 2,
                             box.bottom / 2 - a.y / 2};
    for (int i = 0; i < 4; ++i) {
        if (steps[i] == 0) {
            if (rooms[i] < 0)
                return false;
            continue;
        }
        const double t = rooms[i] / steps[i];
        if (steps[i] < 0)
            t0 = std::max(t0, t);
        else
            t1 = std::min(t1, t);
    }
    return t0 <= t1;
}

/// One side of the polygon clipping of Sutherland and Hodgman: keeps what has inside(p) >= 0.
template <class Inside>
void cutSide(std::vector<CPointF>& points, std::vector<CPointF>& scratch, Inside inside)
{
    scratch.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const CPointF& a = points[i];
        const CPointF& b = points[i + 1 < points.size() ? i + 1 : 0];
        const double ia = inside(a);
        const double ib = inside(b);
        if (ia >= 0)
            scratch.push_back(a);
        if ((ia >= 0) != (ib >= 0))
            scratch.push_back(between(a, b, ia / (ia - ib)));
    }
    points.swap(scratch);
}

}  // namespace

std::vector<CurvePiece> clippedCurve(const CPointF* points, std::size_t count, const BoxF& box)
{
    std::vector<CurvePiece> pieces;
    // most curves lie inside, and there are thousands of short ones in noise
    const bool isInside = std::all_of(points, points + count, [&](const CPointF& p) {
        return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
    });
    if (isInside && count > 1)
        return pieces.push_back({{points, points + count}, 0}), pieces;
    double distance = 0;
    bool goesOn = false;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        double t0 = 0;
        double t1 = 0;
        const CPointF a = points[i];
        const CPointF b = points[i + 1];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!insidePart(a, b, box, t0, t1)) {
            goesOn = false;
        } else {
            if (!goesOn || t0 > 0) {
                pieces.push_back(
                    {{t0 > 0 ? putInside(between(a, b, t0), box) : a}, distance + t0 * length});
            }
            pieces.back().points.push_back(t1 < 1 ? putInside(between(a, b, t1), box) : b);
            goesOn = t1 >= 1;
        }
        distance += length;
    }
    return pieces;
}

std::vector<CPointF> clippedPolygon(const CPointF* points, std::size_t count, const BoxF& box)
{
    std::vector<CPointF> kept(points, points + count);
    const auto isInside = [&](const CPointF& p) {
        return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
    };
    if (std::all_of(kept.begin(), kept.end(), isInside))
        return kept;
    std::vector<CPointF> scratch;
    cutSide(kept, scratch, [&](const CPointF& p) { return p.x / 2 - box.left / 2; });
    cutSide(kept, scratch, [&](const CPointF& p) { return box.right / 2 - p.x / 2; });
    cutSide(kept, scratch, [&](const CPointF& p) { return p.y / 2 - box.top / 2; });
    cutSide(kept, scratch, [&](const CPointF& p) { return box.bottom / 2 - p.y / 2; });
    for (CPointF& p : kept)
        p = putInside(p, box);
    return kept;
}

std::vector<CPointF> hatchLines(int hatch, const BoxF& box, double spacing)
{
    std::vector<CPointF> ends;
    const double height = box.bottom - box.top;
    // by number: sums of the spacing would wander from the lattice
    const auto eachPlace = [&](double from, double to, auto&& add) {
        const double start = std::ceil(from / spacing);
        const double count = std::floor(to / spacing) - start;
        for (int i = 0; i <= count; ++i)
            add((start + i) * spacing);
    };
    if (hatch == HS_HORIZONTAL || hatch == HS_CROSS)
        eachPlace(box.top, box.bottom, [&](double y) {
            ends.insert(ends.end(), {{box.left, y}, {box.right, y}});
        });
    if (hatch == HS_VERTICAL || hatch == HS_CROSS)
        eachPlace(box.left, box.right, [&](double x) {
            ends.insert(ends.end(), {{x, box.top}, {x, box.bottom}});
        });
    if (hatch == HS_FDIAGONAL || hatch == HS_DIAGCROSS)
        eachPlace(box.left - box.bottom, box.right - box.top, [&](double d) {
            ends.insert(ends.end(), {{box.top + d, box.top}, {box.top + height + d, box.bottom}});
        });
    if (hatch == HS_BDIAGONAL || hatch == HS_DIAGCROSS)
        eachPlace(box.left + box.top, box.right + box.bottom, [&](double d) {
            ends.insert(ends.end(), {{d - box.top, box.top}, {d - box.bottom, box.bottom}});
        });
    return ends;
}

}  // namespace pavane

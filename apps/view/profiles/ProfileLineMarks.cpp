#include "apps/view/profiles/ProfileLineMarks.h"

#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// A hue that neither areas nor components have.
constexpr OutlineStyle lineStyle{RGB(120, 255, 160), RGB(0, 0, 0), 1, 3};
constexpr OutlineStyle stripStyle{RGB(120, 255, 160), RGB(0, 0, 0), 1, 1, PS_DOT};
/// Half the side of a handle, and pixels about handles and line in which they are caught.
constexpr int handleSize = 4;
constexpr double reachOfHandle = 8, reachOfLine = 5;

double distanceTo(CPointF p, CPointF a, CPointF b)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along =
        length > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

std::vector<CPointF> boxAbout(CPointF c, double half)
{
    return {{c.x - half, c.y - half},
            {c.x + half, c.y - half},
            {c.x + half, c.y + half},
            {c.x - half, c.y + half},
            {c.x - half, c.y - half}};
}

}  // namespace

CPointF ProfileLineMarks::pixelOf(const ABAxis& axis, const MapPlace& cell) const
{
    return axis.RPtoGPF(frame_->xFirst + cell.x * frame_->xStep,
                        frame_->yFirst + cell.y * frame_->yStep);
}

MapPlace ProfileLineMarks::cellAt(const ABAxis& axis, CPoint point) const
{
    return {(axis.GPXtoRPX(point.x) - frame_->xFirst) / frame_->xStep,
            (axis.GPYtoRPY(point.y) - frame_->yFirst) / frame_->yStep};
}

void ProfileLineMarks::drawOver(CDC& dc, const ABAxis& axis, const CRect*)
{
    if (!isShown())
        return;
    const double half = unitsOf(dc, handleSize);
    OutlineCurves curves(1), strip;
    const std::vector<MapPlace>& corners = line_.corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        curves[0].push_back(pixelOf(axis, corners[i]));
        if (i == 0 || !(line_.width > 1))
            continue;
        const MapPlace &a = corners[i - 1], &b = corners[i];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0))
            continue;
        const double x = -(b.y - a.y) / length * line_.width / 2;
        const double y = (b.x - a.x) / length * line_.width / 2;
        for (const double side : {-1.0, 1.0})
            strip.push_back({pixelOf(axis, {a.x + side * x, a.y + side * y}),
                             pixelOf(axis, {b.x + side * x, b.y + side * y})});
    }
    const std::vector<CPointF> ends = curves[0];
    for (const CPointF& end : ends)
        curves.push_back(boxAbout(end, half));
    if (isPointed_) {
        const CPointF at = pixelOf(axis, pointed_);
        curves.push_back({{at.x - 2 * half, at.y}, {at.x + 2 * half, at.y}});
        curves.push_back({{at.x, at.y - 2 * half}, {at.x, at.y + 2 * half}});
    }
    strokeOutlines(dc, axis, strip, stripStyle);
    strokeOutlines(dc, axis, curves, lineStyle);
}

int ProfileLineMarks::beginDrag(const ABAxis& axis, CPoint point)
{
    if (!isShown())
        return 0;
    const CPointF p{static_cast<double>(point.x), static_cast<double>(point.y)};
    const std::vector<MapPlace>& corners = line_.corners;
    handle_ = -1;
    int isCaught = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CPointF at = pixelOf(axis, corners[i]);
        if (std::hypot(p.x - at.x, p.y - at.y) <= reachOfHandle) {
            handle_ = static_cast<int>(i);
            isCaught = 1;
        }
        isCaught =
            isCaught || (i && distanceTo(p, pixelOf(axis, corners[i - 1]), at) <= reachOfLine);
    }
    before_ = line_;
    from_ = cellAt(axis, point);
    return isCaught;
}

void ProfileLineMarks::dragTo(const ABAxis& axis, CPoint point)
{
    const MapPlace to = cellAt(axis, point);
    for (std::size_t i = 0; i < line_.corners.size(); ++i)
        if (handle_ < 0 || static_cast<std::size_t>(handle_) == i)
            line_.corners[i] = {before_.corners[i].x + to.x - from_.x,
                                before_.corners[i].y + to.y - from_.y};
    if (moved)
        moved();
}

void ProfileLineMarks::endDrag(int keep)
{
    if (keep)
        return;
    line_ = before_;
    if (moved)
        moved();
}

}  // namespace pavane

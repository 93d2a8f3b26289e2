#include "apps/view/profiles/ProfileLineMarks.h"

#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"

#include <algorithm>
#include <chrono>
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
/// Cells of an arrow key with Shift, and the seconds between keys that are one step.
constexpr double fastStep = 10, samePress = 0.5;

double secondsNow()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

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

void ProfileLineMarks::drawOver(CDC& dc, const ABAxis& axis, const CRect* update)
{
    if (!isShown())
        return;
    const double half = unitsOf(dc, handleSize);
    OutlineCurves curves(1), strip;
    const std::vector<MapPlace>& corners = line().corners;
    const double width = line().width;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        curves[0].push_back(pixelOf(axis, corners[i]));
        if (i == 0 || !(width > 1))
            continue;
        const MapPlace &a = corners[i - 1], &b = corners[i];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0))
            continue;
        const double x = -(b.y - a.y) / length * width / 2;
        const double y = (b.x - a.x) / length * width / 2;
        for (const double side : {-1.0, 1.0})
            strip.push_back({pixelOf(axis, {a.x + side * x, a.y + side * y}),
                             pixelOf(axis, {b.x + side * x, b.y + side * y})});
    }
    const std::vector<CPointF> ends = curves[0];
    for (std::size_t i = 0; i < ends.size(); ++i) {
        curves.push_back(boxAbout(ends[i], half));
        // in a window alone: a picture has no focus
        if (update && (edits_.isAllFocused() || edits_.focus() == static_cast<int>(i)))
            curves.push_back(boxAbout(ends[i], 2 * half));
    }
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
    const std::vector<MapPlace>& corners = line().corners;
    int handle = static_cast<int>(corners.size());
    int isCaught = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CPointF at = pixelOf(axis, corners[i]);
        if (std::hypot(p.x - at.x, p.y - at.y) <= reachOfHandle) {
            handle = static_cast<int>(i);
            isCaught = 1;
        }
        isCaught =
            isCaught || (i && distanceTo(p, pixelOf(axis, corners[i - 1]), at) <= reachOfLine);
    }
    edits_.setFocus(isCaught ? handle : -1);
    before_ = line();
    from_ = cellAt(axis, point);
    return isCaught;
}

void ProfileLineMarks::dragTo(const ABAxis& axis, CPoint point)
{
    const MapPlace to = cellAt(axis, point);
    ProfileLine next = before_;
    for (std::size_t i = 0; i < next.corners.size(); ++i)
        if (edits_.isAllFocused() || edits_.focus() == static_cast<int>(i)) {
            next.corners[i].x += to.x - from_.x;
            next.corners[i].y += to.y - from_.y;
        }
    edits_.dragTo(next);
    if (moved)
        moved();
}

void ProfileLineMarks::endDrag(int keep)
{
    int isMoved = 0;
    for (std::size_t i = 0; i < before_.corners.size(); ++i)
        isMoved |= line().corners[i].x != before_.corners[i].x ||
                   line().corners[i].y != before_.corners[i].y;
    if (isMoved)
        edits_.endDrag(before_, keep);
    if (moved)
        moved();
}

int ProfileLineMarks::takeKey(const ABAxis& axis, int key, bool shift, bool control)
{
    if (!hasFocus())
        return 0;
    const int x = key == VK_LEFT ? -1 : key == VK_RIGHT ? 1 : 0;
    const int y = key == VK_UP ? -1 : key == VK_DOWN ? 1 : 0;
    if (key == VK_TAB)
        edits_.nextFocus(shift ? -1 : 1);
    else if (key == 'Y' && control)  // as the map has it
        (void)edits_.redo();
    else if (key == VK_ESCAPE || key == VK_RETURN)
        edits_.setFocus(-1);
    else if (x || y) {
        // a cell, ten or a pixel of the screen; cells may be counted down the screen or up
        const CPointF origin = pixelOf(axis, {0, 0}), next = pixelOf(axis, {1, 1});
        const double across = next.x - origin.x, down = next.y - origin.y;
        if (!(across != 0) || !(down != 0))
            return 1;
        const double step = shift ? fastStep : 1;
        const double now = secondsNow();
        (void)edits_.move(control ? x / across : std::copysign(x * step, x * across),
                          control ? y / down : std::copysign(y * step, y * down),
                          lastKey_ >= 0 && now - lastKey_ < samePress);
        lastKey_ = now;
    } else
        return 0;
    if (moved)
        moved();
    return 1;
}

}  // namespace pavane

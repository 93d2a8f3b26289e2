#pragma once

#include "pavane/trackers/shapes/rect_handles.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// One drag of an upright rectangle, in pixels, from the press on: a value that turns places of the
/// pointer into rectangles, each from the start, so that the way there does not matter.
class PAVANE_API RectDrag
{
public:
    /// `hit`: handle code 0 to 7, or 8 to move the whole. Edges end up inside `valid`, its right
    /// and bottom included.
    RectDrag(const CRect& start, int hit, CPoint press, const CRect& valid)
        : start_(start), hit_(hit), press_(press), valid_(valid)
    {
    }

    /// The rectangle with the pointer at `pointer`; the start itself at the press.
    CRect at(CPoint pointer) const;
    const CRect& start() const { return start_; }
    int hit() const { return hit_; }
    CPoint press() const { return press_; }

private:
    CRect start_;
    int hit_;
    CPoint press_;
    CRect valid_;
};

/// Keeps a rectangle whose handle `hit` is dragged at the least size: the dragged edges give way,
/// to the other side of the opposite edge where `sides` allows it and the near one has no room in
/// `valid`.
PAVANE_API void keepLeastSize(CRect& rect, int hit, CSize least, const CRect& valid,
                              DragSides sides);

/// `point` moved to the nearest pixel of `valid`, right and bottom included.
PAVANE_API CPoint clampedTo(const CRect& valid, CPoint point);

/// How far something from `low` to `high` may move by `wanted` inside `validLow` to `validHigh`:
/// shortened so that neither end gets farther out.
constexpr long long shortenedStep(long long wanted, int low, int high, int validLow, int validHigh)
{
    const long long least = validLow - static_cast<long long>(low);
    const long long greatest = validHigh - static_cast<long long>(high);
    if (wanted > 0)
        return wanted < greatest ? wanted : greatest > 0 ? greatest : 0;
    return wanted > least ? wanted : least < 0 ? least : 0;
}

/// The same, but brought inside where it is outside; the low end wins when there is no room.
constexpr long long pushedStep(long long wanted, int low, int high, int validLow, int validHigh)
{
    if (high + wanted > validHigh)
        wanted = validHigh - static_cast<long long>(high);
    if (low + wanted < validLow)
        wanted = validLow - static_cast<long long>(low);
    return wanted;
}

}  // namespace pavane

#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

// Handles of an upright rectangle, which may be inside out. Codes: 0 top left, 1 top right,
// 2 bottom right, 3 bottom left, 4 top, 5 right, 6 bottom, 7 left, 8 middle; -1 nothing.

inline constexpr int hitNothing = -1;
inline constexpr int hitMiddle = 8;
/// The middle's cursor beside the rectangle itself.
inline constexpr int hitMiddleOutside = 9;

enum class EdgeX : signed char { none, left, right };
enum class EdgeY : signed char { none, top, bottom };

/// Which edges a handle drags; both `none` for codes that are no handle.
struct HandleEdges {
    EdgeX x = EdgeX::none;
    EdgeY y = EdgeY::none;
};
PAVANE_API HandleEdges handleEdges(int code);

/// On which side of the opposite edge a dragged edge has to stay: 1 above it (greater coordinate),
/// -1 below it, 0 either.
struct DragSides {
    int x = 0;
    int y = 0;
};
/// The sides that keep `rect` as it is turned.
PAVANE_API DragSides sidesOf(const CRect& rect, HandleEdges edges);

/// The rectangle with left before right and top before bottom.
constexpr CRect normalized(CRect rect)
{
    rect.NormalizeRect();
    return rect;
}
/// |right - left| and |bottom - top|, at most 2^31 - 1.
PAVANE_API CSize extentOf(const CRect& rect);
/// Each edge moved outwards (an edge beyond the range of int stays at its end).
PAVANE_API CRect grown(const CRect& rect, int by);
/// The middle of two coordinates as (a + b) / 2, cut towards zero, for any ints.
constexpr int middleOf(int a, int b)
{
    return static_cast<int>((static_cast<long long>(a) + b) / 2);
}

/// Edge of the handles of a rectangle: `size`, or half its shorter side where two do not fit.
PAVANE_API int handleSizeFor(const CRect& rect, int size);
/// Bit c is set when handle c is shown.
PAVANE_API int handleMask(const CRect& rect, int size);
/// The code with the same place on the screen in the rectangle that is not inside out.
PAVANE_API int normalizedHit(const CRect& rect, int code);
/// The square of handle `code` (0 to 7); `handle` is its edge, `size` what it is at most.
PAVANE_API CRect handleRect(const CRect& rect, int code, int handle, int size);
/// The first shown handle that has `point` in it, else the middle inside `trueRect`, else nothing.
PAVANE_API int hitRectHandles(const CRect& rect, CPoint point, int handle, int size,
                              const CRect& trueRect);

}  // namespace pavane

#pragma once

#include "platform/cursors.h"
#include "platform/geometry.h"

namespace pavane
{

// Edges of a selection rectangle; the values are bits of the window's flags word.
inline constexpr int edgeLeft = 0x1000, edgeTop = 0x2000, edgeRight = 0x4000, edgeBottom = 0x8000,
                     edgeAll = 0xF000;

/// Edges of `selection` under the pointer: within 2 pixels across and 3 down, the left before the
/// right and the top before the bottom. Only those with lines count: `upright` for left and right,
/// `level` for top and bottom. All in client pixels; the lines run across `bounds`.
PAVANE_API int edgesUnder(CPoint pointer, const CRect& selection, const CRect& bounds, int upright,
                          int level);
/// The sizing cursor for those edges, 0 for none.
PAVANE_API HCURSOR edgeCursor(int edges);

/// `candidate` with its edges inside `bounds` and at least a pixel from the opposite edges of
/// `selection`.
PAVANE_API CRect resizedInside(const CRect& candidate, const CRect& selection, const CRect& bounds);
/// `candidate` pushed inside `bounds`, as large as `selection`.
PAVANE_API CRect movedInside(const CRect& candidate, const CRect& selection, const CRect& bounds);
/// `candidate` clamped into `bounds`; a rectangle that was dragged up or left stays inverted.
PAVANE_API CRect bandInside(const CRect& candidate, const CRect& bounds);

/// What has to be drawn again after the picture in `rect` was shifted by dx, dy: one strip, or with
/// both distances the corner where the two strips meet.
PAVANE_API CRect uncoveredStrip(const CRect& rect, int dx, int dy);

}  // namespace pavane

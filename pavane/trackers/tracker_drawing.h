#pragma once

#include "pavane/trackers/shapes/turned_rect.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

class CDC;

// How selection shapes look: every line is dark and light, so that it shows on any background.
// Active shapes have a light line on a dark one and hollow handles, the others a line of dark and
// light dashes. Points are device pixels of a window (or of the picture that it is drawn into).

/// A line through the n points, closed or open.
PAVANE_API void drawTrackerOutline(CDC& dc, const CPoint* points, int n, bool closed, bool active);
/// An upright rectangle with the handles of `mask`.
PAVANE_API void drawRectShape(CDC& dc, const CRect& rect, int handle, int size, bool active);
/// An active turned shape: its outline of n points and the turned handles from `firstHandle` on.
PAVANE_API void drawTurnedShape(CDC& dc, const CPoint* points, int n,
                                const CPoint (&handles)[turnedHandleCount], int firstHandle,
                                int size);
/// A polygon; with vertices as handles while it is active or still open, the last one of an open
/// polygon filled.
PAVANE_API void drawAreaShape(CDC& dc, const CPoint* points, int n, int size, bool active,
                              bool ready);
/// Non-zero when something inside `rect` would show.
PAVANE_API int showsIn(const CDC& dc, const CRect& rect);

}  // namespace pavane

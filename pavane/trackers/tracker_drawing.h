#pragma once

#include "pavane/containers/ARect.h"
#include "pavane/trackers/OutlineLook.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

class CDC;

// How selection shapes look: see area_look.h; active ones have hollow handles as well. Points are
// device units, where a whole number is the middle of a unit: fractions are drawn as fine as the
// pixels are.

/// A line through the n points, closed or open.
PAVANE_API void drawTrackerOutline(CDC& dc, const CPointF* points, int n, bool closed,
                                   const OutlineLook& look = {});
PAVANE_API void drawTrackerOutline(CDC& dc, const CPoint* points, int n, bool closed,
                                   const OutlineLook& look = {});
/// A rectangle with the handles that its whole units have.
PAVANE_API void drawRectShape(CDC& dc, const ARect<double>& rect, const CRect& units, int handle,
                              int size, bool active, const OutlineLook& look = {});
/// An active turned shape: its outline of n points and the turned handles from `firstHandle` on.
PAVANE_API void drawTurnedShape(CDC& dc, const CPointF* points, int n,
                                const CPointF (&handles)[turnedHandleCount], int firstHandle,
                                int size, const OutlineLook& look = {});
/// A polygon; with vertices as handles while it is active or still open, the last one of an open
/// polygon filled.
PAVANE_API void drawAreaShape(CDC& dc, const CPointF* points, int n, int size, bool active,
                              bool ready, const OutlineLook& look = {});
/// Non-zero when something inside `rect` would show.
PAVANE_API int showsIn(const CDC& dc, const CRect& rect);
/// The same points, the same rectangle as fractions.
PAVANE_API std::vector<CPointF> fractionsOf(const CPoint* points, int n);
PAVANE_API ARect<double> fractionsOf(const CRect& rect);

}  // namespace pavane

#pragma once

#include "pavane/containers/ARect.h"
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
PAVANE_API void drawTrackerOutline(CDC& dc, const CPointF* points, int n, bool closed);
PAVANE_API void drawTrackerOutline(CDC& dc, const CPoint* points, int n, bool closed);
/// A rectangle with the handles that its whole units have.
PAVANE_API void drawRectShape(CDC& dc, const ARect<double>& rect, const CRect& units, int handle,
                              int size, bool active);
/// An active turned shape: its outline of n points and the turned handles from `firstHandle` on.
PAVANE_API void drawTurnedShape(CDC& dc, const CPointF* points, int n,
                                const CPointF (&handles)[turnedHandleCount], int firstHandle,
                                int size);
/// A polygon; with vertices as handles while it is active or still open, the last one of an open
/// polygon filled.
PAVANE_API void drawAreaShape(CDC& dc, const CPointF* points, int n, int size, bool active,
                              bool ready);
/// Non-zero when something inside `rect` would show.
PAVANE_API int showsIn(const CDC& dc, const CRect& rect);
/// The same points, the same rectangle as fractions.
PAVANE_API std::vector<CPointF> fractionsOf(const CPoint* points, int n);
PAVANE_API ARect<double> fractionsOf(const CRect& rect);

/// How a collection wants its outlines while this lives. Not nested.
class PAVANE_API OutlineMood
{
public:
    /// `crowded`: so many that lines of whole units without soft edges have to do.
    explicit OutlineMood(bool crowded);
    OutlineMood(const OutlineMood&) = delete;
    OutlineMood& operator=(const OutlineMood&) = delete;
    ~OutlineMood();
    /// Dashes for what is not selected while something else is.
    void setDashed(bool on);
};

/// Outlines look as those of never-clean areas while this lives, where `on`. Not nested.
class PAVANE_API NeverCleanLook
{
public:
    explicit NeverCleanLook(int on);
    NeverCleanLook(const NeverCleanLook&) = delete;
    NeverCleanLook& operator=(const NeverCleanLook&) = delete;
    ~NeverCleanLook();
};

}  // namespace pavane

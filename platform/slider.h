#pragma once

#include "platform/CWnd.h"

namespace pavane
{

inline constexpr unsigned TBS_VERT = 0x0002;  ///< upright, the greatest position at the top
// Codes of WM_COMMAND: the user moved the handle; let go of it after a drag.
inline constexpr unsigned SLN_MOVED = 0x0A00, SLN_RELEASED = 0x0A01;

/// A handle on a line, for a whole number of a range: dragged, moved by a press beside it or by the
/// arrows (one), Page Up and Page Down (a page), Home and End, and by the wheel while it has the
/// focus. SLN_MOVED comes with every new position that the user chooses, in a drag too.
class PAVANE_API CSliderCtrl : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Both included; a `max` below `min` counts as `min`. 0 to 100 at first.
    void SetRange(int min, int max);
    void GetRange(int& min, int& max) const;
    /// Held within the range; sends no notice. The position before.
    int SetPos(int position);
    int GetPos() const;
    /// Steps of Page Up and Page Down, 10 at first; at least 1.
    void SetPageSize(int steps);
    /// Non-zero while the user holds the handle.
    int IsDragged() const;
};

}  // namespace pavane

#pragma once

#include "platform/controls.h"

namespace pavane
{

/// Two arrows beside an edit, its buddy, which shows their position; each has an identifier of its
/// own. The arrows, the keys Up and Down in the edit and the wheel over it step the number there,
/// faster when held; the edit says EN_CHANGE, the arrows ID_SPIN_CHANGED. What is typed stays as it
/// was typed, also outside the range. In a template (ControlKind::upDown) the edit before them is
/// their buddy.
class PAVANE_API CUpDownCtrl : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// The edit that shows the number, from the next SetPos on; not owned, null takes it away.
    int SetBuddy(CEdit* edit);
    CWnd* GetBuddy() const;
    /// Both included; a `max` below `min` counts as `min`. 0 to 100 at first.
    void SetRange(int min, int max);
    void GetRange(int& min, int& max) const;
    /// Held within the range, and written into the edit. The position before.
    int SetPos(int position);
    /// The number in the edit, held within the range; the last position where that is none. The
    /// text is left alone. `isInRange`: whether the text is a whole number of the range.
    int GetPos(int* isInRange = nullptr) const;
};

}  // namespace pavane

#pragma once

#include "platform/controls.h"

namespace pavane
{

inline constexpr unsigned ALN_MOVED = 0x0A20;  ///< code of WM_COMMAND: the user moved a line

/// A list of several lines: chosen lines, check marks and pictures as CListBox has them, and an
/// order that the user may change with Alt+Up and Alt+Down. Letters that are typed go to the next
/// line that begins with them.
class PAVANE_API AListBox : public CListBox
{
public:
    /// `name` is what screen readers call it.
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
               const CString& name = CString());
    /// Whether the user may put lines in another order.
    void SetReorder(int on) { reorders_ = on; }
    /// Moves all chosen lines by one (`step` 1 down, -1 up) as one block each; the order among them
    /// stays, and at the end of the list they stay where they are. Sends no notice. 0 when nothing
    /// moved.
    int MoveSelection(int step);
    /// Texts of the lines from the top.
    std::vector<CString> GetTexts() const;
    /// Lines with a check mark, from the top.
    std::vector<int> GetChecked() const;

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

private:
    int reorders_ = 0;
};

/// Where chosen lines of `count` go by one step: pairs of places (from, to) in the order in which
/// they are moved. `chosen` rises.
PAVANE_API std::vector<std::pair<int, int>> stepsOfMove(const std::vector<int>& chosen, int count,
                                                        int step);

}  // namespace pavane

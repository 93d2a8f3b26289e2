#pragma once

#include "platform/CWnd.h"

namespace pavane
{

inline constexpr unsigned SPN_MOVED = 0x0900;  ///< code of WM_COMMAND: the user moved the bar

/// Two windows with a bar between them that the pointer drags and, with WS_TABSTOP, the arrow keys
/// move (Home and End to its ends). Escape during a drag puts it back. Each pane keeps its share of
/// the room when the window changes its size.
class PAVANE_API CSplitterWnd : public CWnd
{
public:
    enum class Split {
        columns,  ///< side by side
        rows      ///< one above the other
    };
    int Create(Split split, unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// The windows of the panes: children of this one, or null; not owned.
    void SetPanes(CWnd* first, CWnd* second);
    /// Null for none, or when it is gone.
    CWnd* GetPane(int index) const;
    /// Shows one pane alone (0 or 1), or both with the bar (-1).
    void ShowOnly(int pane);
    /// Pixels of the first pane, as they are now.
    int GetSplit() const;
    /// Moves the bar; both panes keep their least size where there is room for it.
    void SetSplit(int pixels);
    /// The first pane's share of the room, 0 to 1; for the profile.
    double GetShare() const { return share_; }
    void SetShare(double share);
    void SetLeastSize(int pixels);
    /// Empty while one pane is shown alone.
    CRect GetBarRect() const;

protected:
    void OnPaint() override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;

private:
    int room() const;
    int along(CPoint point) const { return split_ == Split::columns ? point.x : point.y; }
    CRect part(int from, int to) const;
    void placePanes();
    void tellOfMove();

    Split split_ = Split::columns;
    HWND panes_[2] = {};
    double share_ = 0.5;
    int least_ = 32;
    int only_ = -1;
};

}  // namespace pavane

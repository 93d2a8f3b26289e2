#pragma once

#include "pavane/windows/controls/tip_timing.h"
#include "platform/CWnd.h"
#include "platform/tip_window.h"

#include <functional>
#include <vector>

namespace pavane
{

/// Tips of several lines for windows and for parts of them. A tip comes when the pointer rests on
/// its tool, or when a whole window that has one gets the focus; it stays while the pointer is on
/// the tool or on the tip itself, goes with Escape or a press, and never lies over its tool. Make
/// one for each frame, for as long as the frame; no window has to do anything for it.
class PAVANE_API AToolTip : public CWnd
{
public:
    /// What a callback says of a point (client coordinates): the text, "" for none, and what it
    /// explains, the whole window at first.
    using Ask = std::function<CString(CPoint point, CRect& tool)>;

    AToolTip();
    ~AToolTip() override;
    /// `frame` is the window that the tools are in, or any above them. Non-zero on success.
    int Create(CWnd* frame);
    /// A tip for a whole window, which comes by focus too.
    int AddTool(CWnd* window, const CString& text);
    /// A tip for a rectangle of its client area.
    int AddTool(CWnd* window, const CString& text, const CRect& rect);
    /// Tips that a callback knows.
    int AddTool(CWnd* window, Ask ask);
    /// Takes all tools of a window away.
    void RemoveTools(const CWnd* window);
    /// How long the pointer rests before a tip comes; 500 at first.
    void SetDelay(int milliseconds) { timing_.SetDelay(milliseconds); }
    /// The tip that is shown; hidden ones have the text "".
    const CTipWnd& GetTip() const { return tip_; }
    void Hide();

protected:
    void OnTimer(unsigned id) override;

private:
    struct Tool {
        HWND window = 0;
        CString text;
        CRect rect;
        int isWhole = 0;
        Ask ask;
    };
    /// A tool as it is now: its text and its rectangle on the screen.
    struct Found {
        int index = -1;
        CString text;
        CRect place;
    };
    static int seeMessage(const MSG& message);
    void offer(const MSG& message);
    Found pointedTool() const;
    Found focusedTool() const;
    void look();

    std::vector<Tool> tools_;
    TipTiming timing_;
    CTipWnd tip_;
};

}  // namespace pavane

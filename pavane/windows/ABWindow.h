#pragma once

#include "pavane/containers/LifeWatch.h"
#include "pavane/resources/resource_ids.h"
#include "platform/CWnd.h"

namespace pavane
{

class CDC;

/// Bits of a window's flags word. Heirs keep bits of their own in the same word.
enum WindowFlag : int {
    windowBuffered = 0x4,       ///< the content is painted through an off-screen picture
    windowNoWaitCursor = 0x8,   ///< no wait cursor while painting
    windowReplaced = 0x10,      ///< took the place of a control of a dialog
    windowHoldsCapture = 0x800  ///< from a press of the left button to its release
};

/// The base of every drawing window: a content pass and an overlay pass, a context menu, copies of
/// its picture, and a place in a dialog.
class PAVANE_API ABWindow : public CWnd
{
public:
    ABWindow() = default;

    // In this order; new ones go to the end.
    /// Pages that the window prints on.
    virtual int GetPages(CDC& dc);
    /// Caption under the printed picture.
    virtual CString GetSubscript();
    /// Identifier of the context menu, 0 for none.
    virtual int GetMenuID();
    /// Shows the first popup of menu `menuId` at a screen point; commands come to this window.
    virtual void amContextMenu(CPoint screen, unsigned menuId);
    /// Checks, enables or removes items of the context menu before it shows.
    virtual void amMenuParse(CMenu* popup);
    /// Heirs have numbers of their own.
    virtual int GetAWindowType();
    /// Draws the content. `update` is the part that has to be drawn; client coordinates.
    virtual void DrawWindow(CDC& dc, CRect& client, CRect& update);
    /// Draws the content into `rect` of a printed page.
    virtual void PrintWindow(CDC& dc, CRect& rect, int page);
    /// Draws what lies over the content on the screen only: focus marks, shapes being drawn.
    virtual void ServiceDraw(CDC& dc, CRect& client, CRect& update);
    /// Name of the window class; heirs with a name of their own get a class of their own.
    virtual const char* GetWndClassName();
    /// Fills what the window class needs; non-zero on success.
    virtual int GetClassParms(WNDCLASSA& wc);
    /// Called once, when the window has been made.
    virtual void SetUpWindow();
    /// Per cent of its own size at which the window prints, 100 unless it has to be made smaller to
    /// fit the page. Asked as GetPages is.
    virtual int GetPrintPercent(CDC& dc);

    /// For whoever keeps a pointer to the window, open or not: a LifeWatch of this tells when the
    /// object is gone.
    const LifeToken& life() const { return lifeOfWindow_; }
    /// 1 when every bit of `mask` is set.
    int IsFlagSet(int mask) const;
    void SetFlag(int mask, int on);

    /// Shifts the picture inside `rect` of `window` and draws the uncovered strip again, without
    /// overlays.
    /// Deliberate: with both distances the strip is only the corner where the two strips meet;
    /// callers scroll along one direction at a time.
    void ScrollWnd(ABWindow* window, int dx, int dy, CRect& rect);

    /// Makes this window in the place of control `controlId` of `dialog`, with its rectangle,
    /// identifier, extended style and place in the tab order. `text` is not used. Non-zero on
    /// success; 0 also when `dialog` is no dialog or has no such control.
    int UpDateControl(const CString& text, CWnd* dialog, unsigned controlId, unsigned style);

protected:
    int PreCreateWindow(CREATESTRUCT& cs) override;
    int OnCreate(CREATESTRUCT& cs) override;
    void OnPaint() override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnCaptureChanged(CWnd* next) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    unsigned OnGetDlgCode() override;
    void OnContextMenu(CWnd* window, CPoint screen) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

    /// Commands 10104 and 10105. The user is told when the clipboard or the file refuses.
    virtual void OnCopyToClipboard();
    virtual void OnCopyToBMP();
    /// Asks for the name of a PNG file; 0 when the user cancels.
    int AskPictureName(CString& name);

private:
    void paintBuffered(CDC& screen, CRect& client, CRect& update);

    int flags_ = 0;
    LifeToken lifeOfWindow_;
};

}  // namespace pavane

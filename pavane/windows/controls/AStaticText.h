#pragma once

#include "pavane/windows/ABWindow.h"
#include "pavane/windows/controls/InfoLines.h"
#include "platform/accessibility.h"

namespace pavane
{

/// One line of text that is cut with "..." where it has no room, whole in its tip, and that can be
/// selected and copied: by the pointer, a double click for all, and with WS_TABSTOP by the arrow
/// keys with Shift, Ctrl+A and Ctrl+C.
class PAVANE_API AStaticText : public ABWindow, public AccessSource
{
public:
    int Create(const CString& text, unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    void SetText(const CString& text);
    CString GetText() const { return lines_.line(0); }
    /// A value with its unit, with a decimal prefix where the unit takes one.
    void SetValue(double value, const CString& unit, int digits = 4);
    /// What the value is, for screen readers ("Beam"); else the text itself is the name.
    void SetName(const CString& name) { name_ = name; }
    /// Whether it stands on the ground of dialogs; else on that of windows, unless its parent is a
    /// dialog.
    void SetDialogGround(int on) { onDialog_ = on; }
    /// Non-zero while the text does not fit.
    int IsCut() const;
    CString GetSelectedText() const { return lines_.selectedText(); }

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    int GetClassParms(WNDCLASSA& wc) override;
    CString OnToolTip(CPoint point) override;
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    int AccessSetFocus(AccessId id) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    unsigned OnGetDlgCode() override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    void OnContextMenu(CWnd* window, CPoint screen) override;

private:
    /// What of the text is seen.
    struct Piece {
        int left;  ///< where the text would begin
        int from, to;
    };
    Piece seenPiece(const CDC& dc) const;
    int atPoint(CPoint point);
    void select(int at, int keeps);
    void copy(int all);

    InfoLines lines_;
    CString name_;
    int onDialog_ = 0;
};

}  // namespace pavane

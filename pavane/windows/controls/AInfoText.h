#pragma once

#include "pavane/windows/ABWindow.h"
#include "pavane/windows/controls/InfoLines.h"
#include "platform/accessibility.h"
#include "platform/controls.h"

namespace pavane
{

/// Lines of text that scroll and are only read: a log, a header. What is added at the end is shown
/// while the end is in view. The pointer and the arrow keys with Shift select, Ctrl+C copies,
/// Ctrl+F finds, F3 and Shift+F3 find again.
class PAVANE_API AInfoText : public ABWindow, public AccessSource
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
               const CString& name = CString());
    /// What screen readers call it.
    void SetName(const CString& name) { name_ = name; }
    void SetText(const CString& text);
    /// Adds lines at the end.
    void Append(const CString& text);
    void Clear();
    /// How many lines are kept; the oldest go. 100000 at first.
    void SetMostLines(int lines);
    /// Two columns: what stands behind the first tab of each line begins so many units from the
    /// left. 0, as at first, knows no tabs.
    void SetColumn(int units);
    const InfoLines& GetLines() const { return lines_; }
    /// Puts the selection, or without one all text, on the clipboard; 0 when it refuses.
    int Copy() const;
    /// Selects the next piece that reads so (`step` 1), the one before (-1), or the one from the
    /// selection on (0), round the ends, and brings it into view. 0 when there is none.
    int Find(const CString& piece, int step = 1);
    /// Shows the field that finds while it is typed; Enter goes on, Escape closes it.
    void AskFind();

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void ServiceDraw(CDC& dc, CRect& client, CRect& update) override;
    const char* GetWndClassName() override;
    int GetClassParms(WNDCLASSA& wc) override;
    AccessSource* GetAccess() override { return this; }
    int GetAccessPart(AccessId id, AccessPart& part) const override;
    int AccessSetFocus(AccessId id) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnVScroll(unsigned code, unsigned position) override;
    void OnHScroll(unsigned code, unsigned position) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    unsigned OnGetDlgCode() override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    void OnContextMenu(CWnd* window, CPoint screen) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    class FindEdit : public CEdit
    {
    protected:
        unsigned OnGetDlgCode() override;
        void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    };
    int lineHeight() const;
    int linesInView() const;
    int widestInView() const;
    void scrollTo(int bar, int position);
    void layOut();
    void place(TextPlace place, int keeps);
    void showCaret();
    TextPlace atPoint(CPoint point);
    void placeFind();
    void closeFind();

    InfoLines lines_;
    CString name_;
    int column_ = 0;
    int widest_ = 0;  ///< of the lines that were seen so far
    FindEdit find_;
};

}  // namespace pavane

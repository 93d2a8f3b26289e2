#pragma once

#include "platform/CWnd.h"

namespace pavane
{

// Codes of WM_COMMAND. Buttons, lists and spin controls tell of what the user does only; EN_CHANGE
// comes with every change of the text, SetWindowText's too.
inline constexpr unsigned BN_CLICKED = 0, EN_SETFOCUS = 0x0100, EN_KILLFOCUS = 0x0200,
                          EN_CHANGE = 0x0300, CBN_SELCHANGE = 1, CBN_SETFOCUS = 3,
                          CBN_KILLFOCUS = 4, CBN_EDITCHANGE = 5, CBN_DROPDOWN = 7, CBN_CLOSEUP = 8,
                          LBN_SELCHANGE = 1, LBN_DBLCLK = 2;
inline constexpr unsigned ES_CENTER = 0x0001, ES_RIGHT = 0x0002, ES_READONLY = 0x0800,
                          CBS_DROPDOWN = 0x0002, CBS_DROPDOWNLIST = 0x0003, SS_CENTER = 0x0001,
                          SS_RIGHT = 0x0002;
inline constexpr unsigned SS_ENDELLIPSIS = 0x4000;   ///< one line, cut short with "..."
inline constexpr unsigned ID_SPIN_CHANGED = 0x0300;  ///< code of WM_COMMAND of a spin control

/// Native controls. Create like any child window, with WS_CHILD | WS_VISIBLE; WS_TABSTOP lets the
/// Tab key reach them. Keys reach OnKeyDown of the C++ class first, and an override that does not
/// call its base swallows them. OnToolTip tells what to show while the pointer rests on them.

/// Text that is only shown, as it is; long lines wrap where there is room for two.
class PAVANE_API CStatic : public CWnd
{
public:
    int Create(const CString& text, unsigned style, const CRect& rect, CWnd* parent, unsigned id);
};

/// A push button, check box or radio button by its kind.
class PAVANE_API CButton : public CWnd
{
public:
    enum class Kind { push, check, radio, group };
    int Create(const CString& text, Kind kind, unsigned style, const CRect& rect, CWnd* parent,
               unsigned id);
    int GetCheck() const;
    void SetCheck(int on);
};

/// One line of text, at most 128 characters; framed with WS_BORDER, for a place in another window
/// without. A handler of EN_KILLFOCUS that calls SetFocus keeps the focus here.
class PAVANE_API CEdit : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    void SetSel(int first, int last);
    void SetReadOnly(int on);
};

/// A line with a list below it: to choose from (CBS_DROPDOWNLIST), or with free text as well
/// (CBS_DROPDOWN). It is at most as high as its line, whatever the rectangle; the list finds its
/// own place. The wheel changes the choice only while it has the focus.
class PAVANE_API CComboBox : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Index of the new line, -1 without a window. The first line does not choose itself.
    int AddString(const CString& text);
    /// Count of what is left, -1 when there is no such line.
    int DeleteString(int index);
    void ResetContent();
    int GetCount() const;
    /// -1 when nothing is chosen.
    int GetCurSel() const;
    /// -1 clears the selection. Sends no notice. Index of the choice, -1 for none.
    int SetCurSel(int index);
    CString GetLBText(int index) const;
    void ShowDropDown(int show);
};

/// A list with one chosen line; results as of CComboBox.
class PAVANE_API CListBox : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    int AddString(const CString& text);
    int DeleteString(int index);
    void ResetContent();
    int GetCount() const;
    int GetCurSel() const;
    int SetCurSel(int index);
    CString GetText(int index) const;
};

/// A number with arrows.
class PAVANE_API CSpinButtonCtrl : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    void SetRange(int min, int max);
    void SetPos(int value);
    int GetPos() const;
};

/// Piece of a toolbar: a button with a drawn picture, a line between buttons (id 0), or the place
/// of a control.
struct ToolButton {
    unsigned id = 0;
    CString tip;  ///< also what screen readers read
    /// Rows of text of a 16 x 16 (or 20 x 20) picture, '#' dark, '+' accent, '.' light, blank none;
    /// scaled for finer screens.
    const char* const* rows = nullptr;
    int rowCount = 0;
    int checkable = 0;  ///< a click turns it on or off by itself
    int group = 0;      ///< buttons of one group above 0: one of them is checked
    int dropDown = 0;   ///< also a small arrow, which sends TBN_DROPDOWN
};
inline constexpr unsigned TBN_DROPDOWN = 0x0700;

/// Buttons in a row, in more when they do not fit. Commands go to the owner as WM_COMMAND (code 0,
/// or TBN_DROPDOWN), and so do the notices of controls inside. One of the buttons is reached with
/// the Tab key, the others from there with the arrow keys; SetFocus gives the focus to the button
/// that had it last.
class PAVANE_API CToolBar : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// The window that gets the commands; the parent when it is not set.
    void SetOwner(CWnd* owner);
    int AddButton(const ToolButton& button);
    /// Gives a place to a child of the bar; not owned.
    int AddControl(CWnd* control, int width);
    int EnableButton(unsigned id, int on);
    int CheckButton(unsigned id, int on);
    int IsButtonEnabled(unsigned id) const;
    /// Another tip for a button; 0 when there is none of that id. "" from GetButtonTip then.
    int SetButtonTip(unsigned id, const CString& tip);
    CString GetButtonTip(unsigned id) const;
    int IsButtonChecked(unsigned id) const;
    /// Client rectangle of a button, empty when there is none; for drop-down lists.
    CRect GetButtonRect(unsigned id) const;
    /// Height that the bar needs at that width, 0 for its present one.
    int GetBarHeight(int width = 0) const;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
};
// The same as messages: wParam the identifier, lParam 0 or 1.
inline constexpr unsigned TB_ENABLEBUTTON = WM_USER + 1, TB_CHECKBUTTON = WM_USER + 2;

}  // namespace pavane

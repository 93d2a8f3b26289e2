#pragma once

#include "platform/CWnd.h"

namespace pavane
{

// Codes of WM_COMMAND.
inline constexpr unsigned BN_CLICKED = 0, EN_SETFOCUS = 0x0100, EN_KILLFOCUS = 0x0200,
                          EN_CHANGE = 0x0300, CBN_SELCHANGE = 1, CBN_DROPDOWN = 7,
                          CBN_EDITCHANGE = 5, LBN_SELCHANGE = 1, LBN_DBLCLK = 2;
inline constexpr unsigned ES_READONLY = 0x0800, ES_RIGHT = 0x0002, CBS_DROPDOWN = 0x0002,
                          CBS_DROPDOWNLIST = 0x0003, SS_CENTER = 0x0001, SS_RIGHT = 0x0002;
inline constexpr unsigned ID_SPIN_CHANGED = 0x0300;  ///< code of WM_COMMAND of a spin control

/// Native controls. Create like any child window; keys reach OnKeyDown of the C++ class first, and
/// an override that does not call its base swallows them.
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

/// One line of text, at most 128 characters.
class PAVANE_API CEdit : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    void SetSel(int first, int last);
    void SetReadOnly(int on);
};

class PAVANE_API CComboBox : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    int AddString(const CString& text);
    int DeleteString(int index);
    void ResetContent();
    int GetCount() const;
    /// -1 when nothing is chosen.
    int GetCurSel() const;
    /// -1 clears the selection. Sends no notice.
    int SetCurSel(int index);
    CString GetLBText(int index) const;
};

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

/// Line of a toolbar: a button with a drawn picture, a line between buttons (id 0), or the place of
/// a control.
struct ToolButton {
    unsigned id = 0;
    CString tip;
    /// Rows of text of a 16 x 16 (or 20 x 20) picture, '#' dark, '+' accent, '.' light, blank none;
    /// scaled for finer screens.
    const char* const* rows = nullptr;
    int rowCount = 0;
    int checkable = 0;
    int group = 0;     ///< buttons of one group above 0: one of them is checked
    int dropDown = 0;  ///< also a small arrow, which sends TBN_DROPDOWN
};
inline constexpr unsigned TBN_DROPDOWN = 0x0700;

/// A row of buttons. Commands go to the owner as WM_COMMAND (code 0, or TBN_DROPDOWN).
class PAVANE_API CToolBar : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// The window that gets the commands; the parent when it is not set.
    void SetOwner(CWnd* owner);
    int AddButton(const ToolButton& button);
    int AddControl(CWnd* control, int width);
    int EnableButton(unsigned id, int on);
    int CheckButton(unsigned id, int on);
    int IsButtonEnabled(unsigned id) const;
    int IsButtonChecked(unsigned id) const;
    /// Client rectangle of a button, empty when there is none; for drop-down lists.
    CRect GetButtonRect(unsigned id) const;
    /// Height that the bar wants.
    int GetBarHeight() const;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
};
// The same as messages: wParam the identifier, lParam 0 or 1.
inline constexpr unsigned TB_ENABLEBUTTON = WM_USER + 1, TB_CHECKBUTTON = WM_USER + 2;

}  // namespace pavane

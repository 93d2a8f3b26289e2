#pragma once

#include "platform/CWnd.h"

#include <vector>

namespace pavane
{

class CImageList;
class CPicture;

// Codes of WM_COMMAND. Buttons, lists and spin controls tell of what the user does only; EN_CHANGE
// comes with every change of the text, SetWindowText's too.
inline constexpr unsigned BN_CLICKED = 0, EN_SETFOCUS = 0x0100, EN_KILLFOCUS = 0x0200,
                          EN_CHANGE = 0x0300, CBN_SELCHANGE = 1, CBN_SETFOCUS = 3,
                          CBN_KILLFOCUS = 4, CBN_EDITCHANGE = 5, CBN_DROPDOWN = 7, CBN_CLOSEUP = 8,
                          CBN_SELENDCANCEL = 10, LBN_SELCHANGE = 1, LBN_DBLCLK = 2;
inline constexpr unsigned LBN_CHECKED = 0x0A10;  ///< a check mark was set or taken away
inline constexpr unsigned ES_CENTER = 0x0001, ES_RIGHT = 0x0002, ES_READONLY = 0x0800,
                          CBS_DROPDOWN = 0x0002, CBS_DROPDOWNLIST = 0x0003, SS_CENTER = 0x0001,
                          SS_RIGHT = 0x0002;
inline constexpr unsigned ES_NOLIMIT = 0x4000;       ///< an edit without a limit of characters
inline constexpr unsigned SS_ENDELLIPSIS = 0x4000;   ///< one line, cut short with "..."
inline constexpr unsigned LBS_EXTENDEDSEL = 0x0800;  ///< a list of which several lines are chosen
inline constexpr unsigned LBS_CHECKS = 0x4000;       ///< a list whose lines have a check mark each
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

/// One line of text, at most 128 characters unless made with ES_NOLIMIT; framed with WS_BORDER.
/// Without a frame it covers exactly its rectangle, for a place in another window. A handler of
/// EN_KILLFOCUS that calls SetFocus keeps the focus here.
class PAVANE_API CEdit : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Selects from character `first` to `last`, and brings the end into view; 0 and -1: all.
    void SetSel(int first, int last);
    /// Equal when nothing is selected: the place of the caret.
    void GetSel(int& first, int& last) const;
    void SetReadOnly(int on);
    /// Non-zero when the user changed the text since SetWindowText or SetModify(0).
    int GetModify() const;
    void SetModify(int on = 1);
    /// Another limit than 128 characters, 0 for none; what is longer is cut.
    void LimitText(int characters);
};

/// A line with a list below it: to choose from (CBS_DROPDOWNLIST), or with free text as well
/// (CBS_DROPDOWN). Its line stands at the top of the rectangle; the rest of it is as high as the
/// list opens at most, where it leaves room for a line. Letters that are typed choose the next line
/// that begins with them. The wheel changes the choice only while it has the focus.
/// CBN_SELENDCANCEL comes when the list closes without a choice. Before the text of a line a
/// picture may stand; the closed line shows that of the choice.
class PAVANE_API CComboBox : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Index of the new line, -1 without a window. The first line does not choose itself.
    int AddString(const CString& text);
    /// The same before line `index`, at the end when there is none.
    int InsertString(int index, const CString& text);
    /// Count of what is left, -1 when there is no such line.
    int DeleteString(int index);
    void ResetContent();
    int GetCount() const;
    /// -1 when nothing is chosen.
    int GetCurSel() const;
    /// -1 clears the selection. Sends no notice. Index of the choice, -1 for none.
    int SetCurSel(int index);
    /// Chooses the next line after `after` that begins with `text`, capitals or not, round the end;
    /// -1 begins at the first. Index of it, -1 when there is none. Sends no notice.
    int SelectString(int after, const CString& text);
    CString GetLBText(int index) const;
    void ShowDropDown(int show);
    int GetDroppedState() const;
    /// Height of the line (-1; it stands 6 pixels taller with its frame) or of each line of the
    /// list (0 and above). Non-zero on success.
    int SetItemHeight(int index, int height);
    /// The picture before the text of a line: an image of a list, or a picture with `ratio` pixels
    /// to a unit (empty: none). It is copied as it is now. Non-zero on success.
    int SetItemImage(int index, const CImageList& images, int image);
    int SetItemPicture(int index, const CPicture& picture, int ratio = 1);
    /// With CBS_DROPDOWN: while text is typed, a list below shows the lines that hold it.
    int SetFilter(int on);
    /// Called when the user has chosen a line, before CBN_SELCHANGE; 0 tells nobody.
    virtual int OnSelChosen(int index) { return (void)index, 1; }
};

/// A list of lines, with pictures as CComboBox has them; results as there. One line is chosen, or
/// several with LBS_EXTENDEDSEL: Ctrl and Shift with a click or an arrow, Ctrl+A for all. With
/// LBS_CHECKS a click on the mark or the space bar changes it (LBN_CHECKED). Letters that are typed
/// go to the next line that begins with them.
class PAVANE_API CListBox : public CWnd
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    int AddString(const CString& text);
    int InsertString(int index, const CString& text);
    int DeleteString(int index);
    void ResetContent();
    int GetCount() const;
    /// The chosen line, of several the one that has the focus.
    int GetCurSel() const;
    /// Chooses this line alone.
    int SetCurSel(int index);
    CString GetText(int index) const;
    /// Non-zero when the line is chosen.
    int GetSel(int index) const;
    /// With LBS_EXTENDEDSEL: adds a line to those chosen, or takes it away; -1 stands for all.
    /// Sends no notice. Non-zero when there is such a line.
    int SetSel(int index, int on = 1);
    int GetSelCount() const;
    /// The chosen lines from the top.
    std::vector<int> GetSelItems() const;
    /// As CComboBox has it.
    int SelectString(int after, const CString& text);
    int SetItemImage(int index, const CImageList& images, int image);
    int SetItemPicture(int index, const CPicture& picture, int ratio = 1);
    int GetCheck(int index) const;
    /// Sends no notice. Non-zero on success.
    int SetCheck(int index, int on);
    /// Puts a line in another place with its picture and mark, chosen as it was; sends no notice.
    int MoveItem(int from, int to);
    /// Client rectangle of a line, empty when it is not in view.
    CRect GetItemRect(int index) const;
    /// The line at a point of the client area, -1 for none.
    int ItemFromPoint(CPoint point) const;
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

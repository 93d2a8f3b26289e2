#pragma once

#include "pavane/windows/controls/color_picture.h"
#include "platform/controls.h"

namespace pavane
{

/// A closed list of colours by swatch and name, or of palettes as strips; with "More..." it asks
/// for any colour. CBN_SELCHANGE tells of a choice of the user's.
class PAVANE_API AColorComboBox : public CComboBox
{
public:
    int Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id);
    /// Index of the new line, -1 without a window.
    int AddItem(const AColorItem& item);
    int AddColor(const CString& name, COLORREF color) { return AddItem({name, {color}}); }
    /// Null when there is no such line.
    const AColorItem* GetItem(int index) const;
    /// Whether "More..." stands at the end; non-zero on success.
    int SetMore(int on);
    /// The colour of the chosen line, or its palette's first; 0 when nothing is chosen.
    int GetColor(COLORREF& color) const;
    /// As CComboBox has it; "More..." comes back to this choice when the user gives up.
    int SetCurSel(int index);
    /// Chooses the line of that colour alone, and adds it when there is none. Its index; sends no
    /// notice.
    int SetColor(COLORREF color);
    /// Takes all lines away.
    void RemoveAll();
    int OnSelChosen(int index) override;

private:
    std::vector<AColorItem> items_;
    int more_ = 0;
    int chosen_ = -1;  ///< what "More..." goes back to when no colour was chosen
};

}  // namespace pavane

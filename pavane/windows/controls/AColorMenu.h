#pragma once

#include "pavane/windows/controls/color_picture.h"
#include "platform/CMenu.h"

namespace pavane
{

/// A menu of colours by swatch and name, of palettes as strips, or both; with "More..." it asks for
/// any colour.
class PAVANE_API AColorMenu
{
public:
    /// Index of the new line. A name of "" is a line between groups, which counts as well.
    int Add(const AColorItem& item);
    int Add(const CString& name, COLORREF color) { return Add({name, {color}}); }
    int AddSeparator() { return Add(AColorItem()); }
    int GetCount() const { return static_cast<int>(items_.size()); }
    /// Null when there is no such line.
    const AColorItem* GetItem(int index) const;
    /// The line with a mark; -1 for none.
    void SetCurrent(int index) { current_ = index; }
    int GetCurrent() const { return current_; }
    /// Whether "More..." stands at the end.
    void SetMore(int on) { more_ = on; }

    /// Appends the lines to a popup, with identifiers from `firstId` on, for menus of a host's own;
    /// the last is "More...". How many identifiers it took.
    int AppendTo(CMenu& popup, unsigned firstId) const;
    /// Shows the menu at a screen point. The line that was chosen, -1 for none; a colour from
    /// "More..." is added as a line of its own first.
    int Track(CPoint screen, CWnd* owner);

private:
    std::vector<AColorItem> items_;
    int current_ = -1;
    int more_ = 0;
};

/// What a colour is called that has no name: "#1F6FC8".
PAVANE_API CString colorName(COLORREF color);

}  // namespace pavane

#include "pavane/windows/controls/AColorMenu.h"

#include "pavane/resources/control_messages.h"
#include "platform/color_dialog.h"

namespace pavane
{

namespace
{

constexpr int finest = 2;  // pixels to a unit; coarser screens take every second one

/// In a menu a single '&' marks a letter; names of palettes may hold any.
CString plain(const CString& name)
{
    CString doubled;
    for (const char c : name)
        doubled.append(c == '&' ? 2 : 1, c);
    return doubled;
}

}  // namespace

CString colorName(COLORREF color)
{
    constexpr char digits[] = "0123456789ABCDEF";
    CString name = "#";
    for (const int part : {GetRValue(color), GetGValue(color), GetBValue(color)}) {
        name += digits[part / 16];
        name += digits[part % 16];
    }
    return name;
}

int AColorMenu::Add(const AColorItem& item)
{
    items_.push_back(item);
    return GetCount() - 1;
}

const AColorItem* AColorMenu::GetItem(int index) const
{
    return index >= 0 && index < GetCount() ? &items_[static_cast<std::size_t>(index)] : nullptr;
}

int AColorMenu::AppendTo(CMenu& popup, unsigned firstId) const
{
    unsigned id = firstId;
    for (const AColorItem& item : items_) {
        if (item.name.empty()) {
            popup.AppendSeparator();
            ++id;
            continue;
        }
        const auto position = static_cast<unsigned>(popup.GetMenuItemCount());
        popup.AppendMenu(plain(item.name), id);
        popup.SetItemPicture(position, MF_BYPOSITION, colorPicture(item.colors, finest), finest);
        if (static_cast<int>(id - firstId) == current_)
            popup.CheckMenuItem(position, MF_BYPOSITION | MF_CHECKED);
        ++id;
    }
    if (more_) {
        popup.AppendSeparator();
        popup.AppendMenu(moreColors, id++);
    }
    return static_cast<int>(id - firstId);
}

int AColorMenu::Track(CPoint screen, CWnd* owner)
{
    CMenu menu;
    AppendTo(menu, 1);
    const int chosen = menu.TrackPopupMenu(TPM_RETURNCMD, screen, owner) - 1;
    if (chosen < GetCount())
        return chosen;
    const AColorItem* const current = GetItem(current_);
    COLORREF color = current && !current->colors.empty() ? current->colors.front() : 0;
    return AskColor(color, chooseColor, owner) ? Add(colorName(color), color) : -1;
}

}  // namespace pavane

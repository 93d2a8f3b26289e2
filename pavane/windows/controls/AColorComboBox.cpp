#include "pavane/windows/controls/AColorComboBox.h"

#include "pavane/resources/control_messages.h"
#include "pavane/windows/controls/AColorMenu.h"
#include "platform/color_dialog.h"

namespace pavane
{

int AColorComboBox::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    return CComboBox::Create(style | CBS_DROPDOWNLIST, rect, parent, id);
}

int AColorComboBox::AddItem(const AColorItem& item)
{
    const int index = static_cast<int>(items_.size());
    if (InsertString(index, item.name) != index)
        return -1;
    constexpr int finest = 2;
    (void)SetItemPicture(index, colorPicture(item.colors, finest), finest);
    items_.push_back(item);
    return index;
}

const AColorItem* AColorComboBox::GetItem(int index) const
{
    const bool is = index >= 0 && static_cast<std::size_t>(index) < items_.size();
    return is ? &items_[static_cast<std::size_t>(index)] : nullptr;
}

int AColorComboBox::SetMore(int on)
{
    const int last = static_cast<int>(items_.size());
    if ((on != 0) == (more_ != 0))
        return 1;
    const int made = on ? AddString(moreColors) == last : DeleteString(last) == last;
    if (made)
        more_ = on != 0;
    return made;
}

int AColorComboBox::GetColor(COLORREF& color) const
{
    const AColorItem* const item = GetItem(GetCurSel());
    if (!item || item->colors.empty())
        return 0;
    color = item->colors.front();
    return 1;
}

int AColorComboBox::SetCurSel(int index)
{
    const int chosen = CComboBox::SetCurSel(index);
    chosen_ = GetItem(chosen) ? chosen : -1;
    return chosen;
}

int AColorComboBox::SetColor(COLORREF color)
{
    int index = -1;
    for (std::size_t i = 0; i < items_.size() && index < 0; ++i) {
        if (items_[i].colors.size() == 1 && items_[i].colors.front() == color)
            index = static_cast<int>(i);
    }
    return SetCurSel(index < 0 ? AddColor(colorName(color), color) : index);
}

void AColorComboBox::RemoveAll()
{
    items_.clear();
    ResetContent();
    more_ = 0;
    chosen_ = -1;
}

int AColorComboBox::OnSelChosen(int index)
{
    if (GetItem(index)) {
        chosen_ = index;
        return 1;
    }
    // "More...": the line that was chosen comes back when the user gives up
    const HWND self = GetSafeHwnd();
    SetCurSel(chosen_);
    COLORREF color = 0;
    (void)GetColor(color);
    if (!AskColor(color, chooseColor, this) || FromHandle(self) != this)
        return 0;
    (void)SetColor(color);
    return 1;
}

}  // namespace pavane

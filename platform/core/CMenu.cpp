#include "platform/CMenu.h"

#include "platform/picture.h"
#include "platform/resources.h"

namespace pavane
{

CMenu CMenu::Clone() const
{
    CMenu copy;
    for (const Line& line : lines_) {
        Line& made = copy.lines_.emplace_back();
        made.text = line.text;
        made.id = line.id;
        made.enabled = line.enabled;
        made.checked = line.checked;
        made.picture = line.picture;
        made.ratio = line.ratio;
        made.images = line.images;
        made.image = line.image;
        if (line.popup)
            made.popup = std::make_unique<CMenu>(line.popup->Clone());
    }
    return copy;
}

void CMenu::append(const MenuItem* items, int count)
{
    for (int i = 0; i < count; ++i) {
        const MenuItem& item = items[i];
        if (!item.text)
            AppendSeparator();
        else if (item.items)
            AppendPopup(item.text).append(item.items, item.itemCount);
        else
            AppendMenu(item.text, item.id);
    }
}

int CMenu::LoadMenu(const MenuTemplate& menu)
{
    DeleteAll();
    append(menu.items, menu.itemCount);
    return 1;
}

int CMenu::LoadMenu(unsigned id)
{
    const MenuTemplate* menu = FindMenuTemplate(id);
    return menu ? LoadMenu(*menu) : 0;
}

CMenu* CMenu::GetSubMenu(int position)
{
    if (position < 0 || position >= GetMenuItemCount())
        return nullptr;
    return lines_[static_cast<std::size_t>(position)].popup.get();
}

void CMenu::AppendMenu(const CString& text, unsigned id)
{
    Line& line = lines_.emplace_back();
    line.text = text;
    line.id = id;
}

void CMenu::AppendSeparator() { lines_.emplace_back(); }

CMenu& CMenu::AppendPopup(const CString& text)
{
    Line& line = lines_.emplace_back();
    line.text = text;
    line.popup = std::make_unique<CMenu>();
    return *line.popup;
}

CMenu::Line* CMenu::find(unsigned item, unsigned flags)
{
    if (flags & MF_BYPOSITION)
        return item < lines_.size() ? &lines_[item] : nullptr;
    for (Line& line : lines_) {
        if (line.popup) {
            if (Line* inside = line.popup->find(item, flags))
                return inside;
        } else if (line.id == item && !line.text.empty()) {
            return &line;
        }
    }
    return nullptr;
}

int CMenu::EnableMenuItem(unsigned item, unsigned flags)
{
    Line* line = find(item, flags);
    if (!line)
        return 0;
    line->enabled = flags & MF_GRAYED ? 0 : 1;
    return 1;
}

int CMenu::CheckMenuItem(unsigned item, unsigned flags)
{
    Line* line = find(item, flags);
    if (!line)
        return 0;
    line->checked = flags & MF_CHECKED ? 1 : 0;
    return 1;
}

int CMenu::SetItemPicture(unsigned item, unsigned flags, CPicture picture, int ratio)
{
    Line* line = find(item, flags);
    if (!line)
        return 0;
    line->images = nullptr;
    line->picture.reset();
    if (picture.width() > 0)
        line->picture = std::make_shared<const CPicture>(std::move(picture));
    line->ratio = ratio;
    return 1;
}

int CMenu::SetItemImage(unsigned item, unsigned flags, const CImageList& images, int image)
{
    Line* line = find(item, flags);
    if (!line)
        return 0;
    line->picture.reset();
    line->images = &images;
    line->image = image;
    return 1;
}

int CMenu::RemoveMenu(unsigned item, unsigned flags)
{
    if (flags & MF_BYPOSITION) {
        if (item >= lines_.size())
            return 0;
        lines_.erase(lines_.begin() + item);
        return 1;
    }
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const Line& line = lines_[i];
        if (line.popup ? line.popup->RemoveMenu(item, flags)
                       : line.id == item && !line.text.empty()) {
            if (!line.popup)
                lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(i));
            return 1;
        }
    }
    return 0;
}

}  // namespace pavane

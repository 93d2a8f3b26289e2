#include "pavane/windows/controls/AImageList.h"

#include "platform/system_colors.h"

#include <algorithm>

namespace pavane
{

int AImageList::Create(int width, int height)
{
    names_.clear();
    const COLORREF grey = GetSysColor(COLOR_GRAYTEXT);
    grey_.SetColors(grey, grey, GetSysColor(COLOR_BTNSHADOW));
    return CImageList::Create(width, height) && grey_.Create(width, height);
}

int AImageList::AddNamed(const CString& name, const char* const* rows, int rowCount)
{
    if (!name.empty() && Find(name) >= 0)
        return -1;
    const int image = CImageList::Add(rows, rowCount);
    if (image < 0)
        return -1;
    grey_.Add(rows, rowCount);
    names_.push_back(name);
    return image;
}

int AImageList::Find(const CString& name) const
{
    const auto at = std::find(names_.begin(), names_.end(), name);
    return name.empty() || at == names_.end() ? -1 : static_cast<int>(at - names_.begin());
}

CString AImageList::GetName(int image) const
{
    const bool is = image >= 0 && static_cast<std::size_t>(image) < names_.size();
    return is ? names_[static_cast<std::size_t>(image)] : CString();
}

void AImageList::FollowDesktop()
{
    SetColors(GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_HIGHLIGHT),
              GetSysColor(COLOR_BTNSHADOW));
    const COLORREF grey = GetSysColor(COLOR_GRAYTEXT);
    grey_.SetColors(grey, grey, GetSysColor(COLOR_BTNSHADOW));
}

int AImageList::DrawIn(CDC& dc, int image, const CRect& rect, int enabled) const
{
    const CSize size = GetImageSize();
    const CPoint at{rect.left + (rect.Width() - size.cx) / 2,
                    rect.top + (rect.Height() - size.cy) / 2};
    return enabled ? Draw(dc, image, at) : grey_.Draw(dc, image, at);
}

}  // namespace pavane

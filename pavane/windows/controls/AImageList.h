#pragma once

#include "platform/image_list.h"

#include <vector>

namespace pavane
{

/// An image list whose pictures have names, are drawn grey where something is disabled, and may
/// take the desktop's colours.
class PAVANE_API AImageList : public CImageList
{
public:
    int Create(int width, int height);
    int Add(const char* const* rows, int rowCount) { return AddNamed({}, rows, rowCount); }
    /// The same with a name; one that is there already is refused with -1, "" is none.
    int AddNamed(const CString& name, const char* const* rows, int rowCount);
    /// -1 when there is none.
    int Find(const CString& name) const;
    CString GetName(int image) const;
    /// Takes text, accent and shadow of the desktop as colours; again after OnSysColorChange.
    void FollowDesktop();
    /// Draws in the middle of `rect`, grey when not `enabled`. Non-zero when there is such a
    /// picture.
    int DrawIn(CDC& dc, int image, const CRect& rect, int enabled = 1) const;

private:
    CImageList grey_;
    std::vector<CString> names_;
};

}  // namespace pavane

#include "pavane/windows/picture_export.h"

#include "platform/clipboard.h"
#include "platform/picture.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <string_view>

namespace pavane
{

namespace
{

int copyOf(CDC& dc, const CRect& rect, CBitmap& copy)
{
    if (rect.IsRectEmpty() || !copy.CreateCompatibleBitmap(dc, rect.Width(), rect.Height()))
        return 0;
    CMemoryDC memory(copy);
    return memory.BitBlt(0, 0, rect.Width(), rect.Height(), &dc, rect.left, rect.top, SRCCOPY);
}

int hasPngExtension(std::string_view name)
{
    constexpr std::string_view extension = ".png";
    if (name.size() < extension.size())
        return 0;
    name.remove_prefix(name.size() - extension.size());
    return std::equal(name.begin(), name.end(), extension.begin(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b;
    });
}

}  // namespace

int CopyToClipboard(CWnd*, CDC& dc, const CRect& rect)
{
    CBitmap copy;
    return copyOf(dc, rect, copy) && SetClipboardBitmap(copy);
}

int CopyToBMP(CDC& dc, const CRect& rect, const CString& fileName)
{
    CBitmap copy;
    if (!hasPngExtension(fileName) || !copyOf(dc, rect, copy) || !copy.bits())
        return 0;
    CPicture picture(copy.size().cx * copy.ratio(), copy.size().cy * copy.ratio());
    for (int y = 0; y < picture.height(); ++y)
        std::copy_n(copy.bits() + static_cast<std::ptrdiff_t>(y) * picture.width(), picture.width(),
                    picture.row(y));
    CString error;
    return picture.width() > 0 && SavePNG(picture, fileName, error);
}

}  // namespace pavane

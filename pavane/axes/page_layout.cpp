#include "pavane/axes/page_layout.h"

#include "pavane/axes/figure_units.h"
#include "platform/picture.h"

namespace pavane
{

int layOutOnPage(const CDC& dc, const CRect& rect, CRect& border, int& fHeight,
                 const PixelLayout& compose)
{
    const FigureUnits units(dc);
    CPicture ruler(1, 1);
    const CRect onPage = border;
    if (border.left != -1)
        border.left = units.pixels(border.left - rect.left);
    if (border.top != -1)
        border.top = units.pixels(border.top - rect.top);
    if (border.right != -1)
        border.right = units.pixels(border.right);
    if (border.bottom != -1)
        border.bottom = units.pixels(border.bottom);
    const CRect pixels(0, 0, units.pixels(rect.Width()), units.pixels(rect.Height()));
    const int hasRoom = compose(*ruler.dc(), pixels);
    border = onPage;
    fHeight = units.units(fHeight);
    return hasRoom;
}

}  // namespace pavane

#include "pavane/axes/windows/save_axis.h"

#include "pavane/axes/ABAxis.h"
#include "platform/picture.h"
#include "tessel/paths.h"

namespace pavane
{

int SaveAxis(ABAxis& axis, CSize size, const CString& file, CString& error)
{
    constexpr int most = 32768;
    if (size.cx < 1 || size.cy < 1 || size.cx > most || size.cy > most) {
        error = "There is no picture of that size";
        return 0;
    }
    const CString ending = extensionOf(file);
    if (ending == "pdf" || ending == "svg") {
        constexpr int unitsOfPixel = 12;
        CPageFile page(ending == "pdf" ? CPageFile::Format::pdf : CPageFile::Format::svg, size.cx,
                       size.cy, axis.getHeaderString(0), unitsOfPixel);
        CRect all(0, 0, size.cx * unitsOfPixel, size.cy * unitsOfPixel);
        axis.draw(page.dc(), all);
        return page.Close(file, error);
    }
    CPicture picture(size.cx, size.cy);
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    CRect all(0, 0, picture.width(), picture.height());
    axis.draw(*dc, all);
    return SavePNG(picture, file, error);
}

}  // namespace pavane

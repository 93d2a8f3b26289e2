#include "platform/core/dialog_units.h"

#include "platform/core/DeviceBackend.h"
#include "platform/gdi_objects.h"

namespace pavane
{

LOGFONT dialogFont()
{
    LOGFONT font;
    font.lfHeight = -12;
    font.lfFaceName = "Arial";
    return font;
}

CRect DialogUnits::pixels(int x, int y, int cx, int cy) const
{
    const int left = MulDiv(x, baseX, 4);
    const int top = MulDiv(y, baseY, 8);
    return CRect(left, top, left + MulDiv(cx, baseX, 4), top + MulDiv(cy, baseY, 8));
}

DialogUnits dialogUnits()
{
    DialogUnits units;
    if (GraphicsHook* hook = graphicsHook()) {
        const TextFace& face = hook->face(dialogFont(), false);
        const int letters = face.width("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        units.baseX = (letters / 26 + 1) / 2;
        units.baseY = face.metrics().tmHeight;
    }
    return units;
}

}  // namespace pavane

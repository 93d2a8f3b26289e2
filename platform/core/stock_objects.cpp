#include "platform/core/CDC_state.h"

namespace pavane
{

// Selecting an object copies it, so the stock objects that are handed out never change.

CPen* stockPen(int index)
{
    static CPen white(PS_SOLID, 0, 0xFFFFFF);
    static CPen black(PS_SOLID, 0, 0);
    static CPen none(PS_NULL, 0, 0);
    return index == WHITE_PEN   ? &white
           : index == BLACK_PEN ? &black
           : index == NULL_PEN  ? &none
                                : nullptr;
}

CBrush* stockBrush(int index)
{
    static CBrush solid[] = {CBrush(RGB(255, 255, 255)), CBrush(RGB(192, 192, 192)),
                             CBrush(RGB(128, 128, 128)), CBrush(RGB(64, 64, 64)),
                             CBrush(RGB(0, 0, 0))};
    static CBrush hollow = [] {
        CBrush brush;
        brush.CreateNullBrush();
        return brush;
    }();
    if (index >= WHITE_BRUSH && index <= BLACK_BRUSH)
        return &solid[index];
    return index == NULL_BRUSH ? &hollow : nullptr;
}

CFont* stockFont(int index)
{
    const auto ofHeight = [](int height) {
        LOGFONT font;
        font.lfHeight = height;
        font.lfFaceName = "Arial";
        CFont made;
        made.CreateFontIndirect(font);
        return made;
    };
    static CFont device = ofHeight(16);
    static CFont gui = ofHeight(-11);
    if (index == DEVICE_DEFAULT_FONT || index == SYSTEM_FONT)
        return &device;
    return index == DEFAULT_GUI_FONT ? &gui : nullptr;
}

}  // namespace pavane

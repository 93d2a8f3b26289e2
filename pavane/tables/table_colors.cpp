#include "pavane/tables/table_colors.h"

#include "platform/system_colors.h"

namespace pavane
{

namespace
{

constexpr double readable = 4.5;
// how far the highlight colour goes to white for selected cells, the face for the ground
constexpr int selectedLuminance = 90;
constexpr int groundLuminance = 35;
// steps to darker grounds, for palettes of light text
constexpr int luminanceStep = 15;

/// The tint of selected cells, as light as the text on it allows.
COLORREF selectedColor(COLORREF text)
{
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    for (int luminance = selectedLuminance; luminance > -100; luminance -= luminanceStep) {
        const COLORREF color = HLS_TRANSFORM(highlight, luminance, 0);
        if (ContrastRatio(color, text) >= readable)
            return color;
    }
    return ContrastRatio(0, text) >= readable ? 0 : RGB(255, 255, 255);
}

}  // namespace

TableColors TableColors::ofDesktop()
{
    TableColors c;
    c.window = GetSysColor(COLOR_WINDOW);
    c.text = GetSysColor(COLOR_WINDOWTEXT);
    c.face = GetSysColor(COLOR_BTNFACE);
    c.highlight = GetSysColor(COLOR_BTNHIGHLIGHT);
    c.shadow = GetSysColor(COLOR_BTNSHADOW);
    c.frame = GetSysColor(COLOR_WINDOWFRAME);
    c.selected = selectedColor(c.text);
    c.background = HLS_TRANSFORM(c.face, groundLuminance, 0);
    c.accent = GetSysColor(COLOR_HIGHLIGHT);
    return c;
}

COLORREF TableColors::textOn(COLORREF ground) const
{
    if (ground == lastGround_)
        return lastText_;
    constexpr COLORREF black = 0;
    constexpr COLORREF white = RGB(255, 255, 255);
    lastGround_ = ground;
    lastText_ = ContrastRatio(text, ground) >= readable                        ? text
                : ContrastRatio(black, ground) >= ContrastRatio(white, ground) ? black
                                                                               : white;
    return lastText_;
}

}  // namespace pavane

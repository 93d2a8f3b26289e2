#include "pavane/tables/table_colors.h"

#include "platform/system_colors.h"

namespace pavane
{

namespace
{

constexpr double readable = 4.5;   // of text
constexpr double seen = 3;         // of marks and frames
constexpr double faint = 2;        // of marks that tell of what cannot be done
constexpr double distinct = 1.25;  // of one ground beside another
// how far the highlight colour goes to white for selected cells, the face for the ground
constexpr int selectedLuminance = 90;
constexpr int groundLuminance = 35;
// steps to darker grounds, for palettes of light text
constexpr int luminanceStep = 15;

/// The tint of selected cells, as light as the text on it allows; the highlight colour itself,
/// which takes other text, where no tint differs from the window.
COLORREF selectedColor(const DesktopColors& desktop)
{
    const COLORREF lightest = HLS_TRANSFORM(desktop.selection, selectedLuminance, 0);
    if (ContrastRatio(lightest, desktop.text) >= readable && lightest != desktop.window)
        return lightest;
    for (int luminance = selectedLuminance; luminance > -100; luminance -= luminanceStep) {
        const COLORREF color = HLS_TRANSFORM(desktop.selection, luminance, 0);
        if (ContrastRatio(color, desktop.text) >= readable &&
            ContrastRatio(color, desktop.window) >= distinct)
            return color;
    }
    return desktop.selection;
}

constexpr COLORREF mean(COLORREF a, COLORREF b)
{
    return RGB((GetRValue(a) + GetRValue(b)) / 2, (GetGValue(a) + GetGValue(b)) / 2,
               (GetBValue(a) + GetBValue(b)) / 2);
}

}  // namespace

TableColors TableColors::of(const DesktopColors& desktop)
{
    TableColors c;
    c.window = desktop.window;
    c.text = desktop.text;
    c.face = desktop.face;
    c.highlight = desktop.highlight;
    c.shadow = desktop.shadow;
    c.frame = desktop.frame;
    c.selected = selectedColor(desktop);
    c.background = HLS_TRANSFORM(c.face, groundLuminance, 0);
    c.accent = desktop.selection;
    return c;
}

TableColors TableColors::ofDesktop()
{
    return of({GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_BTNFACE),
               GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW),
               GetSysColor(COLOR_WINDOWFRAME), GetSysColor(COLOR_HIGHLIGHT)});
}

COLORREF TableColors::textOn(COLORREF ground) const
{
    if (ground == text_.ground)
        return text_.color;
    constexpr COLORREF black = 0;
    constexpr COLORREF white = RGB(255, 255, 255);
    text_ = {ground, ContrastRatio(text, ground) >= readable                        ? text
                     : ContrastRatio(black, ground) >= ContrastRatio(white, ground) ? black
                                                                                    : white};
    return text_.color;
}

COLORREF TableColors::accentOn(COLORREF ground) const
{
    if (ground != accent_.ground)
        accent_ = {ground, ContrastRatio(accent, ground) >= seen ? accent : textOn(ground)};
    return accent_.color;
}

COLORREF TableColors::faintOn(COLORREF ground) const
{
    if (ground != faint_.ground)
        faint_ = {ground,
                  ContrastRatio(shadow, ground) >= faint ? shadow : mean(textOn(ground), ground)};
    return faint_.color;
}

int TableColors::isInverseSeen(COLORREF ground)
{
    return ContrastRatio(ground, ~ground & RGB(255, 255, 255)) >= seen;
}

}  // namespace pavane

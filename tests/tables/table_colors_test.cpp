#include "pavane/tables/table_colors.h"
#include "platform/system_colors.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(TableColors, CanBeReadInEveryPalette)
{
    const COLORREF black = 0, white = RGB(255, 255, 255), grey = RGB(128, 128, 128);
    // window, text, face, light edge, shadow, frame, selection
    const struct {
        const char* name;
        DesktopColors desktop;
        int tinted;  ///< selected cells keep the text's colour
    } palettes[] = {
        {"light",
         {white, black, RGB(239, 239, 239), white, RGB(159, 159, 159), black, RGB(48, 140, 198)},
         1},
        {"dark",
         {RGB(27, 30, 32), RGB(252, 252, 252), RGB(49, 54, 59), RGB(70, 75, 80), RGB(20, 22, 24),
          black, RGB(61, 174, 233)},
         1},
        {"contrast black",
         {black, white, black, white, RGB(0, 255, 0), white, RGB(26, 235, 255)},
         1},
        {"contrast white", {white, black, white, black, grey, black, RGB(55, 0, 110)}, 1},
        {"yellow on black",
         {black, RGB(255, 255, 0), black, RGB(255, 255, 0), RGB(255, 255, 0), RGB(255, 255, 0),
          RGB(0, 128, 0)},
         1},
        {"middle grey",
         {grey, black, grey, white, RGB(120, 120, 120), black, RGB(130, 130, 130)},
         1},
        {"white highlight", {white, black, white, white, white, black, white}, 1},
        {"pale text",
         {white, RGB(200, 200, 200), white, white, white, white, RGB(210, 230, 255)},
         1},
        {"grey on black", {black, grey, black, grey, grey, grey, RGB(48, 140, 198)}, 0},
    };
    for (const auto& p : palettes) {
        const TableColors c = TableColors::of(p.desktop);
        for (const COLORREF ground :
             {c.window, c.selected, c.background, c.face, flatHeaderColor}) {
            EXPECT_GE(ContrastRatio(c.textOn(ground), ground), 4.5) << p.name << ' ' << ground;
            EXPECT_GE(ContrastRatio(c.accentOn(ground), ground), 3) << p.name << ' ' << ground;
            EXPECT_GE(ContrastRatio(c.faintOn(ground), ground), 1.7) << p.name << ' ' << ground;
        }
        EXPECT_EQ(c.textOn(c.selected) == c.text, p.tinted) << p.name;
        EXPECT_NE(c.selected, c.window) << p.name;
    }
    EXPECT_TRUE(TableColors::isInverseSeen(white) && TableColors::isInverseSeen(black));
    EXPECT_FALSE(TableColors::isInverseSeen(grey));
    // ordinary palettes keep the tint that they always had
    EXPECT_EQ(TableColors::of(palettes[0].desktop).selected,
              HLS_TRANSFORM(palettes[0].desktop.selection, 90, 0));
}

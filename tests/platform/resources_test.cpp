#include "platform/CMenu.h"
#include "platform/core/dialog_units.h"
#include "platform/core/file_filter.h"
#include "platform/resources.h"

#include <gtest/gtest.h>

namespace pavane
{

namespace
{

constexpr MenuItem copyTo[] = {{"into &Clipboard\tCtrl+C", 101, nullptr, 0},
                               {"into PNG", 102, nullptr, 0}};
constexpr MenuItem popup[] = {
    {"&Undo\tCtrl+Z", 100, nullptr, 0}, {}, {"Copy to", 0, copyTo, 2}, {"Clear", 103, nullptr, 0}};
constexpr MenuItem bar[] = {{"&Edit", 0, popup, 4}};
constexpr MenuItem otherBar[] = {{"&File", 0, popup, 1}};
constexpr MenuTemplate menus[] = {{9001, bar, 1}, {9002, bar, 1}};
constexpr StringTemplate strings[] = {{7, "Time Intervals"}, {8, nullptr}};
constexpr MenuTemplate laterMenus[] = {{9002, otherBar, 1}};

/// "Undo 100,-,Copy to(...)": what a menu shows; '!' is disabled and '*' checked.
CString asText(const CMenu& menu)
{
    CString text;
    for (const CMenu::Line& line : menu.lines()) {
        text += text.empty() ? "" : ",";
        text += line.text.empty() ? "-" : line.text.substr(0, line.text.find('\t'));
        text += line.enabled ? "" : "!";
        text += line.checked ? "*" : "";
        text += line.popup ? "(" + asText(*line.popup) + ")" : "";
    }
    return text;
}

}  // namespace

TEST(Resources, SearchTheModuleAddedLastFirst)
{
    AddResourceModule({menus, 2, nullptr, 0, nullptr, 0});
    AddResourceModule({laterMenus, 1, nullptr, 0, nullptr, 0});
    AddResourceModule({menus, 2, nullptr, 0, nullptr, 0});  // known already
    AddResourceModule({.strings = strings, .stringCount = 2});
    EXPECT_EQ(LoadString(7) + LoadString(8) + LoadString(9), "Time Intervals");
    EXPECT_EQ(FindString(8), &strings[1]);
    EXPECT_EQ(FindMenuTemplate(9001), &menus[0]);
    EXPECT_EQ(FindMenuTemplate(9002), &laterMenus[0]);
    EXPECT_EQ(FindMenuTemplate(9003), nullptr);
    EXPECT_EQ(FindDialogTemplate(9001), nullptr);
}

TEST(CMenu, ChangesItemsByCommandInPopupsToo)
{
    CMenu menu;
    EXPECT_FALSE(menu.LoadMenu(9999));
    ASSERT_TRUE(menu.LoadMenu(menus[0]));
    EXPECT_EQ(asText(menu), "&Edit(&Undo,-,Copy to(into &Clipboard,into PNG),Clear)");
    EXPECT_FALSE(menu.EnableMenuItem(0, MF_GRAYED));  // lines and popups are no commands
    EXPECT_FALSE(menu.RemoveMenu(7, MF_BYPOSITION));
    EXPECT_EQ(menu.GetSubMenu(1), nullptr);
    EXPECT_EQ(menu.GetSubMenu(0)->GetSubMenu(0), nullptr);
    EXPECT_TRUE(menu.EnableMenuItem(102, MF_GRAYED));
    EXPECT_TRUE(menu.CheckMenuItem(103, MF_CHECKED));
    const CMenu before = menu.Clone();
    CMenu* edit = menu.GetSubMenu(0);
    ASSERT_TRUE(edit);
    EXPECT_TRUE(edit->EnableMenuItem(0, MF_BYPOSITION | MF_GRAYED));
    EXPECT_TRUE(edit->RemoveMenu(101, MF_BYCOMMAND));
    EXPECT_TRUE(edit->RemoveMenu(1, MF_BYPOSITION));
    EXPECT_TRUE(edit->CheckMenuItem(103, MF_UNCHECKED));
    EXPECT_EQ(asText(menu), "&Edit(&Undo!,Copy to(into PNG!),Clear)");
    EXPECT_EQ(asText(before), "&Edit(&Undo,-,Copy to(into &Clipboard,into PNG!),Clear*)");
}

TEST(DialogUnits, RoundPlacesAndSizesByThemselves)
{
    const DialogUnits units{6, 13};
    EXPECT_EQ(units.pixels(4, 8, 4, 8), CRect(6, 13, 12, 26));
    EXPECT_EQ(units.pixels(7, 7, 50, 14), CRect(11, 11, 86, 34));  // 10.5, 11.375, 75, 22.75
    EXPECT_EQ(units.pixels(8, 7, 50, 14).Width(), 75);
}

TEST(FileFilter, ReadsPairsOfTextAndPatterns)
{
    const struct {
        const char* list;
        const char* read;
    } cases[] = {
        {"PNG files (*.PNG)|*.png", "PNG files (*.PNG): *.png\n"},
        {"Maps|*.fits; *.fit *.fts|All|*.*|", "Maps: *.fits *.fit *.fts\nAll: *\n"},
        {"Maps|*.fits||", "Maps: *.fits\n"},
        {"Nothing|;|Half", ""},
        {"", ""},
    };
    for (const auto& c : cases) {
        CString text;
        for (const FileFilter& filter : fileFilters(c.list)) {
            text += filter.text + ":";
            for (const CString& pattern : filter.patterns)
                text += " " + pattern;
            text += "\n";
        }
        EXPECT_EQ(text, c.read) << c.list;
    }
}

TEST(FileFilter, LetsTheNameFollowTheType)
{
    const auto list = fileFilters("Areas|*.areas|DS9|*.reg;*.ds9|Any|*");
    EXPECT_EQ(extensionOf(list[1]), "reg");
    EXPECT_EQ(extensionOf(list[2]), "");
    EXPECT_EQ(withTypeOf("3C84.areas", "reg", list), "3C84.reg");
    EXPECT_EQ(withTypeOf("3C84.txt", "reg", list), "3C84.txt");
    EXPECT_EQ(withTypeOf("3C84.areas", "", list), "3C84.areas");
}

TEST(FileFilter, AddsAnExtensionWhereThereIsNone)
{
    const char* const cases[][3] = {{"map", "png", "map.png"},
                                    {"map.jpg", "png", "map.jpg"},
                                    {"map", ".png", "map.png"},
                                    {"map.", "png", "map.png"},
                                    {"map", "*.uvx", "map.uvx"},
                                    {"3C84_15.4GHz", "fits", "3C84_15.4GHz.fits"},
                                    {"/a.b/map", "png", "/a.b/map.png"},
                                    {"/a/.png", "png", "/a/.png.png"},
                                    {"/a/", "png", "/a/"},
                                    {"", "png", ""},
                                    {"map", "", "map"}};
    for (const auto& c : cases)
        EXPECT_EQ(withExtension(c[0], c[1]), c[2]) << c[0];
}

}  // namespace pavane

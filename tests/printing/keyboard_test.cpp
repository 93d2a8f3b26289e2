#include "platform/qt/press_keys.h"
#include "tests/platform/test_window.h"
#include "tests/printing/print_fixture.h"

#include <chrono>
#include <cstdlib>
#include <thread>

namespace pavane
{

using KeyboardTest = PrintTest;

TEST_F(KeyboardTest, EverythingIsReachedWithoutAMouse)
{
    const struct {
        const char* name;
        const char* keys;
        const char* printed;
        int messages;
        const char* after;  ///< caption, first number, left margin
    } cases[] = {
        {"escape", "Escape", "", 0, "Figure 7 ~C. 1 2000"},
        {"all", "Return", "1 2 3 4 5 ", 0, "Figure 7 ~C. 1 2000"},
        {"typed range", "Alt+F '2' Tab '3' Return", "2 3 ", 0, "Figure 7 ~C. 1 2000"},
        {"all again", "Alt+F '2' Alt+A Return", "1 2 3 4 5 ", 0, "Figure 7 ~C. 1 2000"},
        {"mended range", "Alt+T '9' Return '4' Return", "1 2 3 4 ", 1, "Figure 7 ~C. 1 2000"},
        {"mended start", "Alt+F '7' Return '5' Return", "5 ", 1, "Figure 7 ~C. 1 2000"},
        {"number", "Backtab Backtab Backtab Backtab Backtab Return '7' Up Return Escape", "", 0,
         "Figure 7 ~C. 8 2000"},
        {"caption",
         "Backtab Backtab Backtab Backtab Backtab Backtab Backtab Return 'Mine' Return Escape", "",
         0, "Mine 1 2000"},
        {"page set-up", "Backtab Backtab Backtab Backtab Return Alt+L '25.5' Return Escape", "", 0,
         "Figure 7 ~C. 1 2550"},
        {"preview", "Backtab Backtab Backtab Return End PgUp + - Escape Escape", "P1 P5 P4 ", 0,
         "Figure 7 ~C. 1 2000"},
        {"typed page", "Backtab Backtab Backtab Return Tab '3' Return Escape Escape", "P1 P3 ", 0,
         "Figure 7 ~C. 1 2000"},
    };
    (void)SetDialogAnswer(nullptr);
    TestWindow frame;
    (void)setenv("CUPS_SERVER", "/nowhere", 1);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PageWindow window;
        window.pages = 5;
        window.CreateEx(0, "", "", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, &frame, 1);
        struct Out : APrintOut {
            using APrintOut::APrintOut;
            std::string pages;
            int OnPrintPage(CDC* dc, CPrintInfo* info) override
            {
                const std::string page =
                    (info->preview ? "P" : "") + std::to_string(info->currentPage) + " ";
                if (!info->preview || !pages.ends_with(page))
                    pages += page;
                return APrintOut::OnPrintPage(dc, info);
            }
        } out("keys");
        out.SetPrintWindow(&window);
        out.SetMargins(standardMargins);
        chosenFile() = folder + "/keys.pdf";
        messages().clear();
        // whoever pressed the last key looks whether its dialog has gone
        for (int i = 0; i < 10; ++i) {
            settle();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        pressKeys(c.keys);
        (void)APrinter(nullptr).Printing(&out);
        EXPECT_EQ(out.pages, c.printed) << c.name;
        EXPECT_EQ(static_cast<int>(messages().size()), c.messages) << c.name;
        EXPECT_EQ(out.GetAddInfo().subscriptFormat + " " +
                      std::to_string(out.GetAddInfo().firstNumber) + " " +
                      std::to_string(out.GetMargins().left),
                  c.after)
            << c.name;
    }
    (void)unsetenv("CUPS_SERVER");
}

}  // namespace pavane

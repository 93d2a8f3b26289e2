#include "pavane/printing/page_drawing.h"
#include "pavane/printing/print_setup.h"
#include "platform/printer_dc.h"
#include "tests/printing/print_fixture.h"

#include <cmath>

namespace pavane
{

using DirectTest = PrintTest;

TEST_F(DirectTest, PagesStandWhereTheLayoutSays)
{
    const struct {
        const char* paper;
        int landscape, dpi, pages;
        CRect margins;
        std::vector<double> outer;  ///< of the area within the margins, mm
    } cases[] = {
        {"A4", 0, 96, 1, standardMargins, {20, 10, 200, 287}},
        {"A4", 0, 300, 2, standardMargins, {20, 10, 200, 287}},
        {"A4", 1, 600, 2, standardMargins, {20, 10, 287, 200}},
        {"100x150", 0, 1200, 3, {500, 700, 900, 1100}, {5, 7, 91, 139}},
    };
    for (const auto& c : cases) {
        PageWindow window;
        window.pages = c.pages;
        APrintOut out("a page");
        out.SetPrintWindow(&window);
        out.SetMargins(c.margins);
        CPrintSettings settings;
        settings.file = folder + "/" + std::to_string(c.dpi) + ".pdf";
        settings.paper = c.paper;
        settings.landscape = c.landscape;
        settings.dpi = c.dpi;
        CString error;
        ASSERT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error)) << error;
        const std::vector<std::string> texts = textsOf(settings.file);
        ASSERT_EQ(static_cast<int>(texts.size()), c.pages) << c.dpi;
        const double unit = 25.4 / c.dpi;
        const double cell = std::round(16.0 / 96 * c.dpi) * unit;
        for (int page = 1; page <= c.pages; ++page) {
            const std::vector<double> black = blackOf(settings.file, page);
            const double above = c.pages > 1 ? std::floor(5 * cell / unit / 3) * unit : 0;
            const double below = cell + std::floor(cell / unit / 3) * unit;
            EXPECT_NEAR(black[0], c.outer[0], 0.15) << c.dpi;
            EXPECT_NEAR(black[1], c.outer[1] + above, 0.15) << c.dpi;
            EXPECT_NEAR(black[2], c.outer[2], 0.15) << c.dpi;
            EXPECT_NEAR(black[3], c.outer[3] - below, 0.15) << c.dpi;
            const std::string number = page > 1 ? std::to_string(page) + ". " : "";
            EXPECT_EQ(texts[static_cast<std::size_t>(page - 1)],
                      number + "sheet" + std::to_string(page) + " Figure 7 " +
                          (page > 1 ? "(Continued)." : "."));
        }
    }
}

TEST_F(DirectTest, SaysWhyItPrintsNothing)
{
    PageWindow window;
    window.pages = 3;
    struct Case {
        const char* name;
        std::function<void(APrintOut&, CPrintSettings&)> spoil;
        const char* error;
    };
    const Case cases[] = {
        {"margins",
         [](APrintOut& o, CPrintSettings&) {
             o.SetMargins({9000, 0, 11500, 0});
         },
         "The margins must leave"},
        {"negative",
         [](APrintOut& o, CPrintSettings&) {
             o.SetMargins({0, -1, 0, 0});
         },
         "The top margin must be at least 0.00 mm."},
        {"paper", [](APrintOut&, CPrintSettings& s) { s.paper = "0x0"; }, "there is no paper"},
        {"dpi", [](APrintOut&, CPrintSettings& s) { s.dpi = -4; }, "-4 dots per inch"},
        {"folder", [](APrintOut&, CPrintSettings& s) { s.file = "/nowhere/x.pdf"; },
         "Printing could not be started: "},
        {"abort",
         [&](APrintOut&, CPrintSettings&) {
             window.onPage = [](CDC&, int page) { *GetAPrinterAbort() = page == 2; };
         },
         "Printing was stopped."},
        {"second job",
         [&](APrintOut&, CPrintSettings&) {
             window.onPage = [this](CDC&, int page) {
                 CString why;
                 APrintOut other("other");
                 CPrintSettings there;
                 there.file = folder + "/other.pdf";
                 *GetAPrinterAbort() = page == 2;
                 EXPECT_FALSE(APrinter(nullptr).PrintDirect(other, there, why));
                 EXPECT_EQ(why, "Another document is being printed.");
                 EXPECT_FALSE(APrinter(nullptr).Printing(&other));
             };
         },
         "Printing was stopped."},
    };
    for (const Case& c : cases) {
        APrintOut out("a page");
        out.SetPrintWindow(&window);
        CPrintSettings settings;
        settings.file = folder + "/never.pdf";
        window.onPage = nullptr;
        c.spoil(out, settings);
        CString error;
        EXPECT_FALSE(APrinter(nullptr).PrintDirect(out, settings, error)) << c.name;
        EXPECT_EQ(error.find(c.error), 0u) << c.name << ": " << error;
        EXPECT_EQ(files(), std::vector<std::string>()) << c.name;
    }
    EXPECT_EQ(messages(), std::vector<CString>());
}

TEST_F(DirectTest, RangesAreBroughtIntoTheDocument)
{
    const struct {
        int pages, from, to;
        const char* printed;
    } cases[] = {
        {3, 0, 0, "1 2 3 "},
        {3, 2, 0, "2 3 "},
        {3, 0, 2, "1 2 "},
        {3, 3, 1, "3 2 1 "},
        {3, 9, 12, "3 "},
        {0, 0, 0, "1 "},
        {3, 2, -5, "2 1 "},
        {3, -5, 2, "1 2 "},
        {-1, 0, 0, "1 "},
        {0x7FFFFFFF, 7, 8, "7 8 "},
        {0x7FFFFFFF, 0x7FFFFFFF, 0, "2147483647 "},
    };
    for (const auto& c : cases) {
        PageWindow window;
        window.pages = c.pages;
        std::string printed;
        window.onPage = [&](CDC&, int page) { printed += std::to_string(page) + " "; };
        APrintOut out("range");
        out.SetPrintWindow(&window);
        CPrintSettings settings;
        settings.file = folder + "/range.pdf";
        settings.from = c.from;
        settings.to = c.to;
        CString error;
        EXPECT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error)) << error;
        EXPECT_EQ(printed, c.printed) << c.pages << " " << c.from << "-" << c.to;
    }
}

/// Counts what the page loop calls.
struct CountingOut : APrintOut {
    using APrintOut::APrintOut;
    int begun = 0, ended = 0, prepared = 0, stopBefore = 0, failAt = 0;
    void OnBeginPrinting(CDC*, CPrintInfo*) override { ++begun; }
    void OnEndPrinting(CDC*, CPrintInfo*) override { ++ended; }
    void OnPrepareDC(CDC*, CPrintInfo* info) override
    {
        ++prepared;
        info->continuePrinting = info->currentPage != stopBefore;
    }
    int OnPrintPage(CDC* dc, CPrintInfo* info) override
    {
        return info->currentPage != failAt && APrintOut::OnPrintPage(dc, info);
    }
};

TEST_F(DirectTest, HooksComeInOrderWhateverHappens)
{
    const struct {
        int stopBefore, failAt, prepared, ok;
        const char* error;
    } cases[] = {{0, 0, 8, 1, ""}, {3, 0, 5, 1, ""}, {0, 2, 4, 0, "Printing has ended at page 2."}};
    for (const auto& c : cases) {
        PageWindow window;
        window.pages = 4;
        CountingOut out("hooks");
        out.stopBefore = c.stopBefore;
        out.failAt = c.failAt;
        out.SetPrintWindow(&window);
        CPrintSettings settings;
        settings.file = folder + "/hooks.pdf";
        CString error;
        EXPECT_EQ(APrinter(nullptr).PrintDirect(out, settings, error), c.ok);
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(out.begun * 10 + out.ended, 11);
        EXPECT_EQ(out.prepared, c.prepared);
        std::filesystem::remove(settings.file);
        EXPECT_EQ(files(), std::vector<std::string>());
    }
}

TEST_F(DirectTest, AWindowWithoutAHandleIsMissedToo)
{
    struct : APrintOut {
        using APrintOut::APrintOut;
        std::unique_ptr<PageWindow> window = std::make_unique<PageWindow>();
        void OnPrepareDC(CDC*, CPrintInfo*) override { window.reset(); }
    } out("gone");
    out.SetPrintWindow(out.window.get());
    CPrintSettings settings;
    settings.file = folder + "/gone.pdf";
    CString error;
    for (int time = 0; time < 2; ++time) {
        EXPECT_FALSE(APrinter(nullptr).PrintDirect(out, settings, error));
        EXPECT_EQ(error.substr(error.size() - 42), "The window that was being printed is gone.");
        EXPECT_EQ(files(), std::vector<std::string>());
    }
}

TEST_F(DirectTest, APaperOfAQueueHoldsWithoutTheQueue)
{
    CWinApp app;
    APrintOut out("paper");
    CPrintInfo chosen;
    chosen.settings.paper = "C5 envelope";
    chosen.printer.papers = {{"C5 envelope", 16200, 22900}};
    keepSetup(&app, out, chosen);
    for (CWinApp* const run : {&app, static_cast<CWinApp*>(nullptr)}) {
        CPrintInfo next;
        CSize sheet;
        CString error;
        takeKeptSetup(run, out, next);
        EXPECT_TRUE(sheetOfInfo(next, sheet, error)) << error;
        EXPECT_EQ(sheet, CSize(16200, 22900));
        EXPECT_EQ(next.settings.paper, run ? "C5 envelope" : "162.00x229.00");
    }
}

TEST_F(DirectTest, TheFirstJobOfAWindowAsksItLaterOnesDoNot)
{
    PageWindow window;
    window.pages = 2;
    APrintOut out("kept");
    out.SetPrintWindow(&window);
    CPrintSettings settings;
    settings.file = folder + "/kept.pdf";
    CString error;
    ASSERT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error));
    EXPECT_EQ(out.GetAddInfo().subscriptFormat, "Figure 7 ~C.");
    EXPECT_EQ(out.GetAddInfo().pageNumber, 1);
    // the printable area, mapped, with its clip
    EXPECT_EQ(window.asked, CRect(0, 0, 4724 - 472, 6780 - 236));
    out.GetAddInfo() = {0, 1, "Mine %d & ~U", 9};
    ASSERT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error));
    EXPECT_EQ(textsOf(settings.file)[1], "Mine 2 & sheet2");
    PageWindow other;
    out.SetPrintWindow(&other);
    ASSERT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error));
    EXPECT_EQ(out.GetAddInfo().subscriptFormat, "Figure 7 ~C.");
    EXPECT_EQ(out.GetAddInfo().pageNumber, 0);
}

TEST_F(DirectTest, APageLeavesItsContextAsItWas)
{
    CPrinterDC dc({21000, 29700}, 300);
    PageWindow window;
    CRect before;
    (void)dc.GetClipBox(before);
    TEXTMETRIC font;
    (void)dc.GetTextMetrics(font);
    window.onPage = [](CDC& d, int) {
        (void)d.SaveDC();  // a window that forgets to restore
        d.SetMapMode(MM_TEXT);
        (void)d.SelectClipRgn(nullptr);
    };
    APrintOut out("context");
    out.SetPrintWindow(&window);
    CPrintInfo info;
    ASSERT_TRUE(out.OnPrintPage(&dc, &info));
    CRect after;
    (void)dc.GetClipBox(after);
    TEXTMETRIC then;
    (void)dc.GetTextMetrics(then);
    EXPECT_EQ(before, after);
    EXPECT_EQ(font.tmHeight, then.tmHeight);
    EXPECT_EQ(dc.GetMapMode(), MM_TEXT);
    EXPECT_EQ(dc.SaveDC(), 1);
    // no room: the window is not asked to draw
    window.rect = {1, 2, 3, 4};
    for (const CRect& place : {CRect(0, 0, 0, 0), CRect(5, 5, 4, 4), CRect(0, 0, 100, 3)})
        EXPECT_TRUE(out.PrintPage(dc, 1, place, out.GetAddInfo()));
    EXPECT_FALSE(window.rect.IsRectEmpty());
}

}  // namespace pavane

#include "pavane/printing/APrnPreviewWnd.h"
#include "pavane/printing/print_dialogs.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "platform/printer_dc.h"
#include "tests/printing/print_fixture.h"

namespace pavane
{

namespace
{

class PreviewTest : public PrintTest
{
protected:
    PreviewTest() { out.SetPrintWindow(&window); }
    PageWindow window;
    APrintOut out{"preview"};
};

}  // namespace

TEST_F(PreviewTest, APageIsWhereItIsOnPaper)
{
    window.pages = 2;
    window.caption = "A caption that is long enough for several lines of a page, whichever way "
                     "the text is measured, since it goes on and on and on and on ~C ~U";
    for (const int dpi : {96, 300, 600, 1200}) {
        CPrintSettings settings;
        settings.file = folder + "/page.pdf";
        settings.dpi = dpi;
        CString error;
        ASSERT_TRUE(APrinter(nullptr).PrintDirect(out, settings, error)) << error;
        const CPrinterDC printer({21000, 29700}, dpi);
        CPrintInfo info;
        for (const int page : {1, 2}) {
            APrnPreviewWnd preview(out, info, printer);
            preview.setPage(page);
            CBitmap bitmap;
            ASSERT_EQ(preview.renderPage(bitmap, 300), 300);
            const CSize size = bitmap.size();
            const auto shown = blackOf(size.cx, size.cy, 300, [&](int x, int y) {
                return (bitmap.bits()[std::ptrdiff_t{y} * size.cx + x] & 255) < 64;
            });
            const std::vector<double> printed = blackOf(settings.file, page);
            for (std::size_t side = 0; side < 4; ++side)
                EXPECT_NEAR(shown[side], printed[side], 0.15) << dpi << " " << page << " " << side;
        }
    }
}

TEST_F(PreviewTest, TurnsZoomsAndTellsSo)
{
    const struct {
        const char* name;
        int pages, rangeOn, from, to;
        std::vector<unsigned> keys;
        int lines;
        const char *current, *total, *status;
    } cases[] = {
        {"opened", 5, 0, 2, 3, {}, 5, "1", "5", "Page 1 of 5, "},
        {"range", 5, 1, 2, 4, {VK_NEXT}, 3, "3", "3", "Page 3 of 5, "},
        {"backwards", 5, 1, 4, 2, {VK_NEXT, VK_NEXT, VK_NEXT}, 3, "2", "3", "Page 2 of 5, "},
        {"end", 5, 0, 1, 5, {VK_END, VK_PRIOR}, 5, "4", "5", "Page 4 of 5, "},
        {"long", 30000000, 0, 1, 1, {VK_END}, 1000, "30000000", "30000000", "Page 30000000 of "},
        {"most",
         0x7FFFFFFF,
         0,
         1,
         1,
         {VK_END, VK_NEXT, VK_HOME, VK_PRIOR},
         1000,
         "1",
         "2147483647",
         "Page 1 of 2147483647, "},
        {"none", 0, 0, 1, 1, {VK_NEXT}, 1, "1", "1", "Page 1 of 1, "},
    };
    for (const auto& c : cases) {
        window.pages = c.pages;
        int seen = 0;
        answers()["Print preview"] = [&](CDialog& dialog) {
            ++seen;
            for (const unsigned key : c.keys)
                (void)dialog.GetDlgItem(IDC_PREVIEW_WINDOW)->SendMessage(WM_KEYDOWN, key);
            const auto& list = dynamic_cast<CComboBox&>(*dialog.GetDlgItem(IDC_PREVIEW_PAGE));
            EXPECT_EQ(list.GetCount(), c.lines) << c.name;
            EXPECT_EQ(list.GetLBText(list.GetCurSel()), c.current) << c.name;
            EXPECT_EQ(dialog.GetDlgItemText(IDC_PREVIEW_TOTAL), c.total) << c.name;
            const CString status = dialog.GetDlgItemText(IDC_PREVIEW_STATUS);
            EXPECT_EQ(status.find(c.status), 0u) << c.name << ": " << status;
            for (const unsigned id :
                 {IDC_PREVIEW_WIDTH, IDC_PREVIEW_ZOOM_IN, IDC_PREVIEW_ZOOM_OUT, IDC_PREVIEW_WHOLE})
                (void)dialog.SendMessage(WM_COMMAND, id);
            EXPECT_EQ(dialog.GetDlgItemText(IDC_PREVIEW_STATUS), status) << c.name;
            // the wheel comes to the end of the last page and stays there
            CWnd& page = *dialog.GetDlgItem(IDC_PREVIEW_WINDOW);
            (void)dialog.SendMessage(WM_COMMAND, IDC_PREVIEW_WIDTH);
            constexpr WPARAM down = WPARAM{static_cast<std::uint16_t>(-WHEEL_DELTA)} << 16;
            for (int i = 0; i < 150 && c.lines <= 5; ++i)
                (void)page.SendMessage(WM_MOUSEWHEEL, down);
            int first = 0;
            int end = 0;
            (void)page.GetScrollRange(SB_VERT, first, end);
            EXPECT_GT(end, 0) << c.name;
            EXPECT_EQ(page.GetScrollPos(SB_VERT), c.lines <= 5 ? end : 0) << c.name;
        };
        CPrintInfo info;
        ASSERT_TRUE(out.SetupPrintDlg(nullptr, &info));
        info.rangeIsPages = c.rangeOn;
        info.from = c.from;
        info.to = c.to;
        const bool isBackwards = c.from > c.to;
        EXPECT_EQ(out.PreviewDlg(&info), !isBackwards) << c.name;
        EXPECT_EQ(seen, !isBackwards) << c.name;
    }
    EXPECT_EQ(messages().size(), 1u);
}

TEST_F(PreviewTest, ThePageGoesToTheClipboardAsFarAsItFits)
{
    const struct {
        const char* paper;
        CSize size;
        const char* status;
    } cases[] = {{"A4", {2480, 3508}, "at 300 dots per inch"},
                 {"1000x1000", {7992, 7992}, "at 203 dots per inch, the most"}};
    for (const auto& c : cases) {
        answers()["Print preview"] = [&](CDialog& dialog) {
            (void)dialog.SendMessage(WM_COMMAND, IDC_PREVIEW_COPY);
            EXPECT_EQ(GetClipboardBitmapSize(), c.size);
            EXPECT_NE(dialog.GetDlgItemText(IDC_PREVIEW_STATUS).find(c.status), CString::npos)
                << dialog.GetDlgItemText(IDC_PREVIEW_STATUS);
        };
        CPrintInfo info;
        info.settings.paper = c.paper;
        EXPECT_TRUE(out.PreviewDlg(&info));
    }
}

TEST_F(PreviewTest, OpensAndClosesWithoutGrowthAndOneAtATime)
{
    const auto size = [] {
        long pages = 0;
        if (FILE* const file = std::fopen("/proc/self/statm", "r")) {
            (void)!std::fscanf(file, "%*d %ld", &pages);
            (void)std::fclose(file);
        }
        return pages * 4096;
    };
    int seen = 0;
    answers()["Print preview"] = [&](CDialog& dialog) {
        ++seen;
        *GetAPrinterAbort() = 5;
        EXPECT_FALSE(APrinter(nullptr).Preview(&out));
        EXPECT_EQ(*GetAPrinterAbort(), 5);
        // the window goes while it is shown
        if (seen == 60)
            (void)dialog.GetDlgItem(IDC_PREVIEW_WINDOW)->DestroyWindow();
    };
    long after = 0;
    for (int i = 0; i < 60; ++i) {
        EXPECT_TRUE(APrinter(nullptr).Preview(&out));
        if (i == 20)
            after = size();
    }
    EXPECT_EQ(seen, 60);
    EXPECT_LT(size() - after, 24 << 20);
}

TEST_F(PreviewTest, NoRoomIsOneMessageAndNoPreview)
{
    answers()["Print preview"] = [](CDialog&) { FAIL(); };
    out.SetMargins({20000, 0, 1000, 0});
    EXPECT_FALSE(APrinter(nullptr).Preview(&out));
    EXPECT_EQ(messages().size(), 1u);
}

}  // namespace pavane

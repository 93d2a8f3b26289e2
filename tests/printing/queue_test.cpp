#include "pavane/printing/print_dialogs.h"
#include "platform/controls.h"
#include "platform/message_scope.h"
#include "tests/platform/test_window.h"
#include "tests/printing/print_fixture.h"

#include <chrono>
#include <fstream>
#include <thread>

namespace pavane
{

namespace
{

/// A print system made of scripts, which note what they are given.
class QueueTest : public PrintTest
{
protected:
    QueueTest()
    {
        path = std::getenv("PATH");
        tools = folder + "-tools";
        std::filesystem::remove_all(tools);
        std::filesystem::create_directories(tools);
        (void)setenv("PATH", (tools + ":" + path).c_str(), 1);
        (void)setenv("CUPS_SERVER", (tools + "/none").c_str(), 1);
        script("lpoptions", "");
        list("echo 'system default destination: office'\n");
        script("lp", "for a; do [ -f \"$a\" ] && cp \"$a\" $0.pdf; done; echo \"$@\" > $0.args");
        window.CreateEx(0, "", "", WS_POPUP | WS_VISIBLE, {0, 0, 100, 100}, nullptr, 0);
        out.SetPrintWindow(&window);
    }
    ~QueueTest() override
    {
        (void)setenv("PATH", path.c_str(), 1);
        (void)unsetenv("CUPS_SERVER");
    }
    void script(const std::string& name, const std::string& lines) const
    {
        std::ofstream(tools + "/" + name) << "#!/bin/sh\n" << lines << "\n";
        std::filesystem::permissions(tools + "/" + name, std::filesystem::perms::owner_all);
    }
    void list(const std::string& first) const
    {
        script("lpstat", first + "echo 'office accepting requests since today'\n"
                                 "echo 'lab accepting requests since today'\n"
                                 "echo 'printer office is idle.  enabled since today'\n"
                                 "echo 'printer lab is idle.  enabled since today'");
    }
    std::string read(const std::string& name) const
    {
        std::ifstream file(tools + "/" + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string tools, path;
    PageWindow window;
    APrintOut out{"-t \"A\"\ntitle"};
};

/// Lets the dialog ask until it has so many printers.
int waitForPrinters(const CDialog& dialog, int count)
{
    const auto& names = dynamic_cast<CComboBox&>(*dialog.GetDlgItem(IDC_PRINT_NAME));
    for (int i = 0; i < 500 && names.GetCount() != count; ++i) {
        settle();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return names.GetCount();
}

}  // namespace

TEST_F(QueueTest, JobsGoToTheQueueOrAreOfferedAsAFile)
{
    const struct {
        const char* lp;
        int isDirect, isPrinted, messages;
    } cases[] = {{"", 1, 1, 0},
                 {"echo 'lp: out of toner' >&2; exit 1", 1, 0, 0},
                 {"", 0, 1, 0},
                 {"echo 'lp: out of toner' >&2; exit 1", 0, 0, 1}};
    answers()["Print"] = [](CDialog& dialog) {
        EXPECT_EQ(waitForPrinters(dialog, 3), 3);
        EXPECT_EQ(dialog.GetDlgItemText(IDC_PRINT_NAME), "office");
        EXPECT_FALSE(dynamic_cast<CButton&>(*dialog.GetDlgItem(IDC_PRINT_TO_FILE)).GetCheck());
        (void)dialog.SendMessage(WM_COMMAND, IDOK);
    };
    (void)SetMessageFunction([](const CString& text, unsigned type) {
        messages().push_back(text);
        return type & MB_YESNO ? IDYES : IDOK;
    });
    for (const auto& c : cases) {
        script("lp",
               c.lp[0]
                   ? c.lp
                   : "for a; do [ -f \"$a\" ] && cp \"$a\" $0.pdf; done; echo \"$@\" > $0.args");
        std::filesystem::remove(tools + "/lp.pdf");
        messages().clear();
        chosenFile() = folder + "/saved.pdf";
        std::filesystem::remove(chosenFile());
        CString error;
        CPrintSettings settings;
        settings.copies = 3;
        const int isPrinted = c.isDirect ? APrinter(nullptr).PrintDirect(out, settings, error)
                                         : APrinter(nullptr).Printing(&out);
        EXPECT_EQ(isPrinted, c.isPrinted) << error;
        EXPECT_EQ(static_cast<int>(messages().size()), c.messages);
        const std::string file = isPrinted ? tools + "/lp.pdf" : CString(chosenFile());
        if (isPrinted || !c.isDirect) {
            EXPECT_EQ(textsOf(file), std::vector<std::string>{"sheet1 Figure 7 ."});
        }
        if (isPrinted)
            EXPECT_NE(read("lp.args").find("-d office -t -t \"A\" title"), std::string::npos)
                << read("lp.args");
        else
            EXPECT_NE((error + (messages().empty() ? "" : messages()[0])).find("out of toner"),
                      CString::npos);
    }
}

TEST_F(QueueTest, TheDialogDoesNotWaitForASchedulerThatNeverAnswers)
{
    list("sleep 60\n");
    answers()["Print"] = [](CDialog& dialog) {
        EXPECT_EQ(waitForPrinters(dialog, 1), 1);
        EXPECT_EQ(dialog.GetDlgItemText(IDC_PRINT_NAME), "Print to file (PDF)");
        EXPECT_EQ(dialog.GetDlgItemText(IDC_PRINT_STATUS), "Asking for printers...");
        (void)dialog.SendMessage(WM_COMMAND, IDOK);
    };
    chosenFile() = folder + "/a.pdf";
    EXPECT_TRUE(APrinter(nullptr).Printing(&out));
    // the one that was printed on last has a line at once
    CWinApp app;
    app.PrintSettings().printer = "lab";
    answers()["Print"] = [](CDialog& dialog) {
        EXPECT_EQ(dialog.GetDlgItemText(IDC_PRINT_NAME), "lab");
    };
    EXPECT_FALSE(APrinter(&app).Printing(&out));
}

TEST_F(QueueTest, WindowsThatGoMeanwhileEndWhatTheyAreIn)
{
    list("exit 1\n");
    struct Case {
        const char* name;
        std::function<void(CWnd&, PageWindow&)> inDialog, inJob;
        int messages;
    };
    const Case cases[] = {
        {"frame in the dialog", [](CWnd& f, PageWindow&) { f.DestroyWindow(); }, {}, 1},
        {"window in the dialog", [](CWnd&, PageWindow& w) { w.DestroyWindow(); }, {}, 1},
        {"frame from a timer in the job", {}, [](CWnd& f, PageWindow&) { f.DestroyWindow(); }, 1},
        {"another job from a timer",
         {},
         [&](CWnd&, PageWindow&) { EXPECT_FALSE(APrinter(nullptr).Printing(&out)); },
         0},
    };
    for (const Case& c : cases) {
        struct Frame : TestWindow {
            std::function<void()> tick;
            void OnTimer(unsigned) override { tick(); }
        } frame;
        PageWindow page;
        page.pages = 12;
        page.CreateEx(0, "", "", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, &frame, 1);
        APrintOut job("job");
        job.SetPrintWindow(&page);
        int ticks = 0;
        bool inPage = false;
        frame.tick = [&] {
            ++ticks;
            EXPECT_FALSE(inPage) << c.name;
            if (ticks == 1 && c.inJob)
                c.inJob(frame, page);
        };
        (void)frame.SetTimer(1, 1);
        page.onPage = [&](CDC& dc, int) {
            inPage = true;
            const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(80);
            while (std::chrono::steady_clock::now() < until)
                dc.FillSolidRect({0, 0, 10, 10}, RGB(0, 0, 0));
            inPage = false;
        };
        answers()["Print"] = [&](CDialog& dialog) {
            const HWND self = dialog.GetSafeHwnd();
            if (c.inDialog)
                c.inDialog(frame, page);
            if (CWnd::FromHandle(self))
                (void)dialog.SendMessage(WM_COMMAND, IDOK);
        };
        messages().clear();
        chosenFile() = folder + "/job.pdf";
        const int isPrinted = APrinter(nullptr).Printing(&job);
        EXPECT_EQ(isPrinted, c.messages == 0) << c.name;
        EXPECT_LE(static_cast<int>(messages().size()), c.messages) << c.name;
        EXPECT_TRUE(!c.inJob || ticks > 0) << c.name;
        std::filesystem::remove(chosenFile());
        EXPECT_EQ(files(), std::vector<std::string>()) << c.name;
        EXPECT_TRUE(c.inDialog || static_cast<int>(messages().size()) == c.messages) << c.name;
    }
    answers()["Print preview"] = [&](CDialog& dialog) {
        window.DestroyWindow();
        (void)dialog.SendMessage(WM_COMMAND, IDC_PREVIEW_ZOOM_IN);
        (void)dialog.SendMessage(WM_COMMAND, IDC_PREVIEW_COPY);
    };
    EXPECT_TRUE(APrinter(nullptr).Preview(&out));
    EXPECT_FALSE(out.GetPrintWindow());
}

TEST(HandOutMessages, OneWindowIsHeardAndTheOthersWait)
{
    TestWindow heard;
    TestWindow other;
    for (TestWindow* const window : {&heard, &other}) {
        (void)window->SetTimer(1, 1);
        window->on[WM_USER + 1] = [=] { (void)window->PostMessage(WM_USER + 1); };
    }
    (void)other.PostMessage(WM_USER);
    (void)heard.PostMessage(WM_USER);
    for (int i = 0; i < 500 && !heard.count(WM_TIMER); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_TRUE(HandOutMessages(20, &heard));
    }
    EXPECT_GT(heard.count(WM_TIMER), 0);
    EXPECT_EQ(heard.count(WM_USER), 1);
    EXPECT_EQ(other.count(WM_USER) + other.count(WM_TIMER), 0);
    settle();
    EXPECT_EQ(other.count(WM_USER), 1);
    // a window that posts to itself holds nobody, and the end of the program is kept
    (void)heard.PostMessage(WM_USER + 1);
    EXPECT_TRUE(HandOutMessages(20));
    heard.on.clear();
    PostQuitMessage(3);
    EXPECT_FALSE(HandOutMessages(20));
    EXPECT_FALSE(HandOutMessages(20));
    MSG message;
    EXPECT_FALSE(GetMessage(message));
}

}  // namespace pavane

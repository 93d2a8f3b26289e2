#include "pavane/printing/print_dialogs.h"
#include "platform/controls.h"
#include "tests/platform/test_window.h"
#include "tests/printing/print_fixture.h"

namespace pavane
{

namespace
{

void press(CDialog& dialog, unsigned id)
{
    if (auto* const button = dynamic_cast<CButton*>(dialog.GetDlgItem(id));
        button && (id == IDC_PRINT_PAGES || id == IDC_PRINT_ALL || id == IDC_SETUP_LANDSCAPE))
        button->SetCheck(1);
    (void)dialog.SendMessage(WM_COMMAND, id);
}

void turnOn(CDialog& dialog, unsigned id, int on)
{
    dynamic_cast<CButton&>(*dialog.GetDlgItem(id)).SetCheck(on);
    (void)dialog.SendMessage(WM_COMMAND, id);
}

int isEnabled(const CDialog& dialog, unsigned id)
{
    return dialog.GetDlgItem(id)->IsWindowEnabled();
}
int isOn(const CDialog& dialog, unsigned id)
{
    return dynamic_cast<CButton&>(*dialog.GetDlgItem(id)).GetCheck();
}

class PrintDialogs : public PrintTest
{
protected:
    PrintDialogs()
    {
        frame.CreateEx(0, "frame", "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, {0, 0, 300, 300},
                       nullptr, 0);
        makeWindow();
        chosenFile() = folder + "/out.pdf";
    }
    void makeWindow()
    {
        window = std::make_unique<PageWindow>();
        window->CreateEx(0, "", "", WS_CHILD | WS_VISIBLE, {0, 0, 200, 200}, &frame, 5);
        out.SetPrintWindow(window.get());
    }
    int print()
    {
        const int isPrinted = APrinter(&app).Printing(&out);
        EXPECT_TRUE(frame.IsWindowEnabled());
        EXPECT_EQ(CWnd::FromHandle(window ? window->GetSafeHwnd() : 0), window.get());
        return isPrinted;
    }
    CWnd frame;
    CWinApp app;
    std::unique_ptr<PageWindow> window;
    APrintOut out{"A title"};
};

}  // namespace

TEST_F(PrintDialogs, TheRangeIsCheckedBeforeAnythingIsPrinted)
{
    constexpr const char* wrong =
        "This value is no within the page range.\nEnter a number between 1 and 5";
    const struct {
        int pages;
        const char *from, *to;
        const char* printed;
        int messages;
    } cases[] = {
        {0, "9", "2", "1 2 3 4 5 ", 0}, {1, "2", "3", "2 3 ", 0},
        {1, "2", "6", "", 1},           {1, "0", "6", "", 1},
        {1, "3", "2", "", 1},           {1, "", "4", "", 1},
        {1, "-1", "4", "", 1},          {1, "1", "99999999999999999999", "", 1},
        {1, "x", "4", "", 1},
    };
    window->pages = 5;
    for (const auto& c : cases) {
        std::string printed;
        window->onPage = [&](CDC&, int page) { printed += std::to_string(page) + " "; };
        answers()["Print"] = [&](CDialog& d) {
            EXPECT_EQ(d.GetDlgItemText(IDC_PRINT_ALL), "&All 5 pages");
            EXPECT_TRUE(isOn(d, IDC_PRINT_ALL) && isEnabled(d, IDC_PRINT_PAGES));
            EXPECT_FALSE(isEnabled(d, IDC_PRINT_SELECTION));
            d.SetDlgItemText(IDC_PRINT_FROM, c.from);
            d.SetDlgItemText(IDC_PRINT_TO, c.to);
            EXPECT_TRUE(isOn(d, IDC_PRINT_ALL)) << "nobody typed";
            press(d, c.pages ? IDC_PRINT_PAGES : IDC_PRINT_ALL);
            press(d, IDC_PRINT_PREVIEW);
            press(d, IDOK);
        };
        messages().clear();
        EXPECT_EQ(print(), c.messages == 0) << c.from;
        EXPECT_EQ(printed, c.printed) << c.from;
        // one for the preview, one for OK
        EXPECT_EQ(messages(),
                  std::vector<CString>(static_cast<std::size_t>(2 * c.messages), wrong));
    }
}

TEST_F(PrintDialogs, OtherPageCountsChangeTheControls)
{
    const struct {
        int before, after, pagesOn;
        const char *from, *to;
        const char *label, *newFrom, *newTo;
        int on, enabled, number;
    } cases[] = {
        {5, 3, 0, "1", "5", "&All 3 pages", "1", "3", 0, 1, 1},
        {5, 3, 1, "2", "3", "&All 3 pages", "2", "3", 1, 1, 1},
        {5, 3, 1, "4", "5", "&All 3 pages", "3", "3", 1, 1, 1},
        {5, 1, 1, "2", "4", "&All", "1", "1", 0, 0, 0},
        {1, 4, 0, "1", "1", "&All 4 pages", "1", "4", 0, 1, 1},
        {4, 0, 0, "1", "4", "&All", "1", "1", 0, 0, 0},
    };
    for (const auto& c : cases) {
        window->pages = c.before;
        answers()["Print"] = [&](CDialog& d) {
            press(d, c.pagesOn ? IDC_PRINT_PAGES : IDC_PRINT_ALL);
            d.SetDlgItemText(IDC_PRINT_FROM, c.from);
            d.SetDlgItemText(IDC_PRINT_TO, c.to);
            window->pages = c.after;
            press(d, ID_PRINT_COUNT_AGAIN);
            EXPECT_EQ(d.GetDlgItemText(IDC_PRINT_ALL), c.label);
            EXPECT_EQ(d.GetDlgItemText(IDC_PRINT_FROM), c.newFrom);
            EXPECT_EQ(d.GetDlgItemText(IDC_PRINT_TO), c.newTo);
            EXPECT_EQ(isOn(d, IDC_PRINT_PAGES), c.on) << c.before << c.after;
            EXPECT_EQ(isOn(d, IDC_PRINT_ALL), !c.on);
            EXPECT_EQ(isEnabled(d, IDC_PRINT_TO), c.enabled);
            EXPECT_EQ(isEnabled(d, IDC_PRINT_FROM_LABEL), c.enabled);
            EXPECT_EQ(isOn(d, IDC_PRINT_NUMBER_ON), c.number);
            EXPECT_EQ(isEnabled(d, IDC_PRINT_NUMBER), c.number);
        };
        EXPECT_FALSE(print());
    }
    EXPECT_EQ(files(), std::vector<std::string>());
}

TEST_F(PrintDialogs, CaptionNumberAndPaperAreChosenAndKept)
{
    window->pages = 2;
    const CString longCaption = CString(300, 'x') + " 50% of %s & ~U";
    answers()["Subscript"] = [&](CDialog& d) {
        EXPECT_EQ(d.GetDlgItemText(IDC_PRINT_EDIT), "Figure 7 ~C.");
        d.SetDlgItemText(IDC_PRINT_EDIT, longCaption);
        press(d, IDOK);
    };
    int tries = 0;
    answers()["Page number"] = [&](CDialog& d) {
        for (const char* const text : {"0", "100000", "", "x", "41"}) {
            d.SetDlgItemText(IDC_PRINT_EDIT, text);
            ++tries;
            press(d, IDOK);
        }
    };
    answers()["Page setup"] = [&](CDialog& d) {
        EXPECT_FALSE(isEnabled(d, IDC_SETUP_PRINTER));
        const struct {
            unsigned id;
            const char* text;
        } refused[] = {{IDC_SETUP_LEFT, "abc"},
                       {IDC_SETUP_LEFT, "-1"},
                       {IDC_SETUP_TOP, "280"},
                       {IDC_SETUP_BOTTOM, "1e308"}};
        for (const auto& r : refused) {
            const CString before = d.GetDlgItemText(r.id);
            d.SetDlgItemText(r.id, r.text);
            press(d, IDOK);
            d.SetDlgItemText(r.id, before);
        }
        auto& list = dynamic_cast<CComboBox&>(*d.GetDlgItem(IDC_SETUP_PAPER));
        (void)list.SetCurSel(list.GetCount() - 1);
        (void)d.SendMessage(WM_COMMAND, IDC_SETUP_PAPER | CBN_SELCHANGE << 16);
        d.SetDlgItemText(IDC_SETUP_WIDTH, "2001");
        press(d, IDOK);
        d.SetDlgItemText(IDC_SETUP_WIDTH, "120.5");
        d.SetDlgItemText(IDC_SETUP_HEIGHT, "150");
        press(d, IDC_SETUP_LANDSCAPE);
        d.SetDlgItemText(IDC_SETUP_LEFT, "12.34");
        press(d, IDOK);
    };
    answers()["Print"] = [&](CDialog& d) {
        const int asked = window->askedTimes;
        press(d, IDC_PRINT_PAGE_SETUP);
        EXPECT_GT(window->askedTimes, asked);
        turnOn(d, IDC_PRINT_SUBSCRIPT_ON, 0);
        EXPECT_FALSE(isEnabled(d, IDC_PRINT_SUBSCRIPT));
        turnOn(d, IDC_PRINT_SUBSCRIPT_ON, 1);
        press(d, IDC_PRINT_SUBSCRIPT);
        press(d, IDC_PRINT_NUMBER);
        turnOn(d, IDC_PRINT_NUMBER_ON, 0);
        press(d, IDOK);
    };
    EXPECT_TRUE(print());
    EXPECT_EQ(tries, 5);
    EXPECT_EQ(messages().size(), 9u);
    const APrnAddInfo& kept = out.GetAddInfo();
    EXPECT_EQ(kept.subscriptFormat, longCaption);
    EXPECT_EQ(kept.firstNumber * 10 + kept.pageNumber, 410);
    EXPECT_EQ(out.GetMargins(), CRect(1234, 1000, 1000, 1000));
    const auto size = outputOf("pdfinfo '" + folder + "/out.pdf' | grep 'Page size'");
    EXPECT_NE(size.find("425.197 "), std::string::npos) << size;
    EXPECT_NE(size.find(" 341.575 "), std::string::npos) << size;
    // another program, another print-out
    CWinApp next;
    APrintOut fresh("fresh");
    fresh.SetPrintWindow(window.get());
    answers()["Print"] = [](CDialog& d) { press(d, IDOK); };
    EXPECT_TRUE(APrinter(&next).Printing(&fresh));
    EXPECT_EQ(fresh.GetMargins(), CRect(1234, 1000, 1000, 1000));
    EXPECT_EQ(outputOf("pdfinfo '" + folder + "/out.pdf' | grep 'Page size'"), size);
}

TEST_F(PrintDialogs, ProfilesThatAreNoneAreNotBelieved)
{
    for (const char* const text : {"", "abc", "1,2,3", "1,2,3,4,5", "-1,0,0,0", "nan,1,1,1"}) {
        (void)WriteProfileString("Printing", "Margins", text);
        (void)WriteProfileString("Printing", "Paper", text);
        (void)WriteProfileString("Printing", "Landscape", text);
        APrintOut fresh("fresh");
        fresh.SetPrintWindow(window.get());
        answers()["Print"] = [](CDialog& d) { press(d, IDOK); };
        EXPECT_TRUE(APrinter(nullptr).Printing(&fresh)) << text;
        EXPECT_EQ(fresh.GetMargins(), standardMargins) << text;
    }
    EXPECT_EQ(messages(), std::vector<CString>());
}

TEST_F(PrintDialogs, CancelEndsAJobAtEveryStepAndLeavesNothing)
{
    struct Case {
        const char* name;
        std::function<void()> spoil;
        int messages;
    };
    const Case cases[] = {
        {"dialog", [] { answers().clear(); }, 0},
        {"file", [] { chosenFile().clear(); }, 0},
        {"page", [&] { window->onPage = [](CDC&, int p) { *GetAPrinterAbort() = p == 3; }; }, 0},
        {"box",
         [&] {
             window->onPage = [&](CDC&, int) {
                 EXPECT_FALSE(frame.IsWindowEnabled());
                 CWnd* const box =
                     CWnd::GetFocus() ? CWnd::GetFocus()->GetTopLevelParent() : nullptr;
                 if (box && box != &frame)
                     (void)box->PostMessage(WM_COMMAND, IDCANCEL);
                 else
                     *GetAPrinterAbort() = 1;
             };
         },
         0},
        {"folder", [&] { chosenFile() = "/nowhere/a.pdf"; }, 1},
        {"margins",
         [&] {
             out.SetMargins({0, 20000, 0, 20000});
         },
         1},
        {"window",
         [&] {
             out.SetMargins(standardMargins);
             (void)PostMessage(window->GetSafeHwnd(), WM_USER, 0, 0);
             window->onPage = [&](CDC&, int p) {
                 if (p == 2)
                     (void)window->DestroyWindow();
             };
         },
         1},
    };
    for (const Case& c : cases) {
        makeWindow();
        window->pages = 4;
        answers()["Print"] = [](CDialog& d) { press(d, IDOK); };
        chosenFile() = folder + "/out.pdf";
        messages().clear();
        c.spoil();
        EXPECT_FALSE(APrinter(&app).Printing(&out)) << c.name;
        EXPECT_EQ(static_cast<int>(messages().size()), c.messages) << c.name;
        EXPECT_EQ(files(), std::vector<std::string>()) << c.name;
        EXPECT_TRUE(frame.IsWindowEnabled()) << c.name;
    }
}

TEST_F(PrintDialogs, HostsShowATemplateOfTheirOwn)
{
    static constexpr DlgItem items[] = {
        {ControlKind::radioButton, IDC_PRINT_ALL, "&All", 0, 0, 50, 10, WS_TABSTOP | WS_GROUP},
        {ControlKind::defaultButton, IDOK, "OK", 0, 20, 50, 14, WS_TABSTOP}};
    static constexpr DlgTemplate dialogs[] = {{IDD_PRINT, "Ours", 80, 40, items, 2},
                                              {IDD_PRINT_NUMBER, "No", 80, 40, items, 2}};
    SetPrinterResource({nullptr, 0, dialogs, 2});
    int numbers = 0;
    answers()["Ours"] = [&](CDialog& d) {
        press(d, IDC_PRINT_NUMBER);
        press(d, IDOK);
    };
    answers()["Page number"] = [&](CDialog&) { ++numbers; };
    EXPECT_TRUE(print());
    EXPECT_EQ(numbers, 1);
    SetPrinterResource({});
    answers()["Print"] = answers()["Ours"];
    EXPECT_TRUE(print());
}

}  // namespace pavane

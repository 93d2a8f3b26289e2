#include "platform/property_sheet.h"
#include "platform/qt/command_frame.h"
#include "platform/qt/press_keys.h"

namespace pavane
{

namespace
{

constexpr DlgItem items[] = {
    {ControlKind::staticText, 1, "&Start:", 5, 7, 30, 10},
    {ControlKind::edit, 11, "", 40, 5, 50, 12, WS_TABSTOP},
    {ControlKind::pushButton, 12, "S&tep", 5, 22, 50, 14, WS_TABSTOP},
};
constexpr DlgTemplate small{9300, "Small", 120, 60, items, 3};
constexpr DlgTemplate large{9301, "&Large", 220, 40, items, 3};

/// Notes what it is told, as "name:event"; answers 0 to what `refuses` names.
struct Page : CPropertyPage {
    Page(const DlgTemplate& page, const CString& caption, CString& log)
        : CPropertyPage(page, caption), log_(log)
    {
    }
    int note(const char* event)
    {
        log_ += (log_.empty() ? "" : " ") + caption().substr(1) + ":" + event;
        if (act && at == event)
            act();
        return refuses != event;
    }
    int OnInitDialog() override { return note("init"); }
    int OnSetActive() override { return note("on"); }
    int OnKillActive() override { return note("off"); }
    int OnApply() override { return note("apply"); }
    void OnReset() override { (void)note("reset"); }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (code == EN_CHANGE)
            SetModified();
        if (id == 12)
            (void)note("step");
        return CPropertyPage::OnCommand(id, code, control);
    }
    CString refuses, at;
    std::function<void()> act;
    CString& log_;
};

struct Sheet {
    explicit Sheet(CWnd* parent) : sheet("Times", parent)
    {
        for (Page* const page : {&one, &two, &three})
            EXPECT_TRUE(sheet.AddPage(*page));
    }
    CString log;
    Page one{small, "&X", log}, two{large, "&B", log}, three{small, "&C", log};
    CPropertySheet sheet;
};

}  // namespace

TEST(PropertySheet, IsUsedByKeysAlone)
{
    CommandFrame frame;
    const struct {
        const char *name, *keys;
        const char *refusing, *refuses;  // a page, and what it refuses
        int result;
        const char* log;
    } rows[] = {
        {"enter in an edit", "Return", "", "", IDOK, "X:init X:on X:off X:apply"},
        {"escape", "Esc", "", "", IDCANCEL, "X:init X:on X:reset"},
        {"round", "Ctrl+Tab Ctrl+PgDown Ctrl+Tab Return", "", "", IDOK,
         "X:init X:on X:off B:init B:on B:off C:init C:on C:off X:on X:off X:apply B:apply "
         "C:apply"},
        {"back", "Ctrl+Shift+Backtab Ctrl+PgUp Esc", "", "", IDCANCEL,
         "X:init X:on X:off C:init C:on C:off B:init B:on X:reset B:reset C:reset"},
        {"letters", "Alt+B Alt+T Alt+X Esc", "", "", IDCANCEL,
         "X:init X:on X:off B:init B:on B:step B:off X:on X:reset B:reset"},
        {"typed and applied", "5 Alt+A Esc", "", "", IDCANCEL, "X:init X:on X:off X:apply X:reset"},
        {"nothing to apply", "Alt+A Esc", "", "", IDCANCEL, "X:init X:on X:reset"},
        {"stays", "Ctrl+Tab Return Esc", "X", "off", IDCANCEL, "X:init X:on X:off X:off X:reset"},
        {"refuses OK", "Ctrl+Tab Return Esc", "X", "apply", IDCANCEL,
         "X:init X:on X:off B:init B:on B:off X:apply X:on X:reset B:reset"},
        {"is passed over", "Ctrl+Tab Return", "B", "on", IDOK,
         "X:init X:on X:off B:init B:on C:init C:on C:off X:apply B:apply C:apply"},
        {"does not begin", "Esc", "X", "on", IDCANCEL, "X:init X:on B:init B:on X:reset B:reset"},
        {"a button by the Tab key", "Tab Tab Tab Return", "", "", IDCANCEL, "X:init X:on X:reset"},
    };
    for (const auto& row : rows) {
        Sheet s(&frame);
        for (Page* const page : {&s.one, &s.two, &s.three})
            if (page->caption().substr(1) == row.refusing)
                page->refuses = row.refuses;
        pressKeys(row.keys);
        EXPECT_EQ(s.sheet.DoModal(), row.result) << row.name;
        EXPECT_EQ(s.log, row.log) << row.name;
        EXPECT_TRUE(QTest::qWaitForWindowActive(outerOfWindow(frame))) << row.name;
    }
}

TEST(PropertySheet, IsAnsweredByATest)
{
    CommandFrame frame;
    Sheet s(&frame);
    EXPECT_FALSE(s.sheet.AddPage(s.one));  // is there already
    EXPECT_TRUE(s.sheet.SetActivePage(1));
    SetDialogAnswer([](CDialog& dialog) {
        auto& sheet = dynamic_cast<CPropertySheet&>(dialog);
        EXPECT_FALSE(sheet.AddPage(*sheet.GetPage(0)));
        EXPECT_EQ(sheet.GetActiveIndex(), 1);
        EXPECT_EQ(sheet.GetPage(2)->GetSafeHwnd(), HWND{0});
        EXPECT_FALSE(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled());
        sheet.GetActivePage()->SetDlgItemText(11, "7");
        EXPECT_TRUE(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled());
        EXPECT_TRUE(sheet.SetActivePage(0));
        EXPECT_FALSE(sheet.SetActivePage(3));
        sheet.SendMessage(WM_COMMAND, ID_APPLY_NOW);
        EXPECT_FALSE(sheet.GetDlgItem(ID_APPLY_NOW)->IsWindowEnabled());
        return static_cast<int>(sheet.SendMessage(WM_COMMAND, IDOK));
    });
    EXPECT_EQ(s.sheet.DoModal(), IDOK);
    EXPECT_EQ(s.log, "B:init B:on B:off X:init X:on X:off X:apply B:apply X:off X:apply B:apply");
    SetDialogAnswer(nullptr);
}

TEST(PropertySheet, OutlivesWhatItsPagesDo)
{
    CommandFrame frame;
    for (const char* const event : {"init", "on", "off", "apply", "reset"})
        for (const int isDeleted : {0, 1}) {
            CString log;
            auto one = std::make_unique<Page>(small, "&X", log);
            auto two = std::make_unique<Page>(large, "&B", log);
            auto sheet = std::make_unique<CPropertySheet>("Times", &frame);
            sheet->AddPage(*one);
            sheet->AddPage(*two);
            two->at = event;
            two->act = [&] { isDeleted ? sheet.reset() : (void)sheet->DestroyWindow(); };
            const bool isCancelled = two->at == "reset";
            pressKeys(isCancelled                                          ? "Ctrl+Tab Esc"
                      : event == CString("on") || event == CString("init") ? "Ctrl+Tab"
                                                                           : "Ctrl+Tab Return");
            EXPECT_EQ(sheet->DoModal(), -1) << event;
            EXPECT_EQ(!sheet, isDeleted) << event;
        }
}

}  // namespace pavane

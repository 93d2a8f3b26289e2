#include "pavane/dialogs/ATimeIntervalPresent.h"
#include "pavane/dialogs/values/time_texts.h"
#include "pavane/resources/resource_ids.h"
#include "platform/message.h"
#include "platform/qt/press_keys.h"
#include "platform/up_down.h"

#include <functional>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

CString messages;
std::function<void(CDialog&)> answers;

AUVXTIntervalPM hour(double interval = 1000, int everyPoint = 0)
{
    AUVXTIntervalPM pm;
    pm.infoStart = 60;
    pm.infoStop = 7200;
    pm.infoInterval = 10.5;
    pm.stop = 3600;
    pm.interval = interval;
    pm.everyPoint = everyPoint;
    return pm;
}

CString asText(const AUVXTIntervalPM& pm)
{
    return timeText(pm.start, 0) + " " + timeText(pm.stop, 0) + " " + timeText(pm.interval, 0) +
           " " + std::to_string(pm.everyPoint);
}

/// A sheet with the page on it, and what a test asks of the page while it is open.
struct PageSheet : testing::Test {
    PageSheet()
    {
        messages.clear();
        SetMessageFunction([](const CString& text, unsigned) { return messages += text, IDOK; });
        SetDialogAnswer([](CDialog& dialog) {
            const auto answer = answers;  // which may ask for another dialog
            answer(dialog);
            return 0;
        });
    }
    ~PageSheet() override
    {
        SetMessageFunction(nullptr);
        SetDialogAnswer(nullptr);
    }
    void open(const std::function<void()>& act, ATimeIntervalPresent& shown)
    {
        CPropertySheet sheet("Step");
        ASSERT_TRUE(sheet.AddPage(shown));
        answers = [&](CDialog&) { act(); };
        (void)sheet.DoModal();
    }
    void open(const std::function<void()>& act) { open(act, page); }
    CString text(unsigned id) { return page.GetDlgItemText(id); }
    /// Start, stop and interval, then those of the data.
    CString texts()
    {
        CString all;
        for (unsigned id = IDC_TIME_START; id <= IDC_TIME_INFO_INTERVAL; ++id)
            all += (id == IDC_TIME_START ? "" : id == IDC_TIME_INFO_START ? " | " : " ") + text(id);
        return all;
    }
    CButton& button(unsigned id) { return *dynamic_cast<CButton*>(page.GetDlgItem(id)); }
    void click(unsigned id)
    {
        auto& pressed = button(id);
        if (id == IDC_TIME_EVERY_POINT || id == IDC_TIME_CLOCK || id == IDC_TIME_SECONDS)
            pressed.SetCheck(id != IDC_TIME_EVERY_POINT || !pressed.GetCheck());
        page.SendMessage(WM_COMMAND, id);
    }
    ATimeIntervalPresent page{IDD_TIME_INTERVALS, IDS_TIME_INTERVALS};
};

const CString clocks = "00:00:00 01:00:00 00:16:40 | 00:01:00 02:00:00 00:00:10.5";
const CString seconds = "0 3600 1000 | 60 7200 10.5";

}  // namespace

TEST_F(PageSheet, OpensAsClockAndChangesForms)
{
    page.SetParameters(hour());
    page.showAsClock = 0;
    EXPECT_EQ(page.caption(), "Time Intervals");
    open([&] {
        EXPECT_EQ(texts(), clocks);
        EXPECT_EQ(button(IDC_TIME_SECONDS).GetCheck() * 2 + button(IDC_TIME_CLOCK).GetCheck(), 2);
        EXPECT_EQ(text(IDC_TIME_COUNT_TEXT), "4 intervals, the last one shorter");
        click(IDC_TIME_SECONDS);  // in force already
        EXPECT_EQ(texts(), clocks);
        EXPECT_TRUE(page.SaveTime());  // what stands there is still read as clock text
        EXPECT_EQ(asText(page.GetParameters()), "0 3600 1000 0");
        page.SetParameters(hour());
        EXPECT_EQ(texts(), seconds);
        click(IDC_TIME_CLOCK);
        EXPECT_EQ(texts(), clocks.substr(0, 29) + seconds.substr(14));
        EXPECT_EQ(page.showAsClock, 1);
        page.SetDlgItemText(IDC_TIME_STOP, "abc");
        click(IDC_TIME_SECONDS);
        EXPECT_EQ(texts(), "0 abc 1000" + seconds.substr(11));
        EXPECT_EQ(text(IDC_TIME_COUNT_TEXT), "");
    });
    page.SetParameters(hour(0, 7));
    open([&] {
        for (const int isOn : {1, 0, 1}) {
            EXPECT_EQ(button(IDC_TIME_EVERY_POINT).GetCheck(), isOn);
            EXPECT_EQ(page.GetDlgItem(IDC_TIME_INTERVAL)->IsWindowEnabled(), !isOn);
            EXPECT_EQ(button(IDC_TIME_SET_INTERVALS).IsWindowEnabled(), !isOn);
            click(IDC_TIME_EVERY_POINT);
        }
    });
    EXPECT_EQ(messages, "");
}

TEST_F(PageSheet, SavesOrSaysWhy)
{
    const struct {
        const char* texts[3];
        int everyPoint;
        const char* message;
        unsigned focus;
    } rows[] = {
        {{"00:10:00", "1:00:00", "0:0:30"}, 0, "", 0},
        {{"0:0:0", "1:0:0", "0:0:0"}, 1, "", 0},
        {{"0:0:0", "1:0:0", "5 s"}, 0, "Invalid time interval.", IDC_TIME_INTERVAL},
        {{"1:0:0", "1:0:0", "0:1:0"}, 0, "Start time must be <= stop time.", IDC_TIME_STOP},
        {{"2:0:0", "3:0:0", "0:1:0"}, 0, "Invalid start time.", IDC_TIME_START},
    };
    for (const auto& row : rows) {
        page.SetParameters(hour());
        messages.clear();
        open([&] {
            for (unsigned i = 0; i < 3; ++i)
                page.SetDlgItemText(IDC_TIME_START + i, row.texts[i]);
            if (row.everyPoint)
                click(IDC_TIME_EVERY_POINT);
            const CString before = asText(page.pm);
            page.GetSheet()->SendMessage(WM_COMMAND, ID_APPLY_NOW);  // once only
            EXPECT_EQ(messages, row.message);
            EXPECT_EQ(asText(page.pm) == before, row.focus != 0);
            if (!row.focus)
                return;
            int first = 0;
            int last = 0;
            auto& edit = *dynamic_cast<CEdit*>(page.GetDlgItem(row.focus));
            edit.GetSel(first, last);
            EXPECT_TRUE(first == 0 && last == static_cast<int>(edit.GetWindowText().size()));
            EXPECT_EQ(CWnd::GetFocus(), &edit);
            EXPECT_FALSE(page.SaveTime());
        });
    }
    ATimeIntervalPresent unseen(IDD_TIME_INTERVALS_NARROW, 0);
    EXPECT_FALSE(unseen.SaveTime());  // there is no time in it
    unseen.SetParameters(hour(1.0 / 3));
    EXPECT_TRUE(unseen.SaveTime());
    EXPECT_EQ(asText(unseen.pm), asText(hour(1.0 / 3)));
}

TEST_F(PageSheet, SetsIntervalsByTheirCount)
{
    const struct {
        const char *count, *interval;  // "": the dialog stays
        int asClock;
    } rows[] = {{"4", "00:15:00", 1}, {"4", "900", 0}, {"1000000", "0.0036", 0},
                {"0", "", 1},         {"", "", 0},     {"2147483648", "", 1}};
    for (const auto& row : rows) {
        page.SetParameters(hour());
        page.showAsClock = 1;
        open([&] {
            if (!row.asClock)
                click(IDC_TIME_SECONDS);
            answers = [&](CDialog& dialog) {
                EXPECT_EQ(dialog.GetDlgItemText(IDC_TIME_COUNT), "4");
                int least = 0;
                int most = 0;
                dynamic_cast<CUpDownCtrl*>(dialog.GetDlgItem(IDC_TIME_COUNT_ARROWS))
                    ->GetRange(least, most);
                EXPECT_TRUE(least == 1 && most == 1000000);
                dialog.SetDlgItemText(IDC_TIME_COUNT, row.count);
                dialog.SendMessage(WM_COMMAND, IDOK);
                EXPECT_EQ(dialog.GetDlgItemText(IDC_TIME_COUNT_NOTE),
                          *row.interval ? CString("each ") + row.interval
                                        : "a whole number from 1 to 1000000");
            };
            click(IDC_TIME_SET_INTERVALS);
            const CString before = row.asClock ? "00:16:40" : "1000";
            EXPECT_EQ(text(IDC_TIME_INTERVAL), *row.interval ? row.interval : before) << row.count;
        });
    }
    page.SetParameters(hour(0));
    open([&] {
        answers = [](CDialog&) { ADD_FAILURE(); };
        click(IDC_TIME_SET_INTERVALS);
    });
    EXPECT_EQ(messages, "Time interval can not be equevalence 0.");
}

TEST_F(PageSheet, DefaultIsTheHosts)
{
    struct HostPage : ATimeIntervalPresent {
        using ATimeIntervalPresent::ATimeIntervalPresent;
        void Default(double& start, double& stop, double& interval) override
        {
            EXPECT_EQ(asText({}) + timeText(start + stop + interval, 0), "0 0 0 17270.5");
            interval = 30;
        }
    } host(IDD_TIME_INTERVALS_NARROW, IDS_TIME_INTERVALS);
    host.SetParameters(hour());
    open(
        [&] {
            host.SendMessage(WM_COMMAND, IDC_TIME_DEFAULT);
            EXPECT_EQ(host.GetDlgItemText(IDC_TIME_INTERVAL), "00:00:30");
        },
        host);
}

TEST_F(PageSheet, IsAskedByKeysAlone)
{
    SetDialogAnswer(nullptr);
    const struct {
        const char *name, *keys;
        int isTaken;
        const char *record, *message;
    } rows[] = {
        {"accepts", "Return", 1, "0 3600 1000 0", ""},
        {"gives up", "'0:10:0' Esc", 0, "0 3600 1000 0", ""},
        {"types", "'0:10:0' Tab '0:20:0' Return", 1, "600 1200 1000 0", ""},
        {"applies, then gives up", "'0:10:0' Alt+A '0:20:0' Esc", 1, "600 3600 1000 0", ""},
        {"counts", "Tab Tab Tab Tab Space Up Up Return Backtab Return", 1, "0 3600 600 0", ""},
        {"every point", "Tab Tab Tab Space Return", 1, "0 3600 1000 1", ""},
        {"in seconds",
         "Tab Tab Tab Tab Tab Tab Down Backtab Backtab Backtab Backtab Backtab "
         "'1800' Return",
         1, "0 1800 1000 0", ""},
        {"default", "Tab Tab Tab Tab Tab Space Backtab Backtab Return", 1, "60 7200 10.5 0", ""},
        {"is refused and mends it", "Tab 'x' Return '0:30:0' Return", 1, "0 1800 1000 0",
         "Invalid stop time."},
    };
    for (const auto& row : rows) {
        AUVXTIntervalPM pm = hour();
        messages.clear();
        pressKeys(row.keys);
        EXPECT_EQ(AskTimeInterval(nullptr, pm), row.isTaken) << row.name;
        EXPECT_EQ(asText(pm), row.record) << row.name;
        EXPECT_EQ(messages, row.message) << row.name;
    }
}

}  // namespace pavane

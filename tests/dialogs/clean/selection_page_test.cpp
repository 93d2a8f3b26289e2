#include "dialogs/template_checks.h"
#include "pavane/dialogs/clean/ACleanSelectionPage.h"
#include "pavane/resources/selection_dialog.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/qt/press_keys.h"

#include <functional>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

CString messages;
std::function<void()> answer;

ACleanSelectionPM four()
{
    ACleanSelectionPM pm;
    pm.forms = polarisationForms({"RR", "LL"});
    AUVXFreqs freqs;
    freqs.ifs.resize(4);
    pm.frequencies = AUVXFqTbl(8.4e9, 1, 1, {freqs});
    pm.infoStart = 3600;
    pm.infoStop = 7200;
    return pm;
}

std::string asText(const ACleanSelectionPM& pm)
{
    std::string text;
    for (const RecordEntry& entry : pm.entries())
        text += (text.empty() ? "" : " ") + entry.text;
    return text;
}

struct SelectionPage : testing::Test {
    SelectionPage()
    {
        messages.clear();
        SetMessageFunction([](const CString& text, unsigned) { return messages += text, IDOK; });
    }
    ~SelectionPage() override { SetMessageFunction(nullptr); }
};

}  // namespace

TEST_F(SelectionPage, IsAskedByKeysAlone)
{
    EXPECT_EQ(doubleMnemonics(cleanSelectionPage, "a"), "");
    EXPECT_EQ(collisionsWhenGrown(cleanSelectionPage, cleanSelectionResize), "");
    const struct {
        const char *name, *keys;
        int isTaken;
        const char *record, *message;
    } rows[] = {
        {"accepts", "Return", 1, "mean 1;2;3;4 0 0", ""},
        {"gives up", "Down Esc", 0, "mean  0 0", ""},
        {"one hand, times", "Down Down Tab '1:10:00' Tab '1:50:00' Return", 1,
         "RR 1;2;3;4 4200 6600", ""},
        {"whole time again", "Alt+S '1:10:00' Alt+W Return", 1, "mean 1;2;3;4 0 0", ""},
        {"all in one", "Alt+O Return", 1, "mean 1-4 0 0", ""},
        {"two marked, grouped by the button", "Alt+I Shift+Right Space Alt+G Return", 1,
         "mean 1-2;3;4 0 0", ""},
        {"two groups of one IF are refused", "Alt+I Shift+Right Space Ins Return Alt+O Return", 1,
         "mean 1-4 0 0", "IF 1 is in two groups. Here an IF can be in one only."},
        {"gives up in the table", "Alt+I Space Esc", 0, "mean  0 0", ""},
        {"through the table by Tab", "Tab Tab Tab Tab Shift+Right Space Tab Space Return", 1,
         "mean 1-2;3;4 0 0", ""},
        {"back by Backtab", "Alt+I Backtab Backtab '1:50:00' Return", 1, "mean 1;2;3;4 3600 6600",
         ""},
        {"undone", "Alt+O Alt+I Ctrl+Z Return", 1, "mean 1;2;3;4 0 0", ""},
        {"one left out", "Alt+I Right Right Alt+D Return", 1, "mean 1;2;4 0 0", ""},
        {"end before start is mended", "Alt+N '0:30:00' Return '1:30:00' Return", 1,
         "mean 1;2;3;4 3600 5400", "The end has to lie behind the start."},
    };
    for (const auto& row : rows) {
        ACleanSelectionPM pm = four();
        messages.clear();
        pressKeys(row.keys);
        EXPECT_EQ(AskCleanSelection(nullptr, pm), row.isTaken) << row.name;
        EXPECT_EQ(asText(pm), row.record) << row.name;
        EXPECT_EQ(messages, row.message) << row.name;
    }
}

TEST_F(SelectionPage, ShowsWhatFollows)
{
    ACleanSelectionPage page;
    page.SetParameters(four());
    CPropertySheet sheet("Step");
    ASSERT_TRUE(sheet.AddPage(page));
    answer = [&] {
        EXPECT_EQ(page.GetDlgItemText(IDC_SELECT_SPAN_TEXT), "data: 01:00:00 to 02:00:00");
        EXPECT_FALSE(page.GetDlgItem(IDC_SELECT_ADD)->IsWindowEnabled());
        page.table().ChangeState(2);
        EXPECT_TRUE(page.GetDlgItem(IDC_SELECT_ADD)->IsWindowEnabled());
        EXPECT_TRUE(page.table().DeleteFreqGroup(3));
        EXPECT_EQ(page.GetDlgItemText(IDC_SELECT_USED_TEXT), "IF 4 is in no group and not used.");
        EXPECT_EQ(page.GetDlgItemText(IDC_SELECT_BEAM_TEXT).substr(0, 10), "A new beam");
        // another record while it is shown, of fewer IFs
        ACleanSelectionPM other = four();
        other.frequencies = AUVXFqTbl();
        page.SetParameters(other);
        EXPECT_EQ(page.GetDlgItemText(IDC_SELECT_USED_TEXT), "All IFs are used.");
        EXPECT_FALSE(page.GetDlgItem(IDC_SELECT_ONE)->IsWindowEnabled());
        EXPECT_TRUE(page.SaveForm());
    };
    SetDialogAnswer([](CDialog&) { return answer(), 0; });
    (void)sheet.DoModal();
    SetDialogAnswer(nullptr);
    EXPECT_EQ(asText(page.GetParameters()), "mean  0 0");
}

}  // namespace pavane

#include "dialogs/template_checks.h"
#include "pavane/dialogs/ACleanParameterPage.h"
#include "pavane/dialogs/ASelfCalPage.h"
#include "pavane/dialogs/selfcal_dialog.h"
#include "pavane/resources/clean_dialogs.h"
#include "pavane/resources/gain_dialog.h"
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
std::function<void(CDialog&)> answers;

/// The fields of a record that differ from those of another.
template <typename Record>
std::string differences(const Record& before, const Record& after)
{
    const std::vector<RecordEntry> old = before.entries(), now = after.entries();
    std::string text;
    for (std::size_t i = 0; i < now.size(); ++i)
        if (now[i].text != old[i].text)
            text += (text.empty() ? "" : " ") + now[i].key.substr(3) + "=" + now[i].text;
    return text;
}

struct CleanPages : testing::Test {
    CleanPages()
    {
        messages.clear();
        SetMessageFunction([](const CString& text, unsigned) { return messages += text, IDOK; });
    }
    ~CleanPages() override
    {
        SetMessageFunction(nullptr);
        SetDialogAnswer(nullptr);
    }
    /// Opens a sheet with the page, does something in it, and closes it.
    void open(CPropertyPage& page, const std::function<void()>& act)
    {
        CPropertySheet sheet("Step");
        ASSERT_TRUE(sheet.AddPage(page));
        answers = [&](CDialog&) { act(); };
        SetDialogAnswer([](CDialog& dialog) { return answers(dialog), 0; });
        (void)sheet.DoModal();
        SetDialogAnswer(nullptr);
    }
};

ACleanParameterPM clean()
{
    ACleanParameterPM pm;
    pm.greatestUv = 2e8;
    pm.parameters.cell = 0.1;
    return pm;
}

ASelfCalPM selfCal()
{
    ASelfCalPM pm;
    pm.antennas = {"EF", "LA", "PT"};
    pm.references = {"LA"};
    pm.leastAntennas = 3;
    return pm;
}

}  // namespace

TEST_F(CleanPages, HaveLettersOfTheirOwnAndGrow)
{
    EXPECT_EQ(doubleMnemonics(cleanParameterPage, "a"), "");  // Apply
    EXPECT_EQ(doubleMnemonics(selfCalPage, "a"), "");
    EXPECT_EQ(doubleMnemonics(gainWriteDialog), "");
    EXPECT_EQ(doubleMnemonics(gainReadDialog), "");
    EXPECT_EQ(collisionsWhenGrown(cleanParameterPage, cleanParameterResize), "");
    EXPECT_EQ(collisionsWhenGrown(selfCalPage, selfCalResize), "");
    EXPECT_EQ(collisionsWhenGrown(gainWriteDialog, gainFileResize), "");
    EXPECT_EQ(collisionsWhenGrown(gainReadDialog, gainFileResize), "");
}

TEST_F(CleanPages, ParametersAreAskedByKeysAlone)
{
    const struct {
        const char *name, *keys;
        int isTaken;
        const char *changed, *message;
    } rows[] = {
        {"accepts", "Return", 1, "", ""},
        {"gives up", "'1024' Esc", 0, "", ""},
        {"goes through by Tab", "'1024' Tab '768' Tab '0.05' Return", 1, "NX=1024 NY=768 CELL=0.05",
         ""},
        {"takes the proposal", "Alt+I Return", 1, "CELL=0.2", ""},
        {"chooses natural", "Alt+G Up Up Tab '8' Return", 1, "WT=natural TAP=8", ""},
        {"robust is mended", "Alt+R 'abc' Return '0.5' Return", 1, "ROB=0.5",
         "Robust has to be a number from -5 to 5, not 'abc'."},
        {"odd width", "'511' Return '510' Return", 1, "NX=510",
         "The width has to be an even number from 16 to 32768, not '511'."},
        {"in sigma", "Alt+T '3' Tab Down Return", 1, "THU=sigma THR=3", ""},
        {"automatic mask", "Alt+U Tab '4' Return", 1, "AMS=4 AM=1", ""},
        {"each cycle", "Alt+M Alt+S Return", 1, "SEC=1", ""},
        {"refused by Apply, then given up", "Alt+L '-1' Alt+A Esc", 0, "",
         "The number of iterations has to be a whole number from 0 to 1000000000, not '-1'."},
    };
    for (const auto& row : rows) {
        ACleanParameterPM pm = clean();
        messages.clear();
        pressKeys(row.keys);
        EXPECT_EQ(AskCleanParameters(nullptr, pm), row.isTaken) << row.name;
        EXPECT_EQ(differences(clean(), pm), row.changed) << row.name;
        EXPECT_EQ(messages, row.message) << row.name;
    }
}

TEST_F(CleanPages, ParametersTellOfTheBeamAndOfWhatIsOff)
{
    ACleanParameterPage page;
    page.SetParameters(clean());
    open(page, [&] {
        const auto isOn = [&](unsigned id) { return page.GetDlgItem(id)->IsWindowEnabled() != 0; };
        const auto press = [&](unsigned id) {
            auto& box = *dynamic_cast<CButton*>(page.GetDlgItem(id));
            box.SetCheck(!box.GetCheck());
            page.SendMessage(WM_COMMAND, id);
        };
        EXPECT_EQ(page.GetDlgItemText(IDC_CLEAN_BEAM_TEXT), "Beam and dirty map stay as they are.");
        page.SetDlgItemText(IDC_CLEAN_TAPER, "1");
        EXPECT_EQ(page.GetDlgItemText(IDC_CLEAN_BEAM_TEXT).substr(0, 10), "A new beam");
        page.SetDlgItemText(IDC_CLEAN_TAPER, "one");
        EXPECT_EQ(page.GetDlgItemText(IDC_CLEAN_BEAM_TEXT), "");
        EXPECT_FALSE(isOn(IDC_CLEAN_MASK_LEVEL));
        press(IDC_CLEAN_AUTO_MASK);
        EXPECT_TRUE(isOn(IDC_CLEAN_MASK_LEVEL));
        press(IDC_CLEAN_EACH_CYCLE);
        EXPECT_FALSE(isOn(IDC_CLEAN_MASK_LEVEL) || isOn(IDC_CLEAN_AUTO_MASK) ||
                     isOn(IDC_CLEAN_MULTISCALE));
        // a refused field has the focus, all of its text selected
        page.GetSheet()->SendMessage(WM_COMMAND, ID_APPLY_NOW);
        EXPECT_EQ(messages, "The taper has to be a number from 0 to 100000000, not 'one'.");
        auto& edit = *dynamic_cast<CEdit*>(page.GetDlgItem(IDC_CLEAN_TAPER));
        int first = -1, last = -1;
        edit.GetSel(first, last);
        EXPECT_TRUE(first == 0 && last == 3);
        EXPECT_EQ(CWnd::GetFocus(), &edit);
    });
    EXPECT_EQ(differences(clean(), page.GetParameters()), "");
}

TEST_F(CleanPages, SelfCalibrationIsAskedByKeysAlone)
{
    const struct {
        const char *name, *keys;
        int isTaken;
        const char *changed, *message;
    } rows[] = {
        {"accepts", "Return", 1, "", ""},
        {"gives up", "Alt+I '10' Esc", 0, "", ""},
        {"both, whole time", "Down Down Alt+W Return", 1, "KIND=both WHOLE=1", ""},
        {"amplitude, unscaled", "Down Alt+C Alt+G Return", 1, "KIND=amplitude SCALE=0 WEIGHT=0",
         ""},
        {"second reference", "Alt+E Down Space Alt+P Return", 1, "REF=EF,LA", ""},
        {"last one, moved up twice", "Alt+E Down Down Space Alt+P Alt+P Return", 1, "REF=PT,LA",
         ""},
        {"no reference", "Alt+E Space Return", 1, "REF=", ""},
        {"distances", "Alt+U '1' Tab '250' Return", 1, "UVL=1000000 UVM=250000000", ""},
        {"distances the wrong way", "Alt+U '2' Tab '1' Return '3' Return", 1,
         "UVL=2000000 UVM=3000000", "The greatest uv distance has to be above the least."},
        {"too many antennas", "Alt+T '4' Return '3' Return", 1, "",
         "The data have only 3 antennas, so that every solution would fail."},
        {"components, kept", "Alt+M Down Alt+K Return", 1, "MODEL=components KEEP=1", ""},
    };
    for (const auto& row : rows) {
        ASelfCalPM pm = selfCal();
        messages.clear();
        pressKeys(row.keys);
        EXPECT_EQ(AskSelfCalibration(nullptr, pm), row.isTaken) << row.name;
        EXPECT_EQ(differences(selfCal(), pm), row.changed) << row.name;
        EXPECT_EQ(messages, row.message) << row.name;
    }
}

}  // namespace pavane

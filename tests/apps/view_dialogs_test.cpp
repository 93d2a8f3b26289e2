// Dialogs of pavane-view that are no windows of the library.
#include "apps/view/view_dialogs.h"
#include "pavane/windows/controls/AComboBox.h"
#include "pavane/windows/controls/AInfoText.h"
#include "platform/message.h"
#include "platform/profile.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

/// What is typed into the dialog, and what it proposes and says.
struct Script {
    const char* typed;
    std::string proposed, shown;
    int refusals = 0;
};
Script script;

template <class Control>
Control* childOf(const CWnd& dialog)
{
    for (CWnd* const child : dialog.GetChildren())
        if (auto* const found = dynamic_cast<Control*>(child))
            return found;
    return nullptr;
}

int typeLevels(CDialog& dialog)
{
    auto* const levels = childOf<AComboBox>(dialog);
    if (!levels)
        return IDCANCEL;
    script.shown = levels->GetWindowText();
    for (int i = 0; i < levels->GetCount(); ++i)
        script.proposed += levels->GetLBText(i) + ' ';
    levels->SetWindowText(script.typed);
    dialog.SendMessage(WM_COMMAND, IDOK);
    return IDCANCEL;
}

int readLines(CDialog& dialog)
{
    const auto* const lines = childOf<AInfoText>(dialog);
    script.shown = lines ? lines->GetLines().text() : "";
    return IDOK;
}

}  // namespace

TEST(ViewDialogs, ProposeLevelsThatWereTaken)
{
    const std::string profile = testing::TempDir() + "view_dialogs.ini";
    (void)std::remove(profile.c_str());
    SetProfileFile(profile);
    SetMessageFunction([](const CString&, unsigned) { return ++script.refusals, int{IDOK}; });
    SetDialogAnswer(typeLevels);
    const struct {
        const char* typed;
        int isTaken;
        const char* proposed;
    } rows[] = {{"peak:1,2", 1, ""},
                {"peak:", 0, "peak:1,2 "},
                {"sigma:3,6", 1, "peak:1,2 "},
                {"abs:1", 1, "sigma:3,6 peak:1,2 "}};
    for (const auto& row : rows) {
        script = {row.typed, "", "", 0};
        CString text = "sigma:5";
        EXPECT_EQ(askLevels(nullptr, text), row.isTaken) << row.typed;
        EXPECT_EQ(text, row.isTaken ? row.typed : "sigma:5");
        EXPECT_EQ(script.shown, "sigma:5");
        EXPECT_EQ(script.proposed, row.proposed);
        EXPECT_EQ(script.refusals, !row.isTaken);
    }
    SetDialogAnswer(readLines);
    EXPECT_EQ(askAboutLines(nullptr, "Save areas", "a.reg cannot hold:", {"area 1", "area 3"},
                            "Save all the same?", "Save"),
              IDOK);
    EXPECT_EQ(script.shown, "area 1\narea 3\n");
    SetDialogAnswer(nullptr);
    SetMessageFunction(nullptr);
    SetProfileFile("");
}

}  // namespace pavane

#include "pavane/dialogs/AGainFilesDlg.h"
#include "pavane/resources/gain_dialog.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/qt/press_keys.h"
#include "tessel/gains/gain_files.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

CString messages;
int answer = IDOK;
CString browsed;

AGains made()
{
    AGains gains;
    EXPECT_TRUE(gains.create({{1, 1, "EF"}, {1, 2, "LA"}}, {{0, 0.5}}, {{0, 1}}, {'R'}));
    gains.ifs = 2;
    gains.referenceDay = 2451545.5;
    for (Gain& gain : gains.cells()) {
        gain.state = GainState::solved;
        gain.value = {0.8, 0.1};
    }
    return gains;
}

GainFacts data()
{
    GainFacts facts;
    facts.antennas = {{1, 1, "EF"}, {1, 2, "LA"}};
    facts.ifs = 2;
    facts.hands = {'R'};
    facts.referenceDay = 2451545.5;
    facts.end = 0.5;
    return facts;
}

struct GainFiles : testing::Test {
    GainFiles()
    {
        messages.clear();
        answer = IDOK;
        std::filesystem::create_directory(folder);
        SetMessageFunction([](const CString& text, unsigned type) {
            messages += text;
            return type & MB_YESNO ? answer : IDOK;
        });
        SetFileDialogAnswer([](CString& name, const CString&, int) { return name = browsed, 1; });
    }
    ~GainFiles() override
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        std::filesystem::remove_all(folder);
    }
    std::string folder = testing::TempDir() + "gain files";
    std::string path(const char* name) { return folder + "/" + name; }
    void write(const char* name, const AGains& gains)
    {
        std::string error;
        ASSERT_TRUE(writeGainText(path(name), gains, error)) << error;
    }
};

}  // namespace

TEST_F(GainFiles, AreWrittenByKeysAlone)
{
    const AGains gains = made();
    browsed = path("there.txt");
    std::ofstream(path("there.txt")) << "mine";
    const struct {
        const char *name, *file, *keys;
        int answer, result;
        const char *message, *written;
    } rows[] = {
        {"a table", "out.fits", "Return", IDNO, IDOK, "", "out.fits"},
        {"text", "out.txt", "Down Return", IDNO, IDOK, "", "out.txt"},
        {"given up", "never.txt", "Esc", IDNO, IDCANCEL, "", ""},
        {"not replaced", "there.txt", "Down Return Esc", IDNO, IDCANCEL,
         "there.txt is there already. Replace it?", ""},
        {"no folder", "no/out.txt", "Down Return Esc", IDNO, IDCANCEL, "out.txt: ", ""},
        {"browsed, asked there", "", "Down Alt+B Alt+R", IDNO, IDOK, "", "there.txt"},
    };
    for (const auto& row : rows) {
        messages.clear();
        answer = row.answer;
        AGainFilesDlg dialog(gains);
        dialog.SetFile(*row.file ? path(row.file) : "");
        pressKeys(row.keys);
        EXPECT_EQ(dialog.DoModal(), row.result) << row.name;
        EXPECT_EQ(messages.empty(), !*row.message) << messages;
        EXPECT_NE(messages.find(row.message), CString::npos) << messages;
        if (*row.written) {
            AGains back;
            std::string error;
            std::vector<std::string> notes;
            EXPECT_TRUE(std::string(row.written).ends_with("txt")
                            ? readGainText(path(row.written), back, error)
                            : readGainTable(path(row.written), back, notes, error))
                << row.name << error;
            EXPECT_EQ(dialog.GetFile(), path(row.written));
        }
    }
    EXPECT_FALSE(std::filesystem::exists(path("never.txt")));
}

TEST_F(GainFiles, OfOtherDataAreRefused)
{
    write("good.txt", made());
    AGains other = made();
    other.referenceDay += 10;
    write("later.txt", other);
    AGains part;
    ASSERT_TRUE(part.create({{1, 1, "EF"}}, {{0, 0.25}}, {{0, 1}}, {'R'}));
    part.ifs = 2;
    part.referenceDay = 2451545.5;
    for (Gain& gain : part.cells())
        gain.state = GainState::solved;
    write("part.txt", part);
    std::ofstream(path("empty.txt"));
    std::ofstream(path("noise.txt")) << std::string(5000, '\xff');
    const struct {
        const char *name, *file, *keys;
        int answer, result;
        const char* message;
    } rows[] = {
        {"good", "good.txt", "Down Return", IDNO, IDOK, ""},
        {"good, looked at first", "good.txt", "Down Alt+L Alt+T", IDNO, IDOK, ""},
        {"other times", "later.txt", "Down Return Esc", IDNO, IDCANCEL, "do not meet"},
        {"a part is asked", "part.txt", "Down Return Esc", IDNO, IDCANCEL, "Take them all"},
        {"a part is taken", "part.txt", "Down Return", IDYES, IDOK, "no gain for LA"},
        {"a part was seen", "part.txt", "Down Alt+L Alt+T", IDNO, IDOK, ""},
        {"no table", "good.txt", "Return Esc", IDNO, IDCANCEL, "good.txt: "},
        {"empty", "empty.txt", "Down Return Esc", IDNO, IDCANCEL, "empty.txt: "},
        {"noise", "noise.txt", "Down Return Esc", IDNO, IDCANCEL, "noise.txt: "},
        {"none named", "", "Down Return Esc", IDNO, IDCANCEL, "A file has to be named."},
        {"not there", "none.txt", "Down Return Esc", IDNO, IDCANCEL, "none.txt: "},
    };
    for (const auto& row : rows) {
        messages.clear();
        answer = row.answer;
        AGainFilesDlg dialog(data());
        dialog.SetFile(*row.file ? path(row.file) : "");
        pressKeys(row.keys);
        EXPECT_EQ(dialog.DoModal(), row.result) << row.name;
        EXPECT_EQ(messages.empty(), !*row.message) << row.name << messages;
        EXPECT_NE(messages.find(row.message), CString::npos) << row.name << messages;
        if (row.result == IDOK) {
            EXPECT_EQ(dialog.GetGains().ifs, 2) << row.name;
        }
    }
}

TEST_F(GainFiles, HaveTheFormsOfTheHost)
{
    const AGains gains = made();
    AGainFilesDlg dialog(gains);
    std::string asked;
    dialog.AddForm({"H5Parm",
                    "H5Parm|*.h5",
                    "h5",
                    [&](const std::string& file, const AGains&, std::string& error) {
                        asked = file;
                        error = "the child ended with status 1";
                        return 0;
                    },
                    {},
                    [](const AGains&) { return std::vector<std::string>{"iterations"}; }});
    dialog.SetFile(path("out.h5"));
    pressKeys("Down Down Return Esc");
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(asked, path("out.h5"));
    EXPECT_EQ(messages, path("out.h5") + ": the child ended with status 1.");
}

}  // namespace pavane

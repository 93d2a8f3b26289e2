#include "platform/core/IniText.h"
#include "platform/profile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pavane
{

namespace
{

using namespace std::string_literals;

std::string folder()
{
    const char* set = std::getenv("TEST_TMPDIR");
    const std::string name = (set ? std::string(set) : "/tmp"s) + "/profile";
    std::filesystem::create_directories(name);
    return name;
}

void put(const std::string& file, const std::string& text)
{
    std::ofstream(file, std::ios::binary) << text;
}

std::string contents(const std::string& file)
{
    std::stringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

/// A profile file of one test; afterwards the default is back.
class Profile : public testing::Test
{
protected:
    void SetUp() override
    {
        std::filesystem::remove(file_);
        SetProfileFile(file_);
    }
    void TearDown() override { SetProfileFile(""); }
    const std::string file_ = folder() + "/test.ini";
};

}  // namespace

TEST(IniText, FindsWhatStandsBehindTheEqualsSign)
{
    const struct {
        const char* name;
        std::string text;
        const char* section;
        const char* entry;
        std::string value;  // "none" for nothing
    } cases[] = {
        {"plain", "[a]\nx=1\n", "a", "x", "1"},
        {"letters of either case", "[Main Window]\nWindowPos=8\n", "MAIN WINDOW", "windowpos", "8"},
        {"raw value", "[a]\nx= 1,2 ;c \\n \t\n", "a", "x", " 1,2 ;c \\n \t"},
        {"blanks around names", " [ a ] \n x =1\n", "a", "x", "1"},
        {"equals signs in the value", "[a]\nx=a=b\n", "a", "x", "a=b"},
        {"empty value", "[a]\nx=\n", "a", "x", ""},
        {"carriage returns", "[a]\r\nx=1\r\n", "a", "x", "1"},
        {"no end of the last line", "[a]\nx=1", "a", "x", "1"},
        {"mark of the encoding", "\xEF\xBB\xBF[a]\nx=1\n", "a", "x", "1"},
        {"first of equal entries", "[a]\nx=1\nx=2\n", "a", "x", "1"},
        {"section in two pieces", "[a]\ny=1\n[b]\nx=2\n[a]\nx=3\n", "a", "x", "3"},
        {"other section", "[b]\nx=1\n", "a", "x", "none"},
        {"before any section", "x=1\n[a]\n", "a", "x", "none"},
        {"comments", "[a]\n;x=1\n # x=2\n", "a", "x", "none"},
        {"garbage", "[a\n\0=\0\n=]\n[]\nx\n[a]\xFF\nx=\0z\n"s, "a", "x", "\0z"s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IniText(c.text).value(c.section, c.entry).value_or("none"), c.value) << c.name;
}

TEST(IniText, ChangesOneLineAndNoOther)
{
    const struct {
        const char* name;
        std::string before;
        std::string after;
    } cases[] = {
        {"nothing there", "", "[a]\nx=new\n"},
        {"spelling of others", "; mine\n[A]\r\n X = old\r\ny\r\n",
         "; mine\n[A]\r\n X =new\r\ny\r\n"},
        {"end of the section", "[a]\ny=1\n\n[b]\nz=2\n", "[a]\ny=1\nx=new\n\n[b]\nz=2\n"},
        {"open last line", "[a]\ny=1", "[a]\ny=1\nx=new\n"},
        {"new section", "[b]\nx=1", "[b]\nx=1\n\n[a]\nx=new\n"},
        {"carriage returns", "[a]\r\ny=1\r\n", "[a]\r\ny=1\r\nx=new\r\n"},
    };
    for (const auto& c : cases) {
        IniText text(c.before);
        EXPECT_TRUE(text.set("a", "x", "new")) << c.name;
        EXPECT_EQ(text.text(), c.after) << c.name;
        EXPECT_EQ(text.value("a", "x"), "new") << c.name;
    }
}

TEST(IniText, RefusesWhatCouldNotBeReadBack)
{
    const std::string refused[][3] = {{"a]b", "x", "1"}, {"a\nb", "x", "1"}, {"", "x", "1"},
                                      {"a", "x=y", "1"}, {"a", "x\ry", "1"}, {"a", " ", "1"},
                                      {"a", ";x", "1"},  {"a", "[x", "1"},   {"a", "x", "1\n2"},
                                      {"a", "x", "1\r"}, {"a\0b"s, "x", "1"}};
    for (const auto& c : refused) {
        IniText text("[a]\n");
        EXPECT_FALSE(text.set(c[0], c[1], c[2])) << c[0] << '/' << c[1] << '/' << c[2];
        EXPECT_EQ(text.text(), "[a]\n");
    }
}

TEST_F(Profile, KeepsTextsAndNumbers)
{
    EXPECT_EQ(GetProfileString("s", "e", "none"), "none");
    for (const char* text : {"8,1,-1,-1,-1,-1,10,20,610,420", "  C:\\maps; %d  ", "", "\xC3\xA4"}) {
        EXPECT_TRUE(WriteProfileString("s", "e", text));
        EXPECT_EQ(GetProfileString("S", "E", "none"), text);
    }
    EXPECT_TRUE(WriteProfileInt("s", "n", -2147483647 - 1));
    EXPECT_EQ(GetProfileInt("s", "n", 1), -2147483647 - 1);
    put(file_, "[s]\na=2147483648\nb=12x\nc= 7 \n");
    EXPECT_EQ(GetProfileInt("s", "a", 1), 1);
    EXPECT_EQ(GetProfileInt("s", "b", 1) + GetProfileInt("s", "c", 1), 1 + 7);
}

TEST_F(Profile, IsTheUsersOwnUnlessItsModeSaysOtherwise)
{
    const auto mode = [this] { return std::filesystem::status(file_).permissions(); };
    const mode_t mask = umask(0);
    EXPECT_TRUE(WriteProfileString("s", "e", "1"));
    EXPECT_EQ(mode(), std::filesystem::perms{0600});
    std::filesystem::permissions(file_, std::filesystem::perms{0664});
    umask(077);
    EXPECT_TRUE(WriteProfileString("s", "e", "2"));
    umask(mask);
    EXPECT_EQ(mode(), std::filesystem::perms{0664});
}

TEST_F(Profile, LeavesAFileThatItCannotHoldAlone)
{
    const std::string huge = "[s]\ne=1\n" + std::string(1 << 20, '#');
    put(file_, huge);
    EXPECT_EQ(GetProfileString("s", "e", "none"), "none");
    EXPECT_FALSE(WriteProfileString("s", "e", "2"));
    EXPECT_EQ(contents(file_), huge);
    put(file_, "[s]\ne=1\n");
    EXPECT_FALSE(WriteProfileString("s", "e", std::string(1 << 20, 'x')));
    EXPECT_EQ(contents(file_), "[s]\ne=1\n");
}

TEST_F(Profile, NeverReplacesADeviceAFolderOrALink)
{
    // the last one is a plain file in a folder where nobody makes another
    for (const char* name : {"/dev/zero", "/proc/no/such/file", "/", "/proc/version"}) {
        SetProfileFile(name);
        EXPECT_FALSE(WriteProfileString("s", "e", "1")) << name;
        EXPECT_EQ(GetProfileString("s", "e", "none"), "none") << name;
    }
    const std::string link = folder() + "/link.ini";
    std::filesystem::remove(link);
    put(file_, "[s]\n");
    std::filesystem::create_symlink(file_, link);
    SetProfileFile(link);
    EXPECT_TRUE(WriteProfileString("s", "e", "1"));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contents(file_), "[s]\ne=1\n");
}

TEST_F(Profile, LosesNoLineWhenProgramsWriteTogether)
{
    constexpr int count = 40;
    const pid_t other = fork();
    for (int i = 0; i < count; ++i, usleep(2000))  // nobody writes without a break
        (void)WriteProfileInt(other ? "here" : "there", std::to_string(i), i);
    if (other == 0)
        _exit(0);
    waitpid(other, nullptr, 0);
    for (int i = 0; i < count; ++i)
        for (const char* section : {"here", "there"})
            EXPECT_EQ(GetProfileInt(section, std::to_string(i), -1), i) << section;
}

TEST(ProfileFile, LiesBelowTheUsersSettings)
{
    const std::string before = std::getenv("XDG_CONFIG_HOME") ? std::getenv("XDG_CONFIG_HOME") : "";
    const std::string base = folder() + "/config";
    std::filesystem::remove_all(base);
    setenv("XDG_CONFIG_HOME", base.c_str(), 1);
    SetProfileProgram("../evil");
    EXPECT_EQ(GetProfileFile(), base + "/pavane/pavane.ini");
    SetProfileProgram("pavane-view");
    EXPECT_TRUE(WriteProfileString("s", "e", "1"));
    EXPECT_EQ(contents(base + "/pavane-view/pavane-view.ini"), "[s]\ne=1\n");
    SetProfileProgram("pavane");
    before.empty() ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", before.c_str(), 1);
}

}  // namespace pavane

#include "posix/FileReplacement.h"
#include "posix/plain_file.h"
#include "tessel/fits_text.h"
#include "tessel/LineReader.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

/// An empty folder, ending in '/'.
std::string emptyFolder(const std::string& base)
{
    const std::string folder = testing::TempDir() + base + '/';
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder;
}

std::vector<std::string> entriesOf(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

int save(const std::string& name, const std::string& text)
{
    SafeFile file;
    return file.open(name) &&
           file.file().write(text.data(), static_cast<std::int64_t>(text.size())) && file.commit();
}

}  // namespace

TEST(SafeFile, SaysWhyAFileCannotBeMade)
{
    const std::string folder = emptyFolder("refused");
    const std::string plain = saved("plain", "");
    FileReplacement gone;  // a file without a name, wherever its link points
    ASSERT_TRUE(gone.begin(folder + "gone"));
    fs::create_symlink("round", folder + "round");
    ASSERT_EQ(mkfifo((folder + "pipe").c_str(), 0600), 0);
    const std::pair<std::string, std::string> cases[] = {
        {"", "cannot be created: No such file or directory"},
        {folder + "none/file", "cannot be created: No such file or directory"},
        {plain + "/below", "cannot be created: Not a directory"},
        {folder, "is a folder"},
        {folder + "round", "cannot be created: Too many levels of symbolic links"},
        {folder.substr(0, folder.size() - 1), "is a folder"},
        {folder + "pipe", "is a pipe"},
        {"/dev/null", "is a device"},
        {"/proc/self/fd/" + std::to_string(gone.descriptor()),
         "cannot be created: No such file or directory"}};
    for (const auto& [name, fault] : cases) {
        SafeFile file;
        EXPECT_FALSE(file.open(name)) << name;
        EXPECT_EQ(file.fault(), fault) << name;
    }
}

TEST(SafeFile, KeepsTheModeAndWritesThroughLinksThatDangle)
{
    const std::string folder = emptyFolder("kept");
    fs::create_directory(folder + "below");
    fs::create_symlink("below/second", folder + "first");
    fs::create_symlink("../target", folder + "below/second");
    for (const int mode : {0644, 0640, 0600, 0755}) {
        ASSERT_TRUE(save(folder + "first", std::to_string(mode)));
        EXPECT_EQ(contents(folder + "target"), std::to_string(mode));
        ASSERT_EQ(chmod((folder + "target").c_str(), static_cast<mode_t>(mode)), 0);
        ASSERT_TRUE(save(folder + "first", "again"));
        struct stat about {
        };
        ASSERT_EQ(stat((folder + "target").c_str(), &about), 0);
        EXPECT_EQ(about.st_mode & 07777, static_cast<mode_t>(mode));
        fs::remove(folder + "target");
    }
    EXPECT_TRUE(fs::is_symlink(folder + "first") && fs::is_symlink(folder + "below/second"));
}

TEST(SafeFile, SweepsWhatTheDeadLeftOfTheSameNameOnly)
{
    const std::string folder = emptyFolder("swept");
    const std::string dead = ".pavane-a.fits-0123456789abcdef.tmp";
    const std::string kept[] = {".pavane-a.fits-0123456789abcdeg.tmp",
                                ".pavane-b-0123456789abcdef.tmp", "a.fits"};
    for (const std::string& name : kept)
        std::ofstream(folder + name) << "x";
    std::ofstream(folder + dead) << "x";
    FileReplacement living(0);
    ASSERT_TRUE(living.begin(folder + "a.fits"));
    EXPECT_FALSE(fs::exists(folder + dead));
    ASSERT_TRUE(save(folder + "a.fits", "saved"));
    for (const std::string& name : kept)
        EXPECT_TRUE(fs::exists(folder + name)) << name;
    ASSERT_TRUE(writeAll(living.descriptor(), "later"));
    ASSERT_TRUE(living.finish()) << living.fault();
    EXPECT_EQ(contents(folder + "a.fits"), "later");
    EXPECT_EQ(entriesOf(folder).size(), std::size(kept));
}

// PAVANE_KILLS=500 kills that many instead
TEST(SafeFile, IsOldOrNewAndLeavesNothingWhereverItIsKilled)
{
    const char* const asked = std::getenv("PAVANE_KILLS");
    const int kills = asked ? std::atoi(asked) : 30;
    std::mt19937 random(7);
    for (const int unnamed : {1, 0}) {
        const std::string folder = emptyFolder("killed");
        const std::string name = folder + "map.fits";
        const std::string texts[] = {std::string(300000, 'a'), std::string(500000, 'b')};
        ASSERT_TRUE(save(name, texts[0]));
        int left = 0;
        for (int i = 0; i < kills; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                for (std::size_t turn = 1;; ++turn) {
                    FileReplacement file(unnamed);
                    if (!file.begin(name) || !writeAll(file.descriptor(), texts[turn % 2]) ||
                        !file.finish())
                        _exit(1);
                }
            }
            usleep(std::uniform_int_distribution<useconds_t>(0, 20000)(random));
            kill(child, SIGKILL);
            int status = 0;
            waitpid(child, &status, 0);
            ASSERT_TRUE(WIFSIGNALED(status));
            left += entriesOf(folder).size() > 1;
            const std::string found = contents(name);
            ASSERT_TRUE(found == texts[0] || found == texts[1]) << found.size() << " bytes";
        }
        FileReplacement next;
        ASSERT_TRUE(next.begin(name) && next.finish());
        EXPECT_EQ(entriesOf(folder).size(), 1u) << "after " << left << " kills that left a file";
        RecordProperty(unnamed ? "left" : "leftNamed", left);
    }
}

TEST(PlainFiles, NothingElseIsReadAndNothingIsWaitedFor)
{
    const std::string folder = emptyFolder("odd");
    ASSERT_EQ(mkfifo((folder + "pipe").c_str(), 0600), 0);
    const std::pair<std::string, std::string> cases[] = {
        {folder + "pipe", "is a pipe"},
        {folder, "is a folder"},
        {"/dev/zero", "is a device"},
        {folder + "none", "cannot be opened: No such file or directory"},
        {saved("plain", ""), ""}};
    for (const auto& [name, fault] : cases) {
        EXPECT_EQ(readFault(name), fault) << name;
        EXPECT_EQ(AFile(name, AFile::readOnly).isOpen(), fault.empty()) << name;
    }
}

TEST(LineReader, TakesLinesOfAnyEndAndNoneWithoutEnd)
{
    const std::size_t most = LineReader::longestLine;
    const struct {
        std::string text;
        std::vector<std::string> lines;
        std::string fault;
    } cases[] = {{"", {}, ""},
                 {"a\r\n\nb", {"a", "", "b"}, ""},
                 {"\xEF\xBB\xBF"
                  "1,2\n\xEF\xBB\xBF",
                  {"1,2", "\xEF\xBB\xBF"},
                  ""},
                 {std::string(most, 'x') + "\ny\n", {std::string(most, 'x'), "y"}, ""},
                 {"y\n" + std::string(most + 1, 'x'), {"y"}, "has a line 2 of more than 64 KiB"},
                 {std::string(5 * most, '\0'), {}, "has a line 1 of more than 64 KiB"}};
    for (const auto& c : cases) {
        AFile file(saved("lines.txt", c.text), AFile::readOnly);
        LineReader reader(file);
        std::vector<std::string> lines;
        for (std::string line; reader.next(line);)
            lines.push_back(line);
        EXPECT_TRUE(lines == c.lines) << c.text.substr(0, 20);
        EXPECT_EQ(reader.fault(), c.fault);
    }
}

}  // namespace pavane

#include "platform/profile.h"

#include "platform/core/IniText.h"
#include "posix/FileReplacement.h"
#include "posix/plain_file.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>

namespace pavane
{

namespace
{

/// A larger file is none of ours: it is neither read nor replaced.
constexpr std::size_t maxProfileSize = std::size_t{1} << 20;
constexpr std::size_t maxProgramName = 64;

struct Settings {
    CString file;
    CString program = "pavane";
};

Settings& settings()
{
    // never destroyed: static windows of a host save their placement late
    static auto* const made = new Settings;
    return *made;
}

/// Closes a file on every way out.
class Descriptor
{
public:
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { (void)close(); }
    int get() const { return value_; }
    bool close()
    {
        const int value = value_;
        value_ = -1;
        return value < 0 || ::close(value) == 0;
    }

private:
    int value_;
};

/// The bytes of the file; empty text when there is no file, nothing when it cannot be used.
std::optional<std::string> readWhole(const CString& name)
{
    std::string fault;
    const Descriptor file(openPlainFile(name, fault));
    if (file.get() < 0)
        return access(name.c_str(), F_OK) != 0 && errno == ENOENT
                   ? std::optional<std::string>(std::string())
                   : std::nullopt;
    std::string text;
    char block[16384];
    for (;;) {
        const ssize_t count = read(file.get(), block, sizeof block);
        if (count == 0)
            return text;
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || text.size() + static_cast<std::size_t>(count) > maxProfileSize)
            return {};
        text.append(block, static_cast<std::size_t>(count));
    }
}

/// Keeps other writers of the same folder out for the time of one change. Without it, on a file
/// system that has no locks or beside a program that hangs, the later of two changes wins.
class FolderLock
{
public:
    explicit FolderLock(const CString& file)
        : folder_(open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        constexpr int tries = 100;
        constexpr timespec pause{0, 2'000'000};
        for (int i = 0; folder_.get() >= 0 && i < tries; ++i) {
            if (flock(folder_.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
                return;
            (void)nanosleep(&pause, nullptr);
        }
    }

private:
    static CString folderOf(const CString& file)
    {
        // where a link leads, so that writers by any of its names wait for each other
        std::error_code error;
        const auto real = std::filesystem::weakly_canonical(file, error);
        const CString folder = (error ? std::filesystem::path(file) : real).parent_path().string();
        return folder.empty() ? "." : folder;
    }
    Descriptor folder_;
};

/// Mode of a new file: it is the user's own.
constexpr mode_t newFileMode = 0600;

bool replaceWhole(const CString& name, std::string_view bytes)
{
    FileReplacement file;
    return file.begin(name, newFileMode) && writeAll(file.descriptor(), bytes) && file.finish();
}

bool isProgramName(const CString& name)
{
    const auto isAllowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '-' || c == '_';
    };
    for (const char c : name)
        if (!isAllowed(c))
            return false;
    return !name.empty() && name.size() <= maxProgramName;
}

/// The folder of the default file and of no other is made when it is missing.
void makeDefaultFolder(const CString& file)
{
    if (!settings().file.empty())
        return;
    std::error_code error;
    // what fails here fails again, and is told, when the file is made
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), error);
}

}  // namespace

void SetProfileFile(const CString& file) { settings().file = file; }

void SetProfileProgram(const CString& program)
{
    if (isProgramName(program))
        settings().program = program;
}

CString GetProfileFile()
{
    if (!settings().file.empty())
        return settings().file;
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    CString base;
    if (folder && folder[0] == '/')
        base = folder;
    else if (home && home[0] == '/')
        base = CString(home) + "/.config";
    else
        return {};
    const CString& program = settings().program;
    return base + '/' + program + '/' + program + ".ini";
}

CString GetProfileString(const CString& section, const CString& entry, const CString& fallback)
{
    const CString file = GetProfileFile();
    if (file.empty())
        return fallback;
    auto text = readWhole(file);
    return text ? IniText(std::move(*text)).value(section, entry).value_or(fallback) : fallback;
}

int GetProfileInt(const CString& section, const CString& entry, int fallback)
{
    const CString text = GetProfileString(section, entry);
    const auto first = text.find_first_not_of(" \t");
    if (first == text.npos)
        return fallback;
    const auto last = text.find_last_not_of(" \t") + 1;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data() + first, text.data() + last, value);
    return error == std::errc() && end == text.data() + last ? value : fallback;
}

int WriteProfileString(const CString& section, const CString& entry, const CString& text)
{
    const CString file = GetProfileFile();
    if (file.empty())
        return 0;
    makeDefaultFolder(file);
    const FolderLock lock(file);
    auto old = readWhole(file);
    if (!old)
        return 0;
    IniText ini(*old);
    if (!ini.set(section, entry, text) || ini.text().size() > maxProfileSize)
        return 0;
    return ini.text() == *old || replaceWhole(file, ini.text()) ? 1 : 0;
}

int WriteProfileInt(const CString& section, const CString& entry, int value)
{
    return WriteProfileString(section, entry, std::to_string(value));
}

}  // namespace pavane

#include "tessel/processes.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr std::size_t holdBytes = 512;

std::string readHold(int file)
{
    std::array<char, holdBytes> bytes{};
    const ssize_t count = pread(file, bytes.data(), bytes.size(), 0);
    std::string text(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    text.erase(text.find_last_not_of(std::string("\0 ", 2)) + 1);
    return text;
}

}  // namespace

int processId() { return static_cast<int>(getpid()); }

long long processStartTime(int process)
{
    if (process <= 0)
        return 0;
    std::array<char, 64> path{};
    (void)std::snprintf(path.data(), path.size(), "/proc/%d/stat", process);
    const int file = open(path.data(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    std::array<char, 1024> bytes{};
    const ssize_t count = read(file, bytes.data(), bytes.size() - 1);
    (void)close(file);
    // the second field is a name in brackets, in which anything may stand
    const std::string text(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    std::size_t at = text.rfind(')');
    if (at == std::string::npos || at + 2 >= text.size() || text[at + 2] == 'Z' ||
        text[at + 2] == 'X')
        return 0;
    for (int field = 2; field < 22 && at != std::string::npos; ++field)
        at = text.find(' ', at + 1);
    return at == std::string::npos ? 0 : std::strtoll(text.c_str() + at, nullptr, 10);
}

int endProcess(int process, long long startTime, int kill)
{
    if (process <= 1 || startTime == 0 || processStartTime(process) != startTime)
        return 0;
    const int signal = kill ? SIGKILL : SIGTERM;
    // its group when it leads one; never that of this program
    if (getpgid(process) == process && process != getpgid(0))
        return ::kill(-process, signal) == 0;
    return process != getpid() && ::kill(process, signal) == 0;
}

std::string hostName()
{
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

int FileHold::take(const std::string& name, int& isHeld)
{
    release();
    isHeld = 0;
    const int file =
        open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (file < 0)
        return 0;
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
        file_ = file;
        return 1;
    }
    isHeld = errno == EWOULDBLOCK;
    (void)close(file);
    return 0;
}

std::string FileHold::textOf(const std::string& name)
{
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return {};
    std::string text = readHold(file);
    (void)close(file);
    return text;
}

std::string FileHold::text() const { return file_ >= 0 ? readHold(file_) : std::string(); }

int FileHold::setText(const std::string& text)
{
    if (file_ < 0 || text.size() > holdBytes - 12)
        return 0;
    // one block of one size: what a crash leaves is the old text or the new one
    std::string block = text;
    block.resize(holdBytes, ' ');
    return pwrite(file_, block.data(), block.size(), 0) == static_cast<ssize_t>(block.size()) &&
           fsync(file_) == 0;
}

void FileHold::release()
{
    if (file_ >= 0)
        (void)close(file_);
    file_ = -1;
}

}  // namespace pavane

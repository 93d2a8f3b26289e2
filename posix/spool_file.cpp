#include "posix/spool_file.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr std::string_view start = "pavane-print-";
constexpr std::string_view ending = ".pdf";

std::string folder()
{
    const char* const asked = std::getenv("TMPDIR");
    return asked && *asked ? asked : "/tmp";
}

/// The program that gave a file this name; 0 for other files.
pid_t makerOf(std::string_view name)
{
    if (!name.starts_with(start) || !name.ends_with(ending))
        return 0;
    const char* const digits = name.data() + start.size();
    pid_t maker = 0;
    const auto [end, fault] = std::from_chars(digits, name.data() + name.size(), maker);
    return fault == std::errc() && *end == '-' && maker > 0 ? maker : 0;
}

}  // namespace

std::string newSpoolName()
{
    std::array<unsigned char, 8> bytes{};
    if (getentropy(bytes.data(), bytes.size()) != 0)
        return {};
    std::string name = folder() + '/' + std::string(start) + std::to_string(getpid()) + '-';
    for (const unsigned char byte : bytes) {
        name += "0123456789abcdef"[byte >> 4];
        name += "0123456789abcdef"[byte & 15];
    }
    return name + std::string(ending);
}

void sweepSpoolFiles()
{
    DIR* const entries = opendir(folder().c_str());
    if (!entries)
        return;
    while (const dirent* const entry = readdir(entries)) {
        const pid_t maker = makerOf(entry->d_name);
        struct stat about {
        };
        if (maker != 0 && kill(maker, 0) != 0 && errno == ESRCH &&
            fstatat(dirfd(entries), entry->d_name, &about, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(about.st_mode) && about.st_uid == geteuid())
            (void)unlinkat(dirfd(entries), entry->d_name, 0);
    }
    (void)closedir(entries);
}

}  // namespace pavane

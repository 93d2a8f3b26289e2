#include "tessel/paths.h"

#include "posix/plain_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr int mostTries = 100;

int isOfKind(const std::string& name, int folder)
{
    struct stat info {
    };
    return stat(name.c_str(), &info) == 0 && (S_ISDIR(info.st_mode) != 0) == (folder != 0);
}

std::string asFolder(std::string path)
{
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path;
}

/// 16 random hexadecimal digits; "" when the system has none to give.
std::string randomDigits()
{
    std::uint8_t bytes[8];
    if (getentropy(bytes, sizeof bytes) != 0)
        return {};
    std::string digits;
    for (const std::uint8_t byte : bytes) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

int makeFolder(const std::string& folder)
{
    return mkdir(folder.c_str(), 0700) == 0 || (errno == EEXIST && IsFolderExists(folder));
}

}  // namespace

std::string getExePath()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const auto read = static_cast<std::size_t>(length);
    return length > 0 && read < sizeof path ? folderOf({path, read}) : "./";
}

std::string getLibraryPath()
{
    Dl_info info{};
    // what a program without libraries is called need not be a path
    if (!dladdr(reinterpret_cast<const void*>(&getLibraryPath), &info) || !info.dli_fname)
        return getExePath();
    const std::unique_ptr<char, void (*)(void*)> real(realpath(info.dli_fname, nullptr), std::free);
    const std::string folder = real ? folderOf(real.get()) : "";
    return folder.empty() ? getExePath() : folder;
}

int IsFileExists(const std::string& name) { return isOfKind(name, 0); }

int IsFolderExists(const std::string& name) { return isOfKind(name, 1); }

std::string readFault(const std::string& name)
{
    std::string fault;
    const int file = openPlainFile(name, fault);
    if (file >= 0)
        (void)close(file);
    return fault;
}

std::string GetTempFileNameA(const std::string& folder, const std::string& prefix)
{
    if (!IsFolderExists(folder))
        return {};
    for (int i = 0; i < mostTries; ++i) {
        const std::string digits = randomDigits();
        if (digits.empty())
            return {};
        const std::string name = asFolder(folder) + prefix + digits + ".tmp";
        struct stat info {
        };
        if (lstat(name.c_str(), &info) != 0)
            return errno == ENOENT ? name : std::string{};
    }
    return {};
}

std::string getUserCachePath()
{
    const char* const cache = std::getenv("XDG_CACHE_HOME");
    const char* const home = std::getenv("HOME");
    std::string folder;
    if (cache && cache[0] == '/')
        folder = asFolder(cache);
    else if (home && home[0] == '/')
        folder = asFolder(home) + ".cache/";
    if (folder.empty() || !makeFolder(folder))
        return {};
    folder += "pavane/";
    return makeFolder(folder) ? folder : std::string{};
}

std::string folderOf(const std::string& name) { return name.substr(0, name.rfind('/') + 1); }

std::string baseNameOf(const std::string& name) { return name.substr(name.rfind('/') + 1); }

std::string extensionOf(const std::string& name)
{
    const std::string base = baseNameOf(name);
    const auto dot = base.rfind('.');
    return dot == std::string::npos ? std::string{} : base.substr(dot + 1);
}

}  // namespace pavane

#include "tessel/folders.h"

#include "posix/plain_file.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace pavane
{

namespace fs = std::filesystem;

namespace
{

constexpr std::int64_t copyBlock = std::int64_t{1} << 20;

int fail(std::string& fault, const char* what, const std::error_code& error)
{
    fault = systemFault(what, error.value());
    return 0;
}

/// Brings a file's bytes, or a folder's names, to the disk.
int syncOne(const std::string& name, std::string& fault)
{
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    // file systems that cannot sync a folder say EINVAL; there is nothing better to do then
    const int done = file >= 0 && (fsync(file) == 0 || errno == EINVAL);
    if (!done)
        fault = systemFault("cannot be written", errno);
    if (file >= 0)
        (void)close(file);
    return done;
}

int syncTree(const std::string& name, std::string& fault)
{
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(name, error)))
        return syncOne(name, fault);
    for (fs::recursive_directory_iterator at(name, error), end; !error && at != end;
         at.increment(error)) {
        std::error_code ignored;
        if (!at->is_symlink(ignored) && !syncOne(at->path().string(), fault))
            return 0;
    }
    return error ? fail(fault, "cannot be written", error) : syncOne(name, fault);
}

std::string parentOf(const std::string& name)
{
    const std::string folder = folderOf(name);
    return folder.empty() ? "." : folder;
}

}  // namespace

int makeFolders(const std::string& folder, std::string& fault)
try {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error || !IsFolderExists(folder))
        return fail(fault, "cannot be created", error);
    return syncOne(folder, fault) && syncOne(parentOf(plainPath(folder)), fault);
} catch (const std::bad_alloc&) {
    return 0;
}

std::vector<std::string> namesIn(const std::string& folder)
try {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        names.push_back(at->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
} catch (const std::bad_alloc&) {
    return {};
}

int removeAll(const std::string& name, std::string& fault)
try {
    std::error_code error;
    fs::remove_all(name, error);
    return error ? fail(fault, "cannot be removed", error) : 1;
} catch (const std::bad_alloc&) {
    return 0;
}

int renameWhole(const std::string& from, const std::string& to, std::string& fault)
try {
    if (!syncTree(from, fault))
        return 0;
    std::error_code error;
    fs::rename(from, to, error);
    if (error)
        return fail(fault, "cannot be renamed", error);
    return syncOne(parentOf(to), fault) && syncOne(parentOf(from), fault);
} catch (const std::bad_alloc&) {
    return 0;
}

std::int64_t bytesOf(const std::string& name)
try {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(name, error);
    if (fs::is_regular_file(status))
        return static_cast<std::int64_t>(fs::file_size(name, error));
    std::int64_t bytes = 0;
    if (!fs::is_directory(status))
        return 0;
    for (fs::recursive_directory_iterator at(name, error), end; !error && at != end;
         at.increment(error)) {
        std::error_code ignored;
        if (!at->is_symlink(ignored) && at->is_regular_file(ignored))
            if (const auto size = at->file_size(ignored); !ignored)
                bytes += static_cast<std::int64_t>(size);
    }
    return bytes;
} catch (const std::bad_alloc&) {
    return 0;
}

std::string stampOf(const std::string& folder, const std::string& except)
try {
    std::vector<std::string> lines;
    std::error_code error;
    for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error)) {
        struct stat info {
        };
        if (at->path().filename() == except || lstat(at->path().c_str(), &info) != 0 ||
            !S_ISREG(info.st_mode))
            continue;
        lines.push_back(at->path().string().substr(folder.size()) + " " +
                        std::to_string(info.st_size) + " " + std::to_string(info.st_mtim.tv_sec) +
                        "." + std::to_string(info.st_mtim.tv_nsec));
    }
    std::sort(lines.begin(), lines.end());
    std::string stamp;
    for (const std::string& line : lines)
        stamp += line + "\n";
    return stamp;
} catch (const std::bad_alloc&) {
    return {};
}

std::int64_t freeBytes(const std::string& folder)
{
    struct statvfs system {
    };
    if (statvfs(folder.c_str(), &system) != 0)
        return -1;
    return static_cast<std::int64_t>(system.f_bavail) * static_cast<std::int64_t>(system.f_frsize);
}

int readWhole(const std::string& name, std::int64_t most, std::string& bytes, std::string& fault)
try {
    AFile file;
    if (!file.open(name, AFile::readOnly)) {
        fault = readFault(name);
        return 0;
    }
    const std::int64_t size = file.size();
    if (size < 0 || size > most) {
        fault = "is too large";
        return 0;
    }
    bytes.resize(static_cast<std::size_t>(size));
    if (file.read(bytes.data(), size))
        return 1;
    fault = "cannot be read to its end";
    return 0;
} catch (const std::bad_alloc&) {
    fault = "is larger than the memory";
    return 0;
}

int writeWhole(const std::string& name, const std::string& bytes, std::string& fault)
{
    SafeFile file;
    if (file.open(name) &&
        file.file().write(bytes.data(), static_cast<std::int64_t>(bytes.size())) && file.commit())
        return 1;
    fault = file.fault();
    return 0;
}

int copyWhole(const std::string& from, const std::string& to, std::string& fault)
try {
    AFile source;
    if (!source.open(from, AFile::readOnly)) {
        fault = readFault(from);
        return 0;
    }
    SafeFile target;
    int well = target.open(to);
    std::string block(static_cast<std::size_t>(copyBlock), '\0');
    for (std::int64_t left = source.left(); well && left > 0;) {
        const std::int64_t count = std::min(left, copyBlock);
        if (!source.read(block.data(), count)) {
            fault = "cannot be read to its end";
            return 0;
        }
        well = target.file().write(block.data(), count);
        left -= count;
    }
    if (well && target.commit())
        return 1;
    fault = target.fault();
    return 0;
} catch (const std::bad_alloc&) {
    fault = "is larger than the memory";
    return 0;
}

std::string plainPath(const std::string& name)
try {
    std::error_code error;
    fs::path path = fs::weakly_canonical(fs::absolute(name, error), error);
    if (error)
        path = fs::absolute(name, error).lexically_normal();
    std::string text = path.string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
} catch (const std::bad_alloc&) {
    return {};
}

}  // namespace pavane

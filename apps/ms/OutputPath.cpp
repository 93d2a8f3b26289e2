#include "apps/ms/OutputPath.h"

#include "apps/ms/Failure.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace pavane_ms
{

namespace fs = std::filesystem;

namespace
{

/// The name without slashes at its end.
std::string bare(std::string name)
{
    while (name.size() > 1 && name.back() == '/')
        name.pop_back();
    return name;
}

fs::path folderOf(const std::string& path)
{
    const fs::path parent = fs::path(bare(path)).parent_path();
    return parent.empty() ? fs::path(".") : parent;
}

/// Where a path lies when all links are followed; the last part need not be there.
fs::path place(const std::string& path)
{
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(fs::absolute(bare(path), error), error);
    return error ? fs::absolute(path) : whole;
}

int isWithin(const fs::path& inner, const fs::path& outer)
{
    const std::string in = inner.string(), out = outer.string() + "/";
    return in.compare(0, out.size(), out) == 0;
}

void syncFolder(const fs::path& folder)
{
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file >= 0) {
        ::fsync(file);
        ::close(file);
    }
}

/// All files of a folder, then itself, reach the disk.
void syncAll(const fs::path& path)
{
    const auto sync = [](const fs::path& each) {
        const int file = ::open(each.c_str(), O_RDONLY | O_CLOEXEC);
        const int isDone = file >= 0 && ::fsync(file) == 0;
        if (file >= 0)
            ::close(file);
        if (!isDone)
            throw Failure(each.string() + " cannot be written: " + std::strerror(errno));
    };
    if (fs::is_directory(path))
        for (const auto& each : fs::recursive_directory_iterator(path))
            if (each.is_regular_file())
                sync(each.path());
    sync(path);
}

/// A file that is locked as long as it is open, or as its owner lives.
int lockedFile(const std::string& lockName, const std::string& name)
{
    for (;;) {
        const int lock = ::open(lockName.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (lock < 0)
            throw Failure(name + " cannot be written: " + std::strerror(errno));
        if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
            ::close(lock);
            throw Failure(name + " is being written by another program");
        }
        // one that its owner has just removed locks nobody out
        struct stat mine = {}, there = {};
        if (::fstat(lock, &mine) == 0 && ::stat(lockName.c_str(), &there) == 0 &&
            mine.st_ino == there.st_ino && mine.st_dev == there.st_dev)
            return lock;
        ::close(lock);
    }
}

}  // namespace

void refuseSame(const std::string& input, const std::string& output)
{
    std::error_code error;
    const fs::path in = place(input), out = place(output);
    if (in == out || fs::equivalent(input, output, error))
        throw Failure(output + " is the input itself, which is never written");
    if (isWithin(out, in) || isWithin(in, out))
        throw Failure(output + " and the input " + input + " lie within each other");
}

std::uint64_t freeSpace(const std::string& path)
{
    std::error_code error;
    const fs::space_info space = fs::space(folderOf(path), error);
    return error ? ~std::uint64_t{0} : static_cast<std::uint64_t>(space.available);
}

void needSpace(const std::string& output, std::uint64_t bytes)
{
    constexpr std::uint64_t reserve = std::uint64_t{1} << 20;
    const std::uint64_t free = freeSpace(output);
    if (free < bytes + reserve)
        throw Failure(output + " needs about " + std::to_string(bytes) + " bytes, and only " +
                      std::to_string(free) + " are free");
}

std::uint64_t sizeOf(const std::string& path)
{
    std::error_code error;
    if (!fs::is_directory(path, error)) {
        const auto size = fs::file_size(path, error);
        return error ? 0 : static_cast<std::uint64_t>(size);
    }
    std::uint64_t bytes = 0;
    for (fs::recursive_directory_iterator at(path, error), end; !error && at != end;
         at.increment(error)) {
        const auto size = at->is_regular_file(error) ? at->file_size(error) : 0;
        bytes += error ? 0 : static_cast<std::uint64_t>(size);
    }
    return bytes;
}

OutputPath* OutputPath::current_ = nullptr;

OutputPath::OutputPath(const std::string& name, int isFolder, int mayReplace)
    : name_(bare(name)), part_(name_ + ".part"), isFolder_(isFolder)
{
    std::error_code error;
    const fs::file_status status = fs::status(name_, error);
    // a link to a file is followed: what it names is replaced, not the link
    if (!isFolder && fs::is_regular_file(status) && fs::is_symlink(name_, error)) {
        name_ = place(name_).string();
        part_ = name_ + ".part";
    }
    if (isFolder && fs::exists(status) && !mayReplace)
        throw Failure(name_ + " is there already and is no working copy: it is not replaced");
    if (!isFolder && fs::exists(status) && !fs::is_regular_file(status))
        throw Failure(name_ + " is no file and cannot be replaced");
    const fs::path folder = folderOf(name_);
    if (!fs::is_directory(folder, error))
        throw Failure("there is no folder " + folder.string());
    lock_ = lockedFile(part_ + ".lock", name_);
    fs::remove_all(part_, error);
    if (fs::exists(fs::symlink_status(part_, error))) {
        ::close(lock_);
        throw Failure(part_ + " is in the way and cannot be removed");
    }
    current_ = this;
}

OutputPath::~OutputPath() { remove(); }

void OutputPath::remove()
{
    std::error_code error;
    if (!isCommitted_)
        fs::remove_all(part_, error);
    fs::remove(part_ + ".lock", error);
    ::close(lock_);
    current_ = nullptr;
}

void OutputPath::removeAll()
{
    if (current_)
        current_->remove();
}

void OutputPath::commit()
{
    std::error_code error;
    syncAll(part_);
    const std::string old = name_ + ".old";
    const int hasOld = isFolder_ && fs::exists(name_, error);
    if (hasOld) {
        fs::remove_all(old, error);
        fs::rename(name_, old, error);
        if (error)
            throw Failure(name_ + " cannot be replaced: " + error.message());
    }
    fs::rename(part_, name_, error);
    if (error) {
        std::error_code back;
        if (hasOld)
            fs::rename(old, name_, back);
        throw Failure(name_ + " cannot be written: " + error.message());
    }
    isCommitted_ = 1;
    syncFolder(folderOf(name_));
    if (hasOld)
        fs::remove_all(old, error);
}

}  // namespace pavane_ms

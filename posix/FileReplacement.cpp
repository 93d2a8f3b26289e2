#include "posix/FileReplacement.h"

#include "posix/plain_file.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr int mostLinks = 40;
constexpr int mostTries = 100;
constexpr std::size_t digits = 16;
constexpr std::string_view ending = ".tmp";

/// Where a write to `name` goes, link by link; "" when they go round.
std::string targetOf(std::string name)
{
    std::array<char, 4096> link{};
    for (int i = 0; i < mostLinks; ++i) {
        const ssize_t length = readlink(name.c_str(), link.data(), link.size());
        if (length < 0)
            return name;
        const std::string to(link.data(), static_cast<std::size_t>(length));
        name = !to.empty() && to[0] == '/' ? to : name.substr(0, name.rfind('/') + 1) + to;
    }
    return {};
}

/// What hidden names of `name` begin with. Cut, so that the whole is a name wherever `name` is one.
std::string hiddenStart(const std::string& name)
{
    constexpr std::size_t most = 255 - digits - ending.size() - 10;
    return ".pavane-" + name.substr(0, most) + '-';
}

std::string hiddenName(const std::string& name)
{
    std::array<unsigned char, digits / 2> bytes{};
    if (getentropy(bytes.data(), bytes.size()) != 0)
        return {};
    std::string hidden = hiddenStart(name);
    for (const unsigned char byte : bytes) {
        hidden += "0123456789abcdef"[byte >> 4];
        hidden += "0123456789abcdef"[byte & 15];
    }
    return hidden + std::string(ending);
}

bool isHiddenName(std::string_view entry, std::string_view start)
{
    return entry.size() == start.size() + digits + ending.size() && entry.starts_with(start) &&
           entry.ends_with(ending) &&
           entry.substr(start.size(), digits).find_first_not_of("0123456789abcdef") ==
               std::string_view::npos;
}

std::string selfName(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

}  // namespace

std::string FileReplacement::openName() const
{
    return file_ < 0 ? std::string() : temporary_.empty() ? selfName(file_) : path_ + temporary_;
}

int FileReplacement::fail(const char* what, int error)
{
    discard();
    fault_ = systemFault(what, error);
    return 0;
}

int FileReplacement::openFolder(const std::string& name)
{
    const std::string target = targetOf(name);
    if (target.empty())
        return fail("cannot be created", name.empty() ? ENOENT : ELOOP);
    const std::size_t slash = target.rfind('/') + 1;
    name_ = target.substr(slash);
    if (name_.empty())
        return fail("cannot be created", EISDIR);
    path_ = target.substr(0, slash);
    const char* const path = path_.empty() ? "." : path_.c_str();
    folder_ = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
#ifdef O_PATH
    if (folder_ < 0 && errno == EACCES)  // it may take files without showing those that it has
        folder_ = open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
#endif
    return folder_ >= 0 || fail("cannot be created", errno);
}

int FileReplacement::examineOld()
{
    hasOld_ = fstatat(folder_, name_.c_str(), &old_, 0) == 0;
    if (!hasOld_)
        return errno == ENOENT || fail("cannot be created", errno);
    if (!S_ISREG(old_.st_mode)) {
        discard();
        fault_ = notPlain(old_.st_mode);
        return 0;
    }
    // a name could be replaced all the same: whoever took the right away meant the file
    return faccessat(folder_, name_.c_str(), W_OK, AT_EACCESS) == 0 ||
           fail("cannot be written", errno);
}

/// 0 without a fault where the file system has no files without a name.
int FileReplacement::openUnnamed([[maybe_unused]] mode_t mode)
{
#ifdef O_TMPFILE
    if (!unnamed_)
        return 0;
    file_ = openat(folder_, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
    const std::string self = selfName(file_);
    // without /proc it could never be linked
    if (file_ >= 0 && access(self.c_str(), F_OK) == 0 && flock(file_, LOCK_EX | LOCK_NB) == 0)
        return 1;
    if (file_ >= 0)
        (void)close(file_);
    file_ = -1;
#endif
    return 0;
}

int FileReplacement::openNamed(mode_t mode)
{
    for (int i = 0; i < mostTries; ++i) {
        temporary_ = hiddenName(name_);
        file_ = openat(folder_, temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file_ < 0 && errno == EEXIST)
            continue;
        if (file_ < 0) {
            temporary_.clear();
            return fail("cannot be created", errno);
        }
        // another sweep may have come between the name and the lock, and have taken the file
        struct stat about {
        };
        (void)flock(file_, LOCK_EX | LOCK_NB);
        if (fstat(file_, &about) == 0 && about.st_nlink > 0)
            return 1;
        (void)close(file_);
        file_ = -1;
    }
    temporary_.clear();
    return fail("cannot be created", EEXIST);
}

int FileReplacement::begin(const std::string& name, mode_t newMode)
{
    discard();
    fault_.clear();
    // asked of the name itself: a descriptor below /proc need not lead to where its link points
    struct stat about {
    };
    const int leadsToFile = stat(name.c_str(), &about) == 0;
    if (leadsToFile && !S_ISREG(about.st_mode)) {
        fault_ = notPlain(about.st_mode);
        return 0;
    }
    if (!openFolder(name) || !examineOld())
        return 0;
    if (leadsToFile && !hasOld_)
        return fail("cannot be created", ENOENT);
    sweep();
    // nobody reads the file while it is written whom the old one would have refused
    const mode_t mode = hasOld_ ? newMode & old_.st_mode : newMode;
    return openUnnamed(mode | S_IRUSR | S_IWUSR) || openNamed(mode | S_IRUSR | S_IWUSR);
}

/// Files of dead programs that were on their way to this name. The lock of a living one holds.
void FileReplacement::sweep() const
{
    const int copy = openat(folder_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const entries = copy < 0 ? nullptr : fdopendir(copy);
    if (!entries) {
        if (copy >= 0)
            (void)close(copy);
        return;
    }
    const std::string start = hiddenStart(name_);
    while (const dirent* const entry = readdir(entries)) {
        if (!isHiddenName(entry->d_name, start))
            continue;
        const int file =
            openat(folder_, entry->d_name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file >= 0 && flock(file, LOCK_EX | LOCK_NB) == 0)
            (void)unlinkat(folder_, entry->d_name, 0);
        if (file >= 0)
            (void)close(file);
    }
    (void)closedir(entries);
}

int FileReplacement::linkUnnamed(const std::string& as) const
{
    return linkat(AT_FDCWD, selfName(file_).c_str(), folder_, as.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// Some file systems cannot do this for folders, and need not; nobody can where it may not be read.
int FileReplacement::syncFolder() const
{
    return fsync(folder_) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EBADF;
}

int FileReplacement::takeName()
{
    if (temporary_.empty()) {
        if (linkUnnamed(name_))
            return 1;
        // a link cannot replace a file, so it takes a name that can be renamed
        if (errno != EEXIST)
            return 0;
        for (int i = 0; i < mostTries && temporary_.empty(); ++i) {
            temporary_ = hiddenName(name_);
            if (!linkUnnamed(temporary_)) {
                temporary_.clear();
                if (errno != EEXIST)
                    return 0;
            }
        }
    }
    if (!syncFolder() || renameat(folder_, temporary_.c_str(), folder_, name_.c_str()) != 0)
        return 0;
    temporary_.clear();
    return 1;
}

int FileReplacement::keepOwnerAndMode()
{
    struct stat about {
    };
    mode_t mode = old_.st_mode & 07777;
    // the owner first, since changing it takes bits away; only root can give files
    if (fchown(file_, old_.st_uid, old_.st_gid) != 0)
        (void)!fchown(file_, static_cast<uid_t>(-1), old_.st_gid);
    if (fstat(file_, &about) != 0)
        return 0;
    if (about.st_uid != old_.st_uid)
        mode &= ~static_cast<mode_t>(S_ISUID);
    if (about.st_gid != old_.st_gid)
        mode &= ~static_cast<mode_t>(S_ISGID);
    return fchmod(file_, mode) == 0;
}

int FileReplacement::finish()
{
    if (file_ < 0) {
        fault_ = systemFault("cannot be written", EBADF);
        return 0;
    }
    if ((hasOld_ && !keepOwnerAndMode()) || fsync(file_) != 0 || !takeName())
        return fail("cannot be written", errno);
    (void)syncFolder();  // the file has its name in any case
    discard();
    return 1;
}

void FileReplacement::discard()
{
    if (!temporary_.empty())
        (void)unlinkat(folder_, temporary_.c_str(), 0);
    temporary_.clear();
    for (int* const descriptor : {&file_, &folder_}) {
        if (*descriptor >= 0)
            (void)close(*descriptor);
        *descriptor = -1;
    }
}

}  // namespace pavane

#include "tessel/SafeFile.h"

#include "tessel/paths.h"

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

/// Where a symbolic link points to, else the name itself.
std::string realName(const std::string& name)
{
    struct stat info {
    };
    if (lstat(name.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
        return name;
    char* const real = realpath(name.c_str(), nullptr);
    if (!real)
        return name;
    const std::string found = real;
    std::free(real);
    return found;
}

/// Renaming over a device or a pipe would remove it, so only plain files may be replaced.
int mayReplace(const std::string& name)
{
    struct stat info {
    };
    return stat(name.c_str(), &info) != 0 || S_ISREG(info.st_mode);
}

}  // namespace

int SafeFile::prepare(const std::string& name)
{
    discard();
    if (baseNameOf(name).empty() || !mayReplace(name))
        return 0;
    name_ = realName(name);
    const std::string folder = folderOf(name_);
    temporary_ = GetTempFileNameA(folder.empty() ? "./" : folder, ".pavane-");
    return !temporary_.empty();
}

int SafeFile::open(const std::string& name)
{
    return prepare(name) &&
           file_.open(temporary_, AFile::writeOnly | AFile::create | AFile::exclusive);
}

int SafeFile::commit()
{
    if (temporary_.empty())
        return 0;
    struct stat old {
    };
    if (stat(name_.c_str(), &old) == 0)
        (void)chmod(temporary_.c_str(),
                    old.st_mode & 07777);  // only a courtesy to the old file's users
    const int done = file_.close() && std::rename(temporary_.c_str(), name_.c_str()) == 0;
    if (done)
        temporary_.clear();
    discard();
    return done;
}

void SafeFile::discard()
{
    (void)file_.close();  // what it held is dropped in any case
    if (!temporary_.empty())
        (void)unlink(temporary_.c_str());
    temporary_.clear();
}

}  // namespace pavane

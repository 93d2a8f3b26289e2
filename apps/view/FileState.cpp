#include "apps/view/FileState.h"

#include <sys/stat.h>
#include <utility>

namespace pavane
{

FileState::FileState(std::string name) : name_(std::move(name)), first_(look()) {}

FileState::Look FileState::look() const
{
    struct stat info {
    };
    if (stat(name_.c_str(), &info) != 0)
        return {};
    return {1, info.st_dev, info.st_ino, info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

std::string FileState::change() const
{
    const Look now = look();
    if (now == first_)
        return {};
    return now.isThere ? "has changed since it was opened" : "is not there any more";
}

}  // namespace pavane

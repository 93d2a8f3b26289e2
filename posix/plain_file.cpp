#include "posix/plain_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

int openPlainFile(const std::string& name, std::string& fault)
{
    struct stat about {
    };
    // asked first, since opening alone already does something to some devices
    if (stat(name.c_str(), &about) == 0 && !S_ISREG(about.st_mode)) {
        fault = notPlain(about.st_mode);
        return -1;
    }
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        fault = systemFault("cannot be opened", errno);
        return -1;
    }
    if (fstat(file, &about) != 0 || !S_ISREG(about.st_mode)) {
        fault = notPlain(about.st_mode);
        (void)close(file);
        return -1;
    }
    fault.clear();
    return file;
}

std::string notPlain(mode_t mode)
{
    return S_ISREG(mode)    ? ""
           : S_ISDIR(mode)  ? "is a folder"
           : S_ISFIFO(mode) ? "is a pipe"
           : S_ISSOCK(mode) ? "is a socket"
                            : "is a device";
}

std::string systemFault(std::string_view what, int error)
{
    return std::string(what) + ": " + std::strerror(error);
}

int writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return 0;
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return 1;
}

}  // namespace pavane

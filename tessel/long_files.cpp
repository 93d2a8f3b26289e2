#include "tessel/long_files.h"

#include "posix/plain_file.h"
#include "tessel/folders.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr std::int64_t pieceBytes = std::int64_t{1} << 20;
constexpr const char* partEnding = ".part";

}  // namespace

FileSync::~FileSync() { close(); }

void FileSync::close()
{
    if (file_ >= 0)
        (void)::close(file_);
    file_ = -1;
}

int FileSync::begin(const std::string& name, std::string& fault)
{
    close();
    at_ = size_ = 0;
    struct stat info {
    };
    file_ = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file_ >= 0 && fstat(file_, &info) == 0) {
        size_ = static_cast<std::int64_t>(info.st_size);
        return 1;
    }
    fault = systemFault("cannot be written", errno);
    return 0;
}

WorkPiece FileSync::step(std::string& fault)
{
#ifdef SYNC_FILE_RANGE_WRITE
    // a fault of these shows in the sync at the end
    if (file_ >= 0 && at_ < size_) {
        (void)sync_file_range(file_, at_, pieceBytes,
                              SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                  SYNC_FILE_RANGE_WAIT_AFTER);
        at_ += pieceBytes;
        return WorkPiece::more;
    }
#endif
    const int isDone = file_ >= 0 && (fsync(file_) == 0 || errno == EINVAL);
    if (!isDone)
        fault = systemFault("cannot be written", errno);
    close();
    return isDone ? WorkPiece::done : WorkPiece::failed;
}

FileCopy::~FileCopy()
{
    if (part_.empty())
        return;
    (void)target_.close();
    (void)std::remove(part_.c_str());
}

int FileCopy::begin(const std::string& from, const std::string& to, int isKept, std::string& fault)
try {
    to_ = to;
    isKept_ = isKept;
    isSyncing_ = 0;
    if (!source_.open(from, AFile::readOnly)) {
        fault = readFault(from);
        return 0;
    }
    block_.resize(
        static_cast<std::size_t>(std::clamp<std::int64_t>(source_.left(), 1, pieceBytes)));
    const std::string part = isKept ? to + partEnding : to;
    // never through a link that has the name
    if (!removeAll(part, fault))
        return 0;
    errno = 0;
    if (target_.open(part, AFile::writeOnly | AFile::create | AFile::exclusive)) {
        part_ = part;
        return 1;
    }
    fault = systemFault("cannot be created", errno);
    return 0;
} catch (const std::bad_alloc&) {
    fault = "is larger than the memory";
    return 0;
}

WorkPiece FileCopy::step(std::string& fault)
{
    if (isSyncing_) {
        const WorkPiece piece = sync_.step(fault);
        if (piece != WorkPiece::done)
            return piece;
        if (!renameWhole(part_, to_, fault))
            return WorkPiece::failed;
        part_.clear();
        return WorkPiece::done;
    }
    const std::int64_t count = std::min(source_.left(), std::ssize(block_));
    if (count > 0) {
        if (!source_.read(block_.data(), count)) {
            fault = "cannot be read to its end";
            return WorkPiece::failed;
        }
        errno = 0;
        if (target_.write(block_.data(), count))
            return WorkPiece::more;
        fault = systemFault("cannot be written", errno);
        return WorkPiece::failed;
    }
    errno = 0;
    if (!target_.close()) {
        fault = systemFault("cannot be written", errno);
        return WorkPiece::failed;
    }
    if (!isKept_) {
        part_.clear();
        return WorkPiece::done;
    }
    isSyncing_ = 1;
    return sync_.begin(part_, fault) ? WorkPiece::more : WorkPiece::failed;
}

}  // namespace pavane

#include "tessel/AFile.h"

#include "posix/plain_file.h"

#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <fcntl.h>
#endif

namespace pavane
{

namespace
{

const char* openMode(int mode)
{
    const bool create = mode & AFile::create;
    const bool exclusive = create && (mode & AFile::exclusive);
    switch (mode & AFile::readWrite) {
    case AFile::readOnly:
        return create ? nullptr : "rb";
    case AFile::writeOnly:
        return exclusive ? "wbx" : create ? "wb" : "r+b";
    case AFile::readWrite:
        return exclusive ? "w+bx" : create ? "w+b" : "r+b";
    default:
        return nullptr;
    }
}

/// Folders cannot be read, and opening a pipe would wait for its other end.
int isFolderOrPipe(const std::string& name)
{
    struct stat info {
    };
    return stat(name.c_str(), &info) == 0 && (S_ISDIR(info.st_mode) || S_ISFIFO(info.st_mode));
}

/// Only plain files are read: others may have no end, or none to wait for.
std::FILE* openToRead(const std::string& name)
{
    std::string ignored;
    const int plain = openPlainFile(name, ignored);
    std::FILE* const file = plain < 0 ? nullptr : fdopen(plain, "rb");
    if (plain >= 0 && !file)
        (void)::close(plain);
    return file;
}

// Blocks from this size on get their place on the disk before they are written.
constexpr std::int64_t largeBlock = std::int64_t{1} << 20;

// Asks for the place of a block in one go, which halves the time of writing it. Only a hint: where
// it is refused, the write itself tells what is wrong. The size of the file stays.
void reserveFor([[maybe_unused]] std::FILE* file, [[maybe_unused]] std::int64_t bytes)
{
#ifdef __linux__
    if (bytes < largeBlock)
        return;
    if (const off_t position = ftello(file); position >= 0)
        (void)fallocate(fileno(file), FALLOC_FL_KEEP_SIZE, position, bytes);
#endif
}

}  // namespace

AFile::AFile() = default;

AFile::AFile(const std::string& name, int mode) { (void)open(name, mode); }

AFile::~AFile() { (void)close(); }

int AFile::open(const std::string& name, int mode)
{
    (void)close();
    const char* const how = openMode(mode);
    if (!how || (mode != readOnly && isFolderOrPipe(name)))
        return 0;
    file_ = mode == readOnly ? openToRead(name) : std::fopen(name.c_str(), how);
    if (!file_)
        return 0;
    lastUse_ = Use::none;
    name_ = name;
    return 1;
}

int AFile::close()
{
    if (!file_)
        return 1;
    const int result = std::fclose(file_) == 0;
    file_ = nullptr;
    name_.clear();
    return result;
}

int AFile::isOpen() const { return file_ != nullptr; }

const std::string& AFile::name() const { return name_; }

int AFile::turnTo(Use use)
{
    // the C library wants a seek between reading and writing
    const bool turned = lastUse_ != Use::none && lastUse_ != use;
    lastUse_ = use;
    return !turned || fseeko(file_, 0, SEEK_CUR) == 0;
}

int AFile::read(void* buffer, std::int64_t bytes)
{
    if (!file_ || bytes < 0)
        return 0;
    const auto wanted = static_cast<std::size_t>(bytes);
    return wanted == 0 || (turnTo(Use::reading) && std::fread(buffer, 1, wanted, file_) == wanted);
}

int AFile::write(const void* buffer, std::int64_t bytes)
{
    if (!file_ || bytes < 0)
        return 0;
    const auto wanted = static_cast<std::size_t>(bytes);
    if (wanted == 0)
        return 1;
    if (!turnTo(Use::writing))
        return 0;
    reserveFor(file_, bytes);
    return std::fwrite(buffer, 1, wanted, file_) == wanted;
}

int AFile::seek(std::int64_t offset, int origin)
{
    static constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (!file_ || origin < begin || origin > end)
        return 0;
    return fseeko(file_, offset, origins[origin]) == 0;
}

std::int64_t AFile::tell() const { return file_ ? std::int64_t{ftello(file_)} : -1; }

std::int64_t AFile::size() const
{
    struct stat info {
    };
    if (!file_ || std::fflush(file_) != 0 || fstat(fileno(file_), &info) != 0)
        return -1;
    return S_ISREG(info.st_mode) ? std::int64_t{info.st_size} : -1;
}

std::int64_t AFile::left() const
{
    const std::int64_t all = size();
    const std::int64_t position = tell();
    return all > position && position >= 0 ? all - position : 0;
}

}  // namespace pavane

#include "tessel/AFile.h"

#include <sys/stat.h>

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

int isDirectory(std::FILE* file)
{
    struct stat info {};
    return fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

AFile::AFile() = default;

AFile::AFile(const std::string& name, int mode) { (void)open(name, mode); }

AFile::~AFile() { (void)close(); }

int AFile::open(const std::string& name, int mode)
{
    (void)close();
    const char* const how = openMode(mode);
    if (!how)
        return 0;
    file_ = std::fopen(name.c_str(), how);
    if (!file_)
        return 0;
    if (isDirectory(file_)) {
        (void)close();
        return 0;
    }
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

int AFile::read(void* buffer, std::int64_t bytes)
{
    if (!file_ || bytes < 0)
        return 0;
    const auto wanted = static_cast<std::size_t>(bytes);
    return wanted == 0 || std::fread(buffer, 1, wanted, file_) == wanted;
}

int AFile::write(const void* buffer, std::int64_t bytes)
{
    if (!file_ || bytes < 0)
        return 0;
    const auto wanted = static_cast<std::size_t>(bytes);
    return wanted == 0 || std::fwrite(buffer, 1, wanted, file_) == wanted;
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
    struct stat info {};
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

} // namespace pavane

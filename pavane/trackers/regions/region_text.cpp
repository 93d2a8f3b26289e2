#include "pavane/trackers/regions/region_text.h"

#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <cstring>
#include <new>

namespace pavane
{

namespace
{

constexpr std::int64_t longestFile = 64 << 20;

}  // namespace

int RegionText::read(const std::string& file, std::string& error)
{
    bytes_.reset();
    size_ = 0;
    AFile in;
    const std::int64_t size = in.open(file, AFile::readOnly) ? in.size() : -1;
    if (size < 0) {
        error = file + ": " + readFault(file);
        return 0;
    }
    if (size > longestFile) {
        error = file + ": is larger than 64 MiB";
        return 0;
    }
    bytes_.reset(new (std::nothrow) char[static_cast<std::size_t>(size) + 1]);
    if (!bytes_ || !in.read(bytes_.get(), size)) {
        error = file + ": cannot be read";
        return 0;
    }
    if (std::memchr(bytes_.get(), 0, static_cast<std::size_t>(size))) {
        error = file + ": not a text file";
        return 0;
    }
    size_ = static_cast<std::size_t>(size);
    return 1;
}

int nextLine(std::string_view& text, std::string_view& line)
{
    if (text.empty())
        return 0;
    const std::size_t end = text.find('\n');
    line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return 1;
}

int writeRegionText(const std::string& file, const std::string& text, std::string& error)
{
    SafeFile out;
    if (!out.open(file)) {
        error = file + ": " + out.fault();
        return 0;
    }
    if (!out.file().write(text.data(), static_cast<std::int64_t>(text.size())) || !out.commit()) {
        error = file + ": " + out.fault();
        return 0;
    }
    return 1;
}

}  // namespace pavane

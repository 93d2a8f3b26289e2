#include "apps/ms/LineFile.h"

#include "apps/ms/Failure.h"

#include <filesystem>
#include <system_error>

namespace pavane_ms
{

namespace
{

constexpr std::size_t longest = 65536;

}  // namespace

LineFile::LineFile(const std::string& name) : name_(name)
{
    std::error_code error;
    if (std::filesystem::is_regular_file(name, error))
        file_.open(name, std::ios::binary);
    if (!file_.is_open())
        throw Failure(name + " cannot be read");
}

int LineFile::next(std::string& line)
{
    line.clear();
    ++number_;
    char c = 0;
    int hasAny = 0;
    while (file_.get(c)) {
        hasAny = 1;
        if (c == '\n')
            break;
        if (line.size() >= longest)
            fail("is too long");
        line += c;
    }
    if (file_.bad())
        throw Failure(name_ + " cannot be read to its end");
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return hasAny;
}

void LineFile::fail(const std::string& what) const
{
    throw Failure(name_ + ": line " + std::to_string(number_) + " " + what);
}

}  // namespace pavane_ms

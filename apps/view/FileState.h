#pragma once

#include <cstdint>
#include <string>

namespace pavane
{

/// How a file stands on the disk, to find out whether somebody has changed it since.
class FileState
{
public:
    FileState() = default;
    explicit FileState(std::string name);
    /// "" while it is as it was; else what has happened, a clause without its subject.
    std::string change() const;
    const std::string& name() const { return name_; }

private:
    struct Look {
        int isThere = 0;
        std::uint64_t device = 0, number = 0;
        std::int64_t size = 0, seconds = 0, nanoseconds = 0;
        bool operator==(const Look&) const = default;
    };
    Look look() const;

    std::string name_;
    Look first_;
};

}  // namespace pavane

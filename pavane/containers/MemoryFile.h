#pragma once

#include "tessel/AFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace pavane
{

/// A file that is a string of bytes. Reads and writes at one position; writing past the end makes
/// it longer.
class MemoryFile : public AFile
{
public:
    MemoryFile() = default;
    explicit MemoryFile(std::string bytes) : bytes_(std::move(bytes)) {}

    const std::string& bytes() const { return bytes_; }
    /// Empties the file; what was allocated stays for the next use.
    void clear()
    {
        bytes_.clear();
        position_ = 0;
    }
    void assign(const std::string& bytes)
    {
        bytes_ = bytes;
        position_ = 0;
    }

    int read(void* buffer, std::int64_t n) override
    {
        if (n < 0 || n > length() - position_)
            return 0;
        if (n > 0)
            std::memcpy(buffer, bytes_.data() + position_, static_cast<std::size_t>(n));
        position_ += n;
        return 1;
    }
    int write(const void* buffer, std::int64_t n) override
    {
        if (n < 0)
            return 0;
        if (n == 0)
            return 1;
        const auto end = static_cast<std::size_t>(position_ + n);
        if (end > bytes_.size())
            bytes_.resize(end);
        std::memcpy(bytes_.data() + position_, buffer, static_cast<std::size_t>(n));
        position_ += n;
        return 1;
    }
    int seek(std::int64_t offset, int origin = begin) override
    {
        const std::int64_t base = origin == begin ? 0 : origin == current ? position_ : length();
        if (base + offset < 0 || base + offset > length())
            return 0;
        position_ = base + offset;
        return 1;
    }
    std::int64_t tell() const override { return position_; }
    std::int64_t size() const override { return length(); }

private:
    std::int64_t length() const { return static_cast<std::int64_t>(bytes_.size()); }
    std::string bytes_;
    std::int64_t position_ = 0;
};

}  // namespace pavane

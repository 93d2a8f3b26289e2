#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace pavane
{

/// The bytes of one fuzz input as a file in memory, gone with the object.
class InputFile
{
public:
    InputFile(const std::uint8_t* data, std::size_t size)
        : name_("/dev/shm/pavane-fuzz-" + std::to_string(getpid()))
    {
        std::FILE* const file = std::fopen(name_.c_str(), "wb");
        if (!file || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0)
            std::abort();
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() { std::remove(name_.c_str()); }
    const std::string& name() const { return name_; }

private:
    std::string name_;
};

}  // namespace pavane

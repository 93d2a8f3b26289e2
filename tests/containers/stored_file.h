#pragma once

#include "tessel/AFile.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace pavane
{

// A file that lives in a folder of its own until the test ends, and can be told to fail.
class StoredFile : public AFile
{
public:
    explicit StoredFile(const std::string& bytes = {})
        : path_("/tmp/pavane-stored-" + std::to_string(getpid()))
    {
        (void)open(path_, readWrite | create);
        (void)AFile::write(bytes.data(), static_cast<std::int64_t>(bytes.size()));
        rewind();
    }
    ~StoredFile() override { std::remove(path_.c_str()); }

    int read(void* buffer, std::int64_t n) override { return allowed() && AFile::read(buffer, n); }
    int write(const void* from, std::int64_t n) override
    {
        return allowed() && AFile::write(from, n);
    }
    void rewind() { (void)seek(0); }
    // The operation after `n` more of them fails.
    void failAfter(int n) { allowance_ = n; }
    std::string bytes()
    {
        std::string all(static_cast<std::size_t>(size()), '\0');
        rewind();
        (void)AFile::read(all.data(), size());
        return all;
    }

private:
    bool allowed() { return allowance_ < 0 || allowance_-- > 0; }
    std::string path_;
    int allowance_ = -1;
};

}  // namespace pavane

#pragma once

#include "tessel/api.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace pavane
{

/// A binary file. Every operation returns non-zero for success and 0 for failure; nothing throws.
/// Numbers are stored little-endian by the callers' fixed-width fields. Owns its open file and
/// closes it on destruction. Not copyable.
class PAVANE_API AFile
{
public:
    /// Bits for `open`: read and write say what is allowed; create makes or empties the file;
    /// exclusive (with create) fails when the name exists already.
    enum Mode : int { readOnly = 1, writeOnly = 2, readWrite = 3, create = 4, exclusive = 8 };
    /// Where `seek` counts from.
    enum Origin : int { begin = 0, current = 1, end = 2 };

    AFile();
    /// Opens at once; ask `isOpen`.
    AFile(const std::string& name, int mode);
    AFile(const AFile&) = delete;
    AFile& operator=(const AFile&) = delete;
    virtual ~AFile();

    /// Opens `name` (UTF-8 path), closing an open file first. 0 when it cannot be opened, when it
    /// is a folder or a pipe, or when `mode` allows neither reading nor writing.
    int open(const std::string& name, int mode);
    /// Flushes and closes. 0 when a delayed write failed; the file is closed all the same.
    int close();
    int isOpen() const;
    const std::string& name() const;

    /// Reads exactly `bytes` bytes; 0 at a short read (what was read stays in the buffer).
    /// 0 bytes succeed. A negative count fails.
    virtual int read(void* buffer, std::int64_t bytes);
    /// Writes exactly `bytes` bytes; 0 when not all could be written.
    virtual int write(const void* buffer, std::int64_t bytes);
    virtual int seek(std::int64_t offset, int origin = begin);
    /// Position from the start, -1 when the file is not open.
    virtual std::int64_t tell() const;
    /// Size in bytes, -1 when it is not known.
    virtual std::int64_t size() const;
    /// Bytes between the position and the end, 0 when unknown: the most that a loader may believe.
    std::int64_t left() const;

private:
    enum class Use { none, reading, writing };
    int turnTo(Use use);
    std::FILE* file_ = nullptr;
    std::string name_;
    Use lastUse_ = Use::none;
};

}  // namespace pavane

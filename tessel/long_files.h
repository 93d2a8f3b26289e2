#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

// Large files on their way to the disk, a megabyte at a time, for a program whose user is not to
// wait: a sync of a whole map may hold it for seconds. `fault` is a clause without its subject.

/// What a piece of long work answers.
enum class WorkPiece { more, done, failed };

/// Brings the bytes of a file to the disk. When it is done a sync of the file has nothing left to
/// wait for, but for its names.
class PAVANE_API FileSync
{
public:
    FileSync() = default;
    FileSync(const FileSync&) = delete;
    FileSync& operator=(const FileSync&) = delete;
    ~FileSync();
    int begin(const std::string& name, std::string& fault);
    WorkPiece step(std::string& fault);

private:
    void close();
    int file_ = -1;
    std::int64_t at_ = 0, size_ = 0;
};

/// Copies a plain file.
class PAVANE_API FileCopy
{
public:
    FileCopy() = default;
    FileCopy(const FileCopy&) = delete;
    FileCopy& operator=(const FileCopy&) = delete;
    /// Takes away what was begun.
    ~FileCopy();
    /// `isKept`: the copy appears under its name only when it is whole and on the disk. Else it is
    /// written under its name as it comes, and not brought to the disk: for files that only the
    /// next program reads.
    int begin(const std::string& from, const std::string& to, int isKept, std::string& fault);
    WorkPiece step(std::string& fault);

private:
    AFile source_, target_;
    FileSync sync_;
    std::string to_, part_;  ///< its name, and that of what is written
    std::vector<char> block_;
    int isKept_ = 0, isSyncing_ = 0;
};

}  // namespace pavane

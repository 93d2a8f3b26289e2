#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"

#include <string>

namespace pavane
{

/// A file that appears under its name only when it is whole. It is written under a temporary name
/// in the same folder, which `commit` renames; without `commit` the temporary file is removed and a
/// file that was there before stays as it is. A name that is a symbolic link writes to what it
/// points to.
class PAVANE_API SafeFile
{
public:
    SafeFile() = default;
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    ~SafeFile() { discard(); }

    /// Chooses the temporary name and creates nothing, for writers that open files themselves. 0
    /// when the folder does not exist or something other than a plain file has the name.
    int prepare(const std::string& name);
    /// `prepare`, and creates the temporary file for writing through `file`. Non-zero on success.
    int open(const std::string& name);
    AFile& file() { return file_; }
    const std::string& temporaryName() const { return temporary_; }
    /// Closes the temporary file and gives it its name. On failure (a full disk shows here at the
    /// latest) returns 0 and removes it.
    int commit();
    /// Removes the temporary file, if there is one.
    void discard();

private:
    AFile file_;
    std::string name_;
    std::string temporary_;
};

}  // namespace pavane

#pragma once

#include "tessel/AFile.h"
#include "tessel/api.h"

#include <memory>
#include <string>

namespace pavane
{

class FileReplacement;

/// A file that appears under its name only when it is whole and on the disk. Until `commit`, and
/// when the program is killed in the middle, what has the name stays as it is and nothing new
/// appears beside it; the few file systems that need a hidden name for a file being written may
/// keep one after a kill, until the next save of the same name. An old file's mode is kept, and its
/// owner where the system allows. A name that is a symbolic link writes to what it points to,
/// whether that exists or not.
class PAVANE_API SafeFile
{
public:
    SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    ~SafeFile();

    /// Starts a new file for `name`, to be written through `file`. 0 when the folder does not exist
    /// or does not let files be made, or when something other than a plain file, or one that may
    /// not be written, has the name.
    int open(const std::string& name);
    AFile& file() { return file_; }
    /// Gives the file its name. On failure (a full disk shows here at the latest) returns 0 and
    /// what had the name still has it.
    int commit();
    /// Forgets what was written.
    void discard();
    /// Why `open`, a write to `file` or `commit` has just failed, with the system's reason: a
    /// clause without its subject, such as "cannot be written: No space left on device".
    std::string fault() const;

private:
    std::unique_ptr<FileReplacement> replacement_;
    AFile file_;
    std::string fault_;
};

}  // namespace pavane

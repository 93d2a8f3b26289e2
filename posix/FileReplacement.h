#pragma once

#include <string>
#include <sys/stat.h>

namespace pavane
{

/// A file on its way to a name, which it gets when it is whole: until then what has the name stays
/// as it is, whatever ends the program. The file has no name at all while it is written where the
/// file system can do that, else a hidden one beside the name, which it also has for the moment
/// between being linked and being renamed. What a killed program leaves of those is removed by the
/// next replacement of the same name. A symbolic link is written through, a dangling one too.
class FileReplacement
{
public:
    /// With `unnamed` 0 the file has a hidden name all the time, as where the file system knows no
    /// other way.
    explicit FileReplacement(int unnamed = 1) : unnamed_(unnamed) {}
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement() { discard(); }

    /// Starts to replace `name` by an empty file. `newMode` is the mode of a file that did not
    /// exist, less the mask of the process; an old file keeps its own. Non-zero on success.
    int begin(const std::string& name, mode_t newMode = 0666);
    /// Open for reading and writing between `begin` and `finish`, else -1. Not the caller's.
    int descriptor() const { return file_; }
    /// A name by which the file can be opened once more between `begin` and `finish`.
    std::string openName() const;
    /// Brings bytes and name to the disk, the bytes first. Non-zero on success; else what had the
    /// name still has it.
    int finish();
    /// Forgets what was written.
    void discard();
    /// Why the last call failed: a clause without its subject.
    const std::string& fault() const { return fault_; }

private:
    int fail(const char* what, int error);
    int openFolder(const std::string& name);
    int examineOld();
    int openUnnamed(mode_t mode);
    int openNamed(mode_t mode);
    int linkUnnamed(const std::string& as) const;
    int syncFolder() const;
    int takeName();
    int keepOwnerAndMode();
    void sweep() const;

    int unnamed_;
    int folder_ = -1;
    int file_ = -1;
    std::string path_;       ///< of the folder, empty or with '/' at its end
    std::string name_;       ///< the last part of the name, links followed
    std::string temporary_;  ///< the hidden name, while there is one
    std::string fault_;
    struct stat old_ {
    };
    int hasOld_ = 0;
};

}  // namespace pavane

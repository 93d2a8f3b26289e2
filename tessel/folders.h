#pragma once

#include "tessel/api.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

// Folders and whole files. Functions return non-zero on success; `fault` is a clause without its
// subject, with the system's reason. Links are never followed when something is removed.

/// Makes a folder, and those above it that are missing. One that is there is well.
PAVANE_API int makeFolders(const std::string& folder, std::string& fault);
/// Names of all that is in a folder, by rising bytes; empty when it cannot be read.
PAVANE_API std::vector<std::string> namesIn(const std::string& folder);
/// Removes a file or a folder with all that is in it. Nothing there is well.
PAVANE_API int removeAll(const std::string& name, std::string& fault);
/// Gives a file or folder another name in the same file system, so that after a crash either the
/// old or the new one is there: all bytes are brought to the disk first, the names after.
PAVANE_API int renameWhole(const std::string& from, const std::string& to, std::string& fault);
/// Bytes of a file, or of all files in a folder and below; 0 of nothing.
PAVANE_API std::int64_t bytesOf(const std::string& name);
/// A line that changes when a file below a folder is written, comes or goes: names, sizes and times
/// of change, without files of the name `except`. "" of nothing.
PAVANE_API std::string stampOf(const std::string& folder, const std::string& except);
/// Bytes that may still be written in the file system of a folder; -1 when it does not tell.
PAVANE_API std::int64_t freeBytes(const std::string& folder);

/// All of a plain file of at most `most` bytes.
PAVANE_API int readWhole(const std::string& name, std::int64_t most, std::string& bytes,
                         std::string& fault);
/// Writes a file that appears only when it is whole and on the disk.
PAVANE_API int writeWhole(const std::string& name, const std::string& bytes, std::string& fault);
/// Copies a plain file the same way.
PAVANE_API int copyWhole(const std::string& from, const std::string& to, std::string& fault);
/// The name without links, "." and ".."; what is not there keeps its name below what is.
PAVANE_API std::string plainPath(const std::string& name);

}  // namespace pavane

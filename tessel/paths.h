#pragma once

#include "tessel/api.h"

#include <string>

namespace pavane
{

// Paths are UTF-8 with '/' between the parts; a folder handed out ends in '/'.

/// Folder of the running program; "./" when the system does not tell.
PAVANE_API std::string getExePath();
/// Folder of the file that holds this code, links followed: of the shared library, or of the
/// program or module that it was linked into; "./" when the system does not tell.
PAVANE_API std::string getLibraryPath();
/// Non-zero when `name` is a file that exists (not a folder).
PAVANE_API int IsFileExists(const std::string& name);
/// Non-zero when `name` is a folder that exists.
PAVANE_API int IsFolderExists(const std::string& name);
/// Why `name` cannot be read, as a clause without its subject ("is a folder", "cannot be opened:
/// Permission denied"); "" for a plain file that can be. For the word to the user after a failure.
PAVANE_API std::string readFault(const std::string& name);
/// A name in `folder` that nothing has yet: `prefix`, digits nobody can guess and ".tmp". Nothing
/// is created: open it exclusively. "" when the folder does not exist.
PAVANE_API std::string GetTempFileNameA(const std::string& folder, const std::string& prefix);
/// The user's own folder for files that may vanish, made when missing; "" when there is none.
PAVANE_API std::string getUserCachePath();
/// `name` up to its last '/', that included; "" when it has none.
PAVANE_API std::string folderOf(const std::string& name);
/// `name` after its last '/'.
PAVANE_API std::string baseNameOf(const std::string& name);
/// The ending after the last '.' of the base name, without it; "" when there is none.
PAVANE_API std::string extensionOf(const std::string& name);

}  // namespace pavane

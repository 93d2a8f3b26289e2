#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>

namespace pavane
{

/// Opens `name` for reading when it is a plain file; the descriptor is the caller's. Else -1 and
/// `fault`, a clause without its subject ("is a folder", "cannot be opened: Permission denied").
/// Never waits: a pipe is refused whoever holds its other end.
int openPlainFile(const std::string& name, std::string& fault);

/// "is a folder", "is a pipe", ... for what is no plain file, "" for a plain one.
std::string notPlain(mode_t mode);

/// `what`, ": " and the system's words for `error`, a value of errno.
std::string systemFault(std::string_view what, int error);

/// Writes all of `bytes`. Non-zero on success; else errno tells.
int writeAll(int descriptor, std::string_view bytes);

}  // namespace pavane

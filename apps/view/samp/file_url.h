#pragma once

#include <string>

namespace pavane
{

/// A file by its whole name as "file:///...", with percent signs where they are needed.
std::string fileUrl(const std::string& file);
/// And back. 0 for another URL, one of another machine, and one that names none.
int fileOfUrl(const std::string& url, std::string& file);

}  // namespace pavane

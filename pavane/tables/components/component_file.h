#pragma once

#include "pavane/tables/components/AComponents.h"
#include "platform/api.h"

#include <string>

namespace pavane
{

/// Reads a component text from the file, and refuses what AComponents::Load lets pass: a number of
/// components that is missing, negative or not that of the lines, lines with fewer than eight
/// numbers, with words or with more than a comment after them, numbers that are not finite. Then
/// the result is 0, the list empty, and `error` one line, with the line's number but without the
/// file's name.
PAVANE_API int readComponentFile(const std::string& file, AComponents& components,
                                 std::string& error);

/// Writes the text of AComponents::Store as a file that appears only when it is whole. 0 on
/// failure, with `error` as above; what had the name stays.
PAVANE_API int writeComponentFile(const std::string& file, const AComponents& components,
                                  std::string& error);

}  // namespace pavane

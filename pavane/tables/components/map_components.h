#pragma once

#include "pavane/tables/components/AComponents.h"
#include "platform/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// Kinds of a map's table that this list has no name for become this and more: they keep their
/// number, count as points and are told in a note.
inline constexpr int foreignComponent = 100;

/// Reads the table of components of a FITS map (see readCleanComponents) into a model, whose angles
/// and distances are those from the reference pixel. Numbers that the file has in single precision
/// are rounded to the nine digits that tell it. `hasTable` 0 with a non-zero result: there is none.
/// 0 on failure: the list is empty, and `error` one line without the file's name.
PAVANE_API int readMapComponents(const std::string& file, AComponents& model, int& hasTable,
                                 std::vector<std::string>& notes, std::string& error);

}  // namespace pavane

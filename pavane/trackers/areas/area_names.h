#pragma once

#include "pavane/trackers/shapes/area_label.h"
#include "platform/api.h"

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

// Names and colours of areas beside their file: F.areas.names beside F.areas, as text. It tells of
// which bytes it is, so that one that was left behind by another program is not taken for the names
// of other areas.

/// The name of that file.
PAVANE_API std::string namesFileOf(const std::string& areas);

/// The 64-bit FNV-1a hash (Fowler, Noll and Vo) of the bytes of an area file, as 16 digits.
PAVANE_API std::string areaChecksum(std::string_view bytes);

/// The text of names: "# pavane areas 1", the number of the areas with the checksum of their file,
/// then a line an area, its colour or "-" and its name, with "\\n" "\\t" "\\r" "\\" for what
/// would break the line. "" when no area has a label.
PAVANE_API std::string namesText(const std::string& checksum, const std::vector<AreaLabel>& labels);

/// Reads it for so many areas whose file has this checksum. 0, no labels, and a clause in `error`
/// for another text, one of other areas, and one that is cut or damaged.
PAVANE_API int readNames(std::string_view text, const std::string& checksum, int count,
                         std::vector<AreaLabel>& labels, std::string& error);

/// Writes the file beside `areas`, which was just written, whole or not at all, or removes it when
/// no area has a label. 0 and one line in `error` that names the file.
PAVANE_API int writeNamesFile(const std::string& areas, const std::vector<AreaLabel>& labels,
                              std::string& error);

/// Reads the file beside `areas`, which holds so many areas. Non-zero with its labels, or with none
/// where there is no such file; else 0 and one line in `error` that names it: it is not theirs.
PAVANE_API int readNamesFile(const std::string& areas, int count, std::vector<AreaLabel>& labels,
                             std::string& error);

/// Removes the file beside `areas` when it is one of names.
PAVANE_API void removeNamesFile(const std::string& areas);

}  // namespace pavane

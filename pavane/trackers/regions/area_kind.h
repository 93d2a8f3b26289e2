#pragma once

#include "platform/api.h"

#include <string>
#include <string_view>

namespace pavane
{

/// What a file of areas holds.
enum class AreaKind {
    collection,  ///< the areas as they are (.areas)
    cells,       ///< polygons of whole cells (.cma)
    ds9,         ///< region text (.reg)
    crtf,        ///< region text (.crtf)
    windows,     ///< CLEAN windows of Difmap (.win)
    unknown
};

/// The kind that the ending of a name stands for.
PAVANE_API AreaKind areaKindOfName(const std::string& file);

/// The kind that the content tells, whatever the name says; the name decides where several kinds
/// would fit, and for what is none of them. A file that cannot be read is of the kind of its name.
PAVANE_API AreaKind areaKindOfFile(const std::string& file);

/// Non-zero for a file that is opened as areas and not as a map: by its name, or by the first line
/// of a region text.
PAVANE_API int isAreaFile(const std::string& file);

/// Reads a text of at most 64 MiB, a byte-order mark left out. 0 when it cannot be read or holds a
/// zero byte; `error` is then one line without the file's name.
PAVANE_API int readRegionText(const std::string& file, std::string& text, std::string& error);

/// Non-zero when a region text begins as writers of its kind begin it.
PAVANE_API int hasRegionHeader(AreaKind kind, std::string_view text);

/// Non-zero when a region text without a shape says so by its first line, whole, and has nothing
/// but settings behind it.
PAVANE_API int saysItHoldsNone(AreaKind kind, std::string_view text);

/// How many areas a region text says it holds: "# 4 areas", or "! 4 areas", as its second line,
/// which our own texts have and other programs pass over; -1 when it says nothing.
PAVANE_API int promisedRegions(std::string_view text);

/// Where the last line of a region text begins if it may have been cut, so that what it means is
/// not sure: it has no line end and could have gone on. npos when the text is whole.
PAVANE_API std::size_t cutLineOf(AreaKind kind, std::string_view text);

}  // namespace pavane

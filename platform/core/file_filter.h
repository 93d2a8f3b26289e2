#pragma once

#include "platform/types.h"

#include <vector>

namespace pavane
{

/// One line of the list of file types: what the user reads, and its patterns ("*.fits", "*.fit").
struct FileFilter {
    CString text;
    std::vector<CString> patterns;
};

/// Reads "text|*.a;*.b|text|*.c"; patterns stand between semicolons or blanks, and pieces without
/// one are left out.
std::vector<FileFilter> fileFilters(const CString& list);

/// The extension that files of a type have, "fits" of "*.fits"; empty when any may do.
CString extensionOf(const FileFilter& filter);

/// The name with `extension` in place of the one of another type of the list; names with none of
/// those extensions stay as they are.
CString withTypeOf(const CString& name, const CString& extension,
                   const std::vector<FileFilter>& list);

/// The name with ".extension" behind it when it has none; "fits", ".fits" and "*.fits" mean the
/// same. Deliberate: what follows the last dot is
/// an extension only when it is one to five letters or digits that begin with a letter, because
/// sources and bands have dots in their names ("3C84_15.4GHz").
CString withExtension(const CString& name, const CString& extension);

}  // namespace pavane

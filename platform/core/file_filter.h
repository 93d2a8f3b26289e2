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

/// Reads "text|*.a;*.b|text|*.c"; pieces without a pattern are left out.
std::vector<FileFilter> fileFilters(const CString& list);

/// The name with ".extension" behind it when it has none. Deliberate: what follows the last dot is
/// an extension only when it is one to five letters or digits that begin with a letter, because
/// sources and bands have dots in their names ("3C84_15.4GHz").
CString withExtension(const CString& name, const CString& extension);

}  // namespace pavane

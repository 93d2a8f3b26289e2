#pragma once

#include "pavane/containers/AArray.h"
#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// Loads a palette by name or file; without a name the default one, wherever it is found. Non-zero
/// on success; else 0 and `error` is one line with the names that there are.
PAVANE_API int choosePalette(const CString& name, CString& error);
/// The map colours of such a palette, for one picture; without a name those of the default one.
/// Results as above.
PAVANE_API int paletteColours(const CString& name, AArray<COLORREF>& colours, CString& error);
/// The palette that a map has, by its own colours, without any the one of the program; empty when
/// these are those of no palette.
PAVANE_API CString paletteNameOf(const std::vector<COLORREF>& colours);

}  // namespace pavane

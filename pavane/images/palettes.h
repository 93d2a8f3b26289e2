#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/AObjArray.h"
#include "platform/api.h"
#include "platform/gdi_objects.h"
#include "platform/types.h"

namespace pavane
{

// The one palette of the module that the pixels of rasters index: 226 map colours, then the ten
// working colours. Palette files end in ".pal" and are looked for beside the program, then in
// ../share/pavane/palettes and ../share/pavane from there, then where the library was installed.

/// Address of the module's palette handle, which is null until a palette is loaded. The handle
/// stays the same when another palette is loaded.
PAVANE_API HPALETTE* GetGlobalPalette();
/// Loads "defpal.pal". Non-zero on success; else 0 and the palette stays as it was.
PAVANE_API int LoadDefaultPalette();
/// Loads the palette `name` ("grey", "heat", ... as PaletteNames tells), or, when it has a '/' in
/// it, the palette file of that name. Results as above.
PAVANE_API int LoadPalette(const CString& name);
/// Loads the colours of "defpal.pal" that are built into the library, for when no file is found.
/// Non-zero on success.
PAVANE_API int LoadBuiltInPalette();
/// The file in use; empty when none is loaded or the built-in colours are used.
PAVANE_API const CString& GetGlobalPaletteName();
/// Copies `count` colours of the palette from entry `first` on, cut to the entries that there are.
/// Returns how many were copied, 0 when no palette is loaded.
PAVANE_API int GetGlobalPaletteColors(int first, int count, AArray<COLORREF>& colors);
/// Names of the palettes that LoadPalette finds, in alphabetical order, each once.
PAVANE_API AObjArray<CString> PaletteNames();

}  // namespace pavane

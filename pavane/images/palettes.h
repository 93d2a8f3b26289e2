#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/AObjArray.h"
#include "platform/api.h"
#include "platform/gdi_objects.h"
#include "platform/types.h"

#include <memory>

namespace pavane
{

// The one palette of the module that the pixels of rasters index: 226 map colours, then the ten
// working colours. Maps and axes keep what it was when they were made; windows follow it. Any
// thread may load and ask; the handle is for the thread of the windows. Palette files end in ".pal"
// and are looked for in the folder of the user, then beside the program, then in
// ../share/pavane/palettes and ../share/pavane from there, then where the library was installed.

/// The colours of a palette as a value that stays as it is.
struct PaletteColors {
    PALETTEENTRY entries[256];
    int count = 0;
};
using SharedPalette = std::shared_ptr<const PaletteColors>;

/// The module's palette as it is now. With `load` that of LoadDefaultPalette is loaded where there
/// is none; else null then.
PAVANE_API SharedPalette ModulePalette(int load = 1);
/// A palette named as for LoadPalette, without making it the module's. Non-zero on success.
PAVANE_API int ReadPalette(const CString& name, SharedPalette& palette);
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
PAVANE_API CString GetGlobalPaletteName();
/// Copies `count` colours of the palette from entry `first` on, cut to the entries that there are.
/// Returns how many were copied, 0 when no palette is loaded.
PAVANE_API int GetGlobalPaletteColors(int first, int count, AArray<COLORREF>& colors);
/// Names of the palettes that LoadPalette finds, in alphabetical order, each once; those of the
/// user's folder too.
PAVANE_API AObjArray<CString> PaletteNames();
/// The map colours of a palette, named as for LoadPalette, without making it the module's. Non-zero
/// on success; else 0 and `colors` is left alone.
PAVANE_API int GetPaletteColors(const CString& name, AArray<COLORREF>& colors);
/// The same of the colours that are built into the library.
PAVANE_API int GetBuiltInPaletteColors(AArray<COLORREF>& colors);
/// Writes the colours, 1 to 256, as a palette file that LoadPalette reads; of more than 226 the
/// last become no colours of a map. The file appears whole or not at all. Non-zero on success; else
/// 0 and `error` is a line that names the file.
PAVANE_API int WritePalette(const CString& file, const AArray<COLORREF>& colours, CString& error);
/// The folder of the user's own palettes, $XDG_DATA_HOME/pavane/palettes/ (~/.local/share without
/// it), which need not exist; with `make` it is made when missing. Empty when there is none.
PAVANE_API CString UserPaletteFolder(int make = 0);

}  // namespace pavane

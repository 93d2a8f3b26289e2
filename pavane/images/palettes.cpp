#include "pavane/images/palettes.h"

#include "default_palette.h"
#include "pavane/images/palette_file.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <vector>

namespace pavane
{

namespace
{

constexpr char defaultName[] = "defpal";
constexpr char ending[] = ".pal";
// Far above 256 lines of three numbers.
constexpr std::int64_t greatestFile = 64 * 1024;

// The module's palette and where it came from.
HPALETTE globalPalette = nullptr;
CString globalPaletteName;

std::vector<CString> paletteFolders()
{
    const CString program = getExePath();
    return {program, program + "../share/pavane/palettes/", program + "../share/pavane/",
            PAVANE_SHARE_DIR "/", PAVANE_PALETTE_SOURCE_DIR "/"};
}

int usePalette(std::string_view text, const CString& name)
{
    PALETTEENTRY colors[paletteColors];
    if (!parsePalette(text, colors))
        return 0;
    if (globalPalette)
        (void)SetPaletteEntries(globalPalette, 0, paletteColors, colors);
    else
        globalPalette = CreatePalette(colors, paletteColors);
    if (!globalPalette)
        return 0;
    globalPaletteName = name;
    return 1;
}

int loadFile(const CString& name)
{
    AFile file(name, AFile::readOnly);
    const std::int64_t bytes = file.left();
    if (bytes < 1 || bytes > greatestFile)
        return 0;
    CString text(static_cast<std::size_t>(bytes), '\0');
    return file.read(text.data(), bytes) && usePalette(text, name);
}

}  // namespace

HPALETTE* GetGlobalPalette() { return &globalPalette; }

int LoadDefaultPalette() { return LoadPalette(defaultName); }

int LoadPalette(const CString& name)
{
    if (name.find('/') != CString::npos)
        return loadFile(name);
    const CString fileName = extensionOf(name) == "pal" ? name : name + ending;
    for (const CString& folder : paletteFolders())
        if (loadFile(folder + fileName))
            return 1;
    return 0;
}

int LoadBuiltInPalette() { return usePalette(defaultPaletteText, {}); }

const CString& GetGlobalPaletteName() { return globalPaletteName; }

int GetGlobalPaletteColors(int first, int count, AArray<COLORREF>& colors)
{
    PALETTEENTRY entries[paletteColors];
    const int known =
        globalPalette ? GetPaletteEntries(globalPalette, 0, paletteColors, entries) : 0;
    const int begin = std::clamp(first, 0, known);
    const int end =
        static_cast<int>(std::clamp<std::int64_t>(std::int64_t{first} + count, begin, known));
    colors.GrowBy(end - begin);
    for (int i = 0; i < colors.count(); ++i) {
        const PALETTEENTRY& entry = entries[begin + i];
        colors(i) = RGB(entry.peRed, entry.peGreen, entry.peBlue);
    }
    return colors.count();
}

AObjArray<CString> PaletteNames()
{
    std::vector<CString> names;
    for (const CString& folder : paletteFolders()) {
        std::error_code error;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            if (entry->path().extension() == ending)
                names.push_back(entry->path().stem().string());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    AObjArray<CString> result;
    for (const CString& name : names)
        (void)result.Add(name);  // without memory the list is only shorter
    return result;
}

}  // namespace pavane

#include "pavane/images/palettes.h"

#include "default_palette.h"
#include "pavane/images/palette_file.h"
#include "pavane/images/palette_followers.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cstdlib>
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

std::vector<PaletteFollower*>& followers()
{
    static std::vector<PaletteFollower*> all;
    return all;
}

std::vector<CString> paletteFolders()
{
    const CString program = getExePath();
    const CString library = getLibraryPath();
    // who saves one under a name of the program wants to get it under that name; beside the library
    // they lie when its prefix was moved, one folder deeper on systems of several architectures
    return {UserPaletteFolder(),
            program,
            program + "../share/pavane/palettes/",
            program + "../share/pavane/",
            library + "palettes/",
            library + "../share/pavane/",
            library + "../../share/pavane/",
            PAVANE_SHARE_DIR "/"};
}

int usePalette(const PALETTEENTRY* colors, const CString& name)
{
    if (globalPalette)
        (void)SetPaletteEntries(globalPalette, 0, paletteColors, colors);
    else
        globalPalette = CreatePalette(colors, paletteColors);
    if (!globalPalette)
        return 0;
    globalPaletteName = name;
    for (PaletteFollower* const follower : followers())
        follower->paletteChanged();
    return 1;
}

int readFile(const CString& name, PALETTEENTRY* colors)
{
    AFile file(name, AFile::readOnly);
    const std::int64_t bytes = file.left();
    if (bytes < 1 || bytes > greatestFile)
        return 0;
    CString text(static_cast<std::size_t>(bytes), '\0');
    return file.read(text.data(), bytes) && parsePalette(text, colors);
}

/// Reads the palette `name` from the first place that has it; `file` becomes that.
int findPalette(const CString& name, PALETTEENTRY* colors, CString& file)
{
    file = name;
    if (name.find('/') != CString::npos)
        return readFile(name, colors);
    const CString fileName = extensionOf(name) == "pal" ? name : name + ending;
    for (const CString& folder : paletteFolders()) {
        file = folder + fileName;
        if (!folder.empty() && readFile(file, colors))
            return 1;
    }
    return 0;
}

int takeMapColors(const PALETTEENTRY* entries, AArray<COLORREF>& colors)
{
    colors.GrowBy(firstWorkingColor);
    for (int i = 0; i < colors.count(); ++i)
        colors(i) = RGB(entries[i].peRed, entries[i].peGreen, entries[i].peBlue);
    return colors.count() > 0;
}

}  // namespace

HPALETTE* GetGlobalPalette() { return &globalPalette; }

int LoadDefaultPalette() { return LoadPalette(defaultName); }

int LoadPalette(const CString& name)
{
    PALETTEENTRY colors[paletteColors];
    CString file;
    return findPalette(name, colors, file) && usePalette(colors, file);
}

int LoadBuiltInPalette()
{
    PALETTEENTRY colors[paletteColors];
    return parsePalette(defaultPaletteText, colors) && usePalette(colors, {});
}

int GetPaletteColors(const CString& name, AArray<COLORREF>& colors)
{
    PALETTEENTRY entries[paletteColors];
    CString file;
    return findPalette(name, entries, file) && takeMapColors(entries, colors);
}

int GetBuiltInPaletteColors(AArray<COLORREF>& colors)
{
    PALETTEENTRY entries[paletteColors];
    return parsePalette(defaultPaletteText, entries) && takeMapColors(entries, colors);
}

int WritePalette(const CString& file, const AArray<COLORREF>& colours, CString& error)
{
    const CString text = paletteText(colours.lpArray(), colours.count());
    if (text.empty()) {
        error = file + ": a palette has 1 to 256 colours";
        return 0;
    }
    SafeFile safe;
    if (safe.open(file) && safe.file().write(text.data(), static_cast<std::int64_t>(text.size())) &&
        safe.commit())
        return 1;
    error = file + ": " + safe.fault();
    return 0;
}

CString UserPaletteFolder(int make)
{
    const char* const data = std::getenv("XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    CString folder;
    if (data && data[0] == '/')
        folder = data;
    else if (home && home[0] == '/')
        folder = CString(home) + "/.local/share";
    else
        return {};
    folder += "/pavane/palettes/";
    std::error_code error;
    if (make)
        std::filesystem::create_directories(folder, error);
    return error ? CString() : folder;
}

PaletteFollower::PaletteFollower() { followers().push_back(this); }
PaletteFollower::~PaletteFollower() { std::erase(followers(), this); }

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
        if (folder.empty())
            continue;  // of a user without one; not the working folder
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

#include "pavane/images/palettes.h"

#include "default_palette.h"
#include "pavane/images/palette_file.h"
#include "pavane/images/palette_followers.h"
#include "tessel/AFile.h"
#include "tessel/ForkGate.h"
#include "tessel/paths.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <mutex>
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

// The module's palette and where it came from; nobody draws or reads a file while one is locked.
std::mutex paletteMutex;
class PaletteLock
{
public:
    PaletteLock() : locked_(paletteMutex) {}

private:
    ForkGate gate_;  // a copy of the process finds it unlocked
    std::lock_guard<std::mutex> locked_;
};
HPALETTE globalPalette = nullptr;
SharedPalette globalColors;
CString globalPaletteName;

/// Looked at under the lock of the palette.
std::vector<PaletteFollower*>& followers()
{
    static std::vector<PaletteFollower*> all;
    return all;
}

SharedPalette sharedPalette(const PALETTEENTRY* colors)
{
    const auto made = std::make_shared<PaletteColors>();
    std::copy(colors, colors + paletteColors, made->entries);
    made->count = paletteColors;
    return made;
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
    SharedPalette shared = sharedPalette(colors);
    {
        const PaletteLock locked;
        if (globalPalette)
            (void)SetPaletteEntries(globalPalette, 0, paletteColors, colors);
        else
            globalPalette = CreatePalette(colors, paletteColors);
        if (!globalPalette)
            return 0;
        globalColors = std::move(shared);
        globalPaletteName = name;
    }
    std::vector<PaletteFollower*> told;
    {
        const PaletteLock locked;
        for (PaletteFollower* const follower : followers())
            if (follower->isOfThisThread())
                told.push_back(follower);
    }
    for (PaletteFollower* const follower : told)
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

SharedPalette ModulePalette(int load)
{
    for (int round = 0;; ++round) {
        {
            const PaletteLock locked;
            if (globalColors || !load || round > 0)
                return globalColors;
        }
        (void)(LoadDefaultPalette() || LoadBuiltInPalette());
    }
}

int ReadPalette(const CString& name, SharedPalette& palette)
{
    PALETTEENTRY colors[paletteColors];
    CString file;
    if (!findPalette(name, colors, file))
        return 0;
    palette = sharedPalette(colors);
    return 1;
}

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

PaletteFollower::PaletteFollower()
{
    const PaletteLock locked;
    followers().push_back(this);
}

PaletteFollower::~PaletteFollower()
{
    const PaletteLock locked;
    std::erase(followers(), this);
}

CString GetGlobalPaletteName()
{
    const PaletteLock locked;
    return globalPaletteName;
}

int GetGlobalPaletteColors(int first, int count, AArray<COLORREF>& colors)
{
    const SharedPalette palette = ModulePalette(0);
    const int known = palette ? palette->count : 0;
    const int begin = std::clamp(first, 0, known);
    const int end =
        static_cast<int>(std::clamp<std::int64_t>(std::int64_t{first} + count, begin, known));
    colors.GrowBy(end - begin);
    for (int i = 0; i < colors.count(); ++i) {
        const PALETTEENTRY& entry = palette->entries[begin + i];
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

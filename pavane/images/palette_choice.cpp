#include "pavane/images/palette_choice.h"

#include "pavane/images/palettes.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

void tellNames(const CString& name, CString& error)
{
    error = name + ": is no palette; there are";
    const AObjArray<CString> names = PaletteNames();
    for (int i = 0; i < names.count(); ++i)
        error.append(" ").append(names(i));
}

}  // namespace

int choosePalette(const CString& name, CString& error)
{
    if (name.empty())
        return LoadDefaultPalette() || LoadBuiltInPalette();
    if (LoadPalette(name))
        return 1;
    tellNames(name, error);
    return 0;
}

int paletteColours(const CString& name, AArray<COLORREF>& colours, CString& error)
{
    if (GetPaletteColors(name.empty() ? CString("defpal") : name, colours))
        return 1;
    if (name.empty())
        return GetBuiltInPaletteColors(colours);
    tellNames(name, error);
    return 0;
}

CString paletteNameOf(const std::vector<COLORREF>& colours)
{
    if (colours.empty()) {
        CString name = baseNameOf(GetGlobalPaletteName());
        if (extensionOf(name) == "pal")
            name.resize(name.size() - 4);
        return name;
    }
    const AObjArray<CString> names = PaletteNames();
    AArray<COLORREF> each;
    for (int i = 0; i < names.count(); ++i)
        if (GetPaletteColors(names(i), each) &&
            std::equal(colours.begin(), colours.end(), each.lpArray(),
                       each.lpArray() + each.count()))
            return names(i);
    return {};
}

}  // namespace pavane

#include "apps/view/palette_choice.h"

#include "pavane/images/palettes.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

int choosePalette(const std::string& name, std::string& error)
{
    if (name.empty())
        return LoadDefaultPalette() || LoadBuiltInPalette();
    if (LoadPalette(name))
        return 1;
    error = name + ": is no palette; there are";
    const AObjArray<CString> names = PaletteNames();
    for (int i = 0; i < names.count(); ++i)
        error += ' ' + names(i);
    return 0;
}

std::string paletteNameOf(const std::vector<COLORREF>& colours)
{
    if (colours.empty()) {
        std::string name = baseNameOf(GetGlobalPaletteName());
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

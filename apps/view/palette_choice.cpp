#include "apps/view/palette_choice.h"

#include "pavane/images/palettes.h"

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

}  // namespace pavane

#include "tessel/cfitsio.h"

#include <dlfcn.h>

namespace pavane
{

namespace
{

template <typename Function>
int find(void* library, const char* name, Function*& function)
{
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

struct Loaded {
    Cfitsio functions;
    std::string error;

    Loaded()
    {
        void* const library = dlopen(PAVANE_CFITSIO, RTLD_NOW | RTLD_LOCAL);
        Cfitsio& f = functions;
        f.isLoaded =
            library && find(library, "ffdkopn", f.openDiskFile) &&
            find(library, "ffmahd", f.moveToHdu) && find(library, "ffpscl", f.setScale) &&
            find(library, "ffgpxvll", f.readPixels) && find(library, "ffimem", f.createInMemory) &&
            find(library, "ffcrim", f.createImage) && find(library, "ffcrtb", f.createTable) &&
            find(library, "ffpkyj", f.writeWholeKey) && find(library, "ffpkyd", f.writeNumberKey) &&
            find(library, "ffpkyl", f.writeFlagKey) && find(library, "ffpkys", f.writeTextKey) &&
            find(library, "ffpcld", f.writeDoubles) && find(library, "ffpclk", f.writeWholes) &&
            find(library, "ffpcls", f.writeTexts) && find(library, "ffghadll", f.placeOfHdu) &&
            find(library, "ffflus", f.flush) && find(library, "ffclos", f.close) &&
            find(library, "ffgerr", f.statusText);
        if (!f.isLoaded) {
            const char* const why = dlerror();
            error = why ? why : PAVANE_CFITSIO " lacks a function";
        }
    }
};

}  // namespace

const Cfitsio& cfitsio(std::string& error)
{
    static const auto* const loaded = new Loaded;
    error = loaded->error;
    return loaded->functions;
}

}  // namespace pavane

#include "pavane/windows/library_resources.h"

#include "pavane/resources/cursors.h"
#include "pavane/resources/dialogs.h"
#include "pavane/resources/library_strings.h"
#include "pavane/resources/menus.h"
#include "platform/resources.h"

#include <iterator>

namespace pavane
{

void AddLibraryResources()
{
    static constexpr ResourceModule library = {
        libraryMenus,   static_cast<int>(std::size(libraryMenus)),
        libraryDialogs, static_cast<int>(std::size(libraryDialogs)),
        libraryCursors, static_cast<int>(std::size(libraryCursors)),
        libraryStrings, static_cast<int>(std::size(libraryStrings))};
    AddResourceModule(library);
}

}  // namespace pavane

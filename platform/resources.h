#pragma once

#include "platform/cursors.h"
#include "platform/dialog_template.h"
#include "platform/menu_template.h"
#include "platform/types.h"

namespace pavane
{

/// A text by its number.
struct StringTemplate {
    unsigned id;
    const char* text;
};

/// The tables of one module (the library, a host). Plain constant data; nothing is copied, so the
/// tables live as long as the program.
struct ResourceModule {
    const MenuTemplate* menus = nullptr;
    int menuCount = 0;
    const DlgTemplate* dialogs = nullptr;
    int dialogCount = 0;
    const CursorTemplate* cursors = nullptr;
    int cursorCount = 0;
    const StringTemplate* strings = nullptr;
    int stringCount = 0;
};

/// Adds a module; it is searched before those added earlier. Adding one twice does nothing.
PAVANE_API void AddResourceModule(const ResourceModule& module);

/// The first of that identifier in the modules, null when there is none.
PAVANE_API const MenuTemplate* FindMenuTemplate(unsigned id);
PAVANE_API const DlgTemplate* FindDialogTemplate(unsigned id);
PAVANE_API const CursorTemplate* FindCursorTemplate(unsigned id);
PAVANE_API const StringTemplate* FindString(unsigned id);
/// The text of that identifier, empty when there is none.
PAVANE_API CString LoadString(unsigned id);

}  // namespace pavane

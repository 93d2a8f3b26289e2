#include "platform/resources.h"

#include "posix/ForkGate.h"

#include <mutex>
#include <shared_mutex>
#include <vector>

namespace pavane
{

namespace
{

/// Of the modules, which hosts add to; their tables never change.
std::shared_mutex moduleLock;

std::vector<ResourceModule>& modules()
{
    // never destroyed: static windows of a host ask for their cursors late
    static auto* const made = new std::vector<ResourceModule>;
    return *made;
}

/// The first of `tables` with that identifier, in the module added last.
template <class Template>
const Template* find(const Template* ResourceModule::*table, int ResourceModule::*count,
                     unsigned id)
{
    const ForkGate gate;
    const std::shared_lock reading(moduleLock);
    for (auto module = modules().rbegin(); module != modules().rend(); ++module)
        for (int i = 0; i < (*module).*count; ++i)
            if (((*module).*table)[i].id == id)
                return (*module).*table + i;
    return nullptr;
}

bool same(const ResourceModule& a, const ResourceModule& b)
{
    return a.menus == b.menus && a.dialogs == b.dialogs && a.cursors == b.cursors &&
           a.strings == b.strings;
}

}  // namespace

void AddResourceModule(const ResourceModule& module)
{
    const ForkGate gate;
    const std::unique_lock filling(moduleLock);
    for (const ResourceModule& known : modules())
        if (same(known, module))
            return;
    modules().push_back(module);
}

const MenuTemplate* FindMenuTemplate(unsigned id)
{
    return find(&ResourceModule::menus, &ResourceModule::menuCount, id);
}

const DlgTemplate* FindDialogTemplate(unsigned id)
{
    return find(&ResourceModule::dialogs, &ResourceModule::dialogCount, id);
}

const CursorTemplate* FindCursorTemplate(unsigned id)
{
    return find(&ResourceModule::cursors, &ResourceModule::cursorCount, id);
}

const StringTemplate* FindString(unsigned id)
{
    return find(&ResourceModule::strings, &ResourceModule::stringCount, id);
}

CString LoadString(unsigned id)
{
    const StringTemplate* const found = FindString(id);
    return found && found->text ? found->text : "";
}

}  // namespace pavane

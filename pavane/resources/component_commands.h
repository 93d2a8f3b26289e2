#pragma once

#include "pavane/resources/mark_commands.h"
#include "pavane/resources/table_commands.h"

namespace pavane
{

/// The commands of the table of components. Ctrl goes with the key that deletes, since Del alone
/// clears cells.
inline constexpr TableCommand componentCommands[] = {
    {ID_COMPONENT_ADD, TableWhen::always, "&Add component\tIns", VK_INSERT},
    {ID_COMPONENT_COPY, TableWhen::hasSelection, "D&uplicate components\tCtrl+D", 'D',
     tableControl},
    {ID_COMPONENT_DELETE, TableWhen::hasSelection, "&Delete components\tCtrl+Del", VK_DELETE,
     tableControl},
};

inline constexpr MenuItem componentItems[] = {
    {componentCommands[0].text, componentCommands[0].id},
    {componentCommands[1].text, componentCommands[1].id},
    {componentCommands[2].text, componentCommands[2].id},
    {},
};

}  // namespace pavane

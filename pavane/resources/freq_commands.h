#pragma once

#include "pavane/resources/mark_commands.h"

namespace pavane
{

/// When a command of frequency groups would do something.
enum class FreqWhen : std::uint8_t {
    hasMarks,    ///< an IF is marked
    hasGroup,    ///< a selected cell shows a group
    hasGroups,   ///< there is a group
    hasIfs,      ///< there is an IF
    severalIfs,  ///< there is more than one
};

/// A command of frequency groups, of the table of IFs and of the list of groups.
struct FreqCommand {
    unsigned id;
    FreqWhen when;
    const char* text;    ///< of menus, as MenuItem has it
    const char* button;  ///< of the window; null for none
    int key;             ///< a digit, a capital letter or a VK_ code
    int held = 0;        ///< TableKeyHeld
};

inline constexpr FreqCommand freqCommands[] = {
    {ID_FREQ_ADD_GROUP, FreqWhen::hasMarks, "Add &group of marked IFs\tIns", "Add group",
     VK_INSERT},
    {ID_FREQ_DELETE_GROUP, FreqWhen::hasGroup, "&Delete group\tDel", "Delete group", VK_DELETE},
    {ID_FREQ_DELETE_ALL, FreqWhen::hasGroups, "Delete all g&roups\tCtrl+Del", nullptr, VK_DELETE,
     tableControl},
    {ID_FREQ_ALL_IN_ONE, FreqWhen::severalIfs, "All IFs in &one group\tCtrl+1", "All in one", '1',
     tableControl},
    {ID_FREQ_FIXED_STEP, FreqWhen::hasIfs, "Groups of a &fixed step...\tCtrl+T", "Fixed step...",
     'T', tableControl},
};

/// The line of a menu for one of the commands.
constexpr MenuItem freqItemOf(unsigned id)
{
    for (const FreqCommand& command : freqCommands)
        if (command.id == id)
            return {command.text, id};
    return {};
}

inline constexpr MenuItem freqGroupItems[] = {
    tableItemOf(ID_TABLE_UNDO),
    tableItemOf(ID_TABLE_REDO),
    {},
    freqItemOf(ID_FREQ_ADD_GROUP),
    freqItemOf(ID_FREQ_DELETE_GROUP),
    freqItemOf(ID_FREQ_DELETE_ALL),
    freqItemOf(ID_FREQ_ALL_IN_ONE),
    freqItemOf(ID_FREQ_FIXED_STEP),
    {},
    markItems[0],
    markItems[1],
    markItems[2],
    markItems[3],
    {},
    tableItemOf(ID_TABLE_COPY_SELECTION),
    tableItemOf(ID_TABLE_COPY_CELLS),
    tableItemOf(ID_TABLE_COPY_ALL),
    tableItemOf(ID_TABLE_SELECT_ALL),
    tableItemOf(ID_TABLE_SELECT_ROWS),
    tableItemOf(ID_TABLE_SELECT_COLUMNS),
    {},
    tableItemOf(ID_TABLE_FIND),
    tableItemOf(ID_TABLE_FIND_NEXT),
    tableItemOf(ID_TABLE_GO_TO_ROW),
    {},
    tableItemOf(ID_TABLE_SAVE_SELECTION),
    tableItemOf(ID_TABLE_SAVE_ALL),
    {"Copy p&icture", ID_COPY_TO_CLIPBOARD},
    {"Save picture as PN&G...", ID_COPY_TO_BMP},
};

inline constexpr MenuItem freqInfoItems[] = {
    tableItemOf(ID_TABLE_UNDO),
    tableItemOf(ID_TABLE_REDO),
    {},
    freqItemOf(ID_FREQ_DELETE_GROUP),
    freqItemOf(ID_FREQ_DELETE_ALL),
    {},
    tableItemOf(ID_TABLE_COPY_SELECTION),
    tableItemOf(ID_TABLE_COPY_CELLS),
    tableItemOf(ID_TABLE_COPY_ALL),
    tableItemOf(ID_TABLE_SELECT_ALL),
    {},
    tableItemOf(ID_TABLE_SAVE_SELECTION),
    tableItemOf(ID_TABLE_SAVE_ALL),
};

}  // namespace pavane

#pragma once

#include "pavane/resources/resource_ids.h"
#include "platform/menu_template.h"
#include "platform/messages.h"

#include <cstdint>

namespace pavane
{

/// When a command of a table would do something.
enum class TableWhen : std::uint8_t {
    always,
    hasCells,        ///< there are rows and data columns
    hasSelection,    ///< cells of the table are selected
    canSelectRange,  ///< more than one cell can be selected
    canEdit,         ///< the focus cell has an editor
    canClear,        ///< the selection may hold cells that can be edited
    canPaste,        ///< the same, and the clipboard has a text
    canUndo,
    canRedo,
    canSort,       ///< by the column of the focus cell
    canSizeColumn  ///< columns can be sized
};

/// Held with the key of a command, all of them and no others.
enum TableKeyHeld : int { tableControl = 1, tableShift = 2 };

/// A command of tables: whatever their menu and keys say of it.
struct TableCommand {
    unsigned id;
    TableWhen when;
    const char* text;  ///< of menus, as MenuItem has it
    int key = 0;       ///< a capital letter or a VK_ code; 0 for none of its own
    int held = 0;      ///< TableKeyHeld
};

inline constexpr TableCommand tableCommands[] = {
    {ID_TABLE_UNDO, TableWhen::canUndo, "&Undo\tCtrl+Z", 'Z', tableControl},
    {ID_TABLE_REDO, TableWhen::canRedo, "&Redo\tCtrl+Shift+Z", 'Z', tableControl | tableShift},
    {ID_TABLE_REDO, TableWhen::canRedo, "&Redo\tCtrl+Y", 'Y', tableControl},
    {ID_TABLE_EDIT, TableWhen::canEdit, "&Edit cell\tF2", VK_F2},
    {ID_TABLE_CLEAR, TableWhen::canClear, "C&lear cells\tDel", VK_DELETE},
    {ID_TABLE_COPY_SELECTION, TableWhen::hasSelection, "&Copy selection\tCtrl+C", 'C',
     tableControl},
    {ID_TABLE_COPY_CELLS, TableWhen::hasSelection, "Copy without &headers\tCtrl+Shift+C", 'C',
     tableControl | tableShift},
    {ID_TABLE_COPY_ALL, TableWhen::always, "Copy &table"},
    {ID_TABLE_PASTE, TableWhen::canPaste, "&Paste\tCtrl+V", 'V', tableControl},
    {ID_TABLE_SELECT_ALL, TableWhen::canSelectRange, "Select &all\tCtrl+A", 'A', tableControl},
    {ID_TABLE_SELECT_ROWS, TableWhen::canSelectRange, "Select ro&ws\tShift+Space", VK_SPACE,
     tableShift},
    {ID_TABLE_SELECT_COLUMNS, TableWhen::canSelectRange, "Select colu&mns\tCtrl+Space", VK_SPACE,
     tableControl},
    {ID_TABLE_FIND, TableWhen::hasCells, "&Find...\tCtrl+F", 'F', tableControl},
    {ID_TABLE_FIND_NEXT, TableWhen::hasCells, "Find &next\tF3", VK_F3},
    {ID_TABLE_FIND_PREVIOUS, TableWhen::hasCells, "Find pre&vious\tShift+F3", VK_F3, tableShift},
    {ID_TABLE_GO_TO_ROW, TableWhen::hasCells, "&Go to row...\tCtrl+G", 'G', tableControl},
    {ID_TABLE_SORT_UP, TableWhen::canSort, "Sort r&ising"},
    {ID_TABLE_SORT_DOWN, TableWhen::canSort, "Sort fall&ing"},
    {ID_TABLE_SORT_STORED, TableWhen::canSort, "&Order as stored"},
    {ID_TABLE_FIT_COLUMN, TableWhen::canSizeColumn, "Fit colum&n"},
    {ID_TABLE_COLUMN_WIDTH, TableWhen::canSizeColumn, "Column wi&dth..."},
    {ID_TABLE_SAVE_SELECTION, TableWhen::hasSelection, "&Save selection as text..."},
    {ID_TABLE_SAVE_ALL, TableWhen::always, "Save table as te&xt..."},
};

/// Null for a command that is none of these.
constexpr const TableCommand* tableCommandOf(unsigned id)
{
    for (const TableCommand& command : tableCommands)
        if (command.id == id)
            return &command;
    return nullptr;
}

/// The command of a key; null where none has it.
constexpr const TableCommand* tableCommandOfKey(int key, bool shift, bool control)
{
    const int held = (control ? tableControl : 0) | (shift ? tableShift : 0);
    for (const TableCommand& command : tableCommands)
        if (command.key == key && command.key != 0 && command.held == held)
            return &command;
    return nullptr;
}

/// The line of a menu for one of the commands.
constexpr MenuItem tableItemOf(unsigned id) { return {tableCommandOf(id)->text, id}; }

}  // namespace pavane

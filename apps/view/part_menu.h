#pragma once

#include "apps/view/main_menu.h"
#include "pavane/resources/resource_ids.h"

#include <cstdint>

namespace pavane
{

/// The parts of the window that F6 goes round.
enum class Part : std::uint8_t { map, numbers, model, planes, surface, areaNumbers, curves };

/// A line of the menu that means something else in each part: its text there, and the command of
/// the part's table. A null text: nothing of the kind there.
struct PartCommand {
    unsigned id;
    const char* onMap;
    const char* onNumbers;
    unsigned ofNumbers;
    const char* onModel;
    unsigned ofModel;
};

inline constexpr PartCommand partCommands[] = {
    {ID_TRACK_UNDO, commandOf(ID_TRACK_UNDO)->text, "&Undo\tCtrl+Z", ID_TABLE_UNDO, "&Undo\tCtrl+Z",
     ID_TABLE_UNDO},
    {ID_TRACK_REDO, commandOf(ID_TRACK_REDO)->text, "&Redo\tCtrl+Shift+Z", ID_TABLE_REDO,
     "&Redo\tCtrl+Shift+Z", ID_TABLE_REDO},
    {ID_TRACK_COPY, "Duplica&te areas\tCtrl+D", nullptr, 0, "Duplica&te components\tCtrl+D",
     ID_COMPONENT_COPY},
    {idDelete, "&Delete areas\tDel", "&Delete numbers\tDel", ID_TABLE_CLEAR,
     "&Delete components\tDel", ID_COMPONENT_DELETE},
    {ID_SELECT_ALL, commandOf(ID_SELECT_ALL)->text, "Select &all cells\tCtrl+A",
     ID_TABLE_SELECT_ALL, "Select &all cells\tCtrl+A", ID_TABLE_SELECT_ALL},
    {ID_VERTEX_INSERT, commandOf(ID_VERTEX_INSERT)->text, nullptr, 0, "Add c&omponent\tIns",
     ID_COMPONENT_ADD},
    {ID_COPY_TO_CLIPBOARD, copyPictureText, "Copy &cells\tCtrl+C", ID_TABLE_COPY_SELECTION,
     "Copy &cells\tCtrl+C", ID_TABLE_COPY_SELECTION},
    {idGoToPosition, goToPositionText, "Go &to row...\tCtrl+G", ID_TABLE_GO_TO_ROW,
     "Go &to row...\tCtrl+G", ID_TABLE_GO_TO_ROW},
    {idSaveAreas, "&Save areas\tCtrl+S", "&Save areas\tCtrl+S", 0, "&Save components\tCtrl+S", 0},
    {idSaveAreasAs, "Sav&e areas as...\tCtrl+Shift+S", "Sav&e areas as...\tCtrl+Shift+S", 0,
     "Sav&e components as...\tCtrl+Shift+S", 0},
};

class ATableWnd;

/// Runs what a command of the menu means in a table, of components or of numbers; 0 when it means
/// nothing of its own there.
int runInTable(ATableWnd& table, int isModel, unsigned id);
/// Texts and states of the lines that mean something else in that table.
void showForTable(CMenu& popup, ATableWnd& table, int isModel);

/// Null for a command that is the same everywhere.
constexpr const PartCommand* partCommandOf(unsigned id)
{
    for (const PartCommand& command : partCommands)
        if (command.id == id)
            return &command;
    return nullptr;
}

}  // namespace pavane

#include "apps/view/part_menu.h"

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CMenu.h"

namespace pavane
{

int runInTable(ATableWnd& table, int isModel, unsigned id)
{
    const PartCommand* const command = partCommandOf(id);
    const unsigned own = !command ? 0 : isModel ? command->ofModel : command->ofNumbers;
    return own != 0 && table.RunTableCommand(own);
}

void showForTable(CMenu& popup, ATableWnd& table, int isModel)
{
    const TableWatch watch(table);
    for (CMenu::Line& line : popup.lines()) {
        const PartCommand* const command = partCommandOf(line.id);
        const char* const text = !command  ? nullptr
                                 : isModel ? command->onModel
                                           : command->onNumbers;
        if (!text)
            continue;
        line.text = text;
        const unsigned own = isModel ? command->ofModel : command->ofNumbers;
        if (own == 0)
            continue;
        CMenu asked;
        asked.AppendMenu(text, own);
        table.amMenuParse(&asked);
        if (watch.gone())
            return;
        line.enabled = !asked.lines().empty() && asked.lines().front().enabled;
        if (line.enabled && (own == ID_TABLE_UNDO || own == ID_TABLE_REDO))
            line.text = asked.lines().front().text;  // names the step
    }
}

}  // namespace pavane

#include "pavane/printing/printer_state.h"

#include "pavane/printing/APrinter.h"
#include "pavane/printing/print_dialogs.h"

namespace pavane
{

namespace
{

int abortFlag = 0;
bool isTaken = false;
ResourceModule hostModule;

}  // namespace

int* GetAPrinterAbort() { return &abortFlag; }
void SetPrinterResource(const ResourceModule& module) { hostModule = module; }

const DlgTemplate& printDialogTemplate()
{
    for (int i = 0; hostModule.dialogs && i < hostModule.dialogCount; ++i)
        if (hostModule.dialogs[i].id == IDD_PRINT)
            return hostModule.dialogs[i];
    return printTemplate;
}

PrinterTurn::PrinterTurn() : has_(!isTaken) { isTaken = true; }
PrinterTurn::~PrinterTurn()
{
    if (has_)
        isTaken = false;
}

}  // namespace pavane

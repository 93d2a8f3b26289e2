#include "apps/view/print_commands.h"

#include "apps/view/main_menu.h"
#include "pavane/printing/APrinter.h"
#include "platform/CWinApp.h"

namespace pavane
{

namespace
{

/// Printer, paper and direction hold for all windows of the program.
CWinApp& program()
{
    static CWinApp app;
    return app;
}

}  // namespace

PrintCommands::PrintCommands() = default;
PrintCommands::~PrintCommands() = default;

int PrintCommands::run(unsigned id, ABWindow& part, const std::string& title, CWnd& window)
{
    if (id != idPrint && id != idPrintPreview && id != idPageSetup)
        return 0;
    if (!out_ || out_->GetTitle() != title)
        out_ = std::make_unique<APrintOut>(title);
    out_->SetPrintWindow(&part);
    program().SetMainWnd(&window);
    APrinter printer(&program());
    (void)(id == idPrint          ? printer.Printing(out_.get())
           : id == idPrintPreview ? printer.Preview(out_.get())
                                  : printer.PageSetup(out_.get()));
    return 1;
}

}  // namespace pavane

#pragma once

#include "pavane/printing/APrintOut.h"
#include "pavane/printing/PrinterList.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// The print dialog (template 10001): printer, range, copies, and the print-out's own controls.
/// `info` has what was chosen when it ends with OK; `info->dialog` is its handle while it is open.
class APrintDialog : public AResizeDialog
{
public:
    APrintDialog(APrinter* printer, APrintOut& out, CPrintInfo& info, CWnd* owner);

protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    int chosenLine() const;
    void fillList();
    void choosePrinter();
    void showPrinter();
    void takeControls();
    void takeTypedRange(unsigned id);
    void setUpPage();
    void showProperties();

    APrinter* printer_;
    APrintOut& out_;
    CPrintInfo& info_;
    PrinterList printers_;
    int userChose_ = 0;
};

}  // namespace pavane

#pragma once

#include "platform/dialog_template.h"

namespace pavane
{

/// The template of the print dialog: the host's, else the library's.
const DlgTemplate& printDialogTemplate();

/// The turn of one job, preview or page set-up: true for whoever begins while nobody else is at it.
class PrinterTurn
{
public:
    PrinterTurn();
    PrinterTurn(const PrinterTurn&) = delete;
    PrinterTurn& operator=(const PrinterTurn&) = delete;
    ~PrinterTurn();
    explicit operator bool() const { return has_; }

private:
    bool has_;
};

}  // namespace pavane

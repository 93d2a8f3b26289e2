#pragma once

#include "platform/messages.h"
#include "platform/print_settings.h"
#include "platform/printer_info.h"

namespace pavane
{

/// A print command on its way: what was chosen, which pages there are and which one is drawn.
struct CPrintInfo {
    CPrintSettings settings;
    int minPage = 1;
    int maxPage = 1;
    int from = 1;
    int to = 1;
    int currentPage = 1;
    int printToFile = 0;       ///< non-zero: settings.file gets the document
    int direct = 0;            ///< non-zero: nobody is asked
    int preview = 0;           ///< non-zero while a preview is drawn
    int continuePrinting = 1;  ///< a print-out sets 0 to end the job before its last page
    int numPreviewPages = 0;
    int rangeIsPages = 0;  ///< non-zero: from and to were chosen, else all pages
    CString pageDescription;
    HWND dialog = 0;      ///< of the print dialog while it is open
    PrinterInfo printer;  ///< the chosen queue; without a name for a file
};

}  // namespace pavane

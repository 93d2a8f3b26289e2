#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// A size of paper that a printer offers, upright, in hundredths of a millimetre.
struct PrinterPaper {
    CString name;
    int cx = 0;
    int cy = 0;
};

/// What is known of a print queue. A text stays empty and a switch -1 where it does not tell.
struct PrinterInfo {
    CString name;  ///< of the queue; empty: no queue, a file
    CString status;
    CString type;
    CString place;
    CString comment;
    int isDefault = 0;
    int accepts = 1;
    int color = -1;
    int duplex = -1;
    std::vector<PrinterPaper> papers;
    CRect leastMargins;  ///< hundredths of a millimetre from each edge; all zero: not told
    int dpi = 0;         ///< 0: not told
};

}  // namespace pavane

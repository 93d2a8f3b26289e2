#pragma once

#include "platform/types.h"

namespace pavane
{

/// How a job is printed when nobody is asked. An empty text and a number of 0 stand for what the
/// printer, the locale or the print-out has by itself; of switches 1 is yes and -1 no.
struct CPrintSettings {
    CString printer;    ///< name of a queue
    CString file;       ///< a PDF in the place of a queue
    CString paper;      ///< "A4", "Letter" ... or width by height in millimetres, "210x297"
    int landscape = 0;  ///< switch
    int dpi = 0;        ///< dots per inch, 600 by itself
    int copies = 0;     ///< a file gets one all the same
    int collate = 0;    ///< switch
    int sides = 0;      ///< 1 one, 2 two that turn about the long edge, 3 about the short one
    int gray = 0;       ///< switch
    int from = 0;       ///< first page, from 1
    int to = 0;         ///< last page
};

}  // namespace pavane

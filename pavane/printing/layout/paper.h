#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

/// A sheet; upright, in hundredths of a millimetre.
struct PaperSize {
    CString name;
    int width = 0, height = 0;
    friend bool operator==(const PaperSize&, const PaperSize&) = default;
};

/// A0 to A6, Letter, Legal and Tabloid.
PAVANE_API const std::vector<PaperSize>& knownPapers();
/// A known paper by its name, upper or lower case, or an own one by its width and height in
/// millimetres, "210x297", 20 to 2000 each; its name is then that text and it may lie. Non-zero on
/// success; else 0, `paper` is left alone and `error` is one line.
PAVANE_API int readPaper(const CString& text, PaperSize& paper, CString& error);

/// The paper that is usual where a locale ("en_US.UTF-8") is: Letter in a part of the Americas and
/// in the Philippines, else A4.
PAVANE_API CString paperOfLocale(const CString& locale);
/// The same for the locale of the environment: LC_ALL, LC_PAPER or LANG.
PAVANE_API CString localePaper();

/// Width and height of the sheet as it is printed, turned for `landscape`.
PAVANE_API CSize sheetOf(const PaperSize& paper, int landscape);

}  // namespace pavane

#pragma once

namespace pavane
{

// A range of pages that cannot be printed; numbers follow, with the second text between them.
inline constexpr const char* notInPageRange =
    "This value is no within the page range.\nEnter a number between ";
inline constexpr const char* pageRangeAnd = " and ";

/// The button for all pages when there is one; with several their number stands inside.
inline constexpr const char* allPages = "&All";
inline constexpr const char* allPagesStart = "&All ";
inline constexpr const char* allPagesEnd = " pages";

// Margins and papers that leave no page. Lengths in millimetres stand in or behind the texts.
inline constexpr const char* marginSides[] = {"left", "top", "right", "bottom"};
inline constexpr const char* marginBelowLeast = " margin must be at least ";
inline constexpr const char* noPrintableArea =
    "The margins must leave an area of at least 10 mm by 10 mm on the paper.";
inline constexpr const char* noPaper = "The paper has no size.";
inline constexpr const char* resolutionBeyond =
    " dots per inch cannot be printed: 36 to 4800 are possible.";

// Why a job ended before its last page. A reason, or the number of a page, follows those that end
// in a blank.
inline constexpr const char* jobNotStarted = "Printing could not be started: ";
inline constexpr const char* pageNotPrinted = "Printing has ended at page ";
inline constexpr const char* fileNotPrinted = "The document could not be finished: ";
inline constexpr const char* queueRefused = "The printer did not take the document: ";
inline constexpr const char* offerToSave = "\nSave the pages as a PDF file?";
inline constexpr const char* fileNotSaved = "The pages could not be saved: ";
inline constexpr const char* printWindowGone = "The window that was being printed is gone.";
inline constexpr const char* jobStopped = "Printing was stopped.";
inline constexpr const char* anotherJob = "Another document is being printed.";
inline constexpr const char* noPrinterKnown = "There is no printer, and no file was named.";

// What the box of a job and the dialogs show.
inline constexpr const char* printingPage = "Page ";
inline constexpr const char* printToFileTitle = "Print to file";
inline constexpr const char* untitled = "Untitled";
inline constexpr const char* printerAsked = "Asking for printers...";
inline constexpr const char* printerReady = "Ready";
inline constexpr const char* printerRejects = "Rejects jobs";
inline constexpr const char* printerUnknown = "Not known to the print system";
inline constexpr const char* noQueues = "No printers: ";
inline constexpr const char* fileType = "PDF document";
inline constexpr const char* fileWhere = "A file that you name";
inline constexpr const char* firstNumberRange = "Enter a whole number between 1 and 99999.";
inline constexpr const char* notMillimetres = "Enter millimetres, such as 12.5.";
inline constexpr const char* notOwnPaper = "A sheet is 20 to 2000 mm wide and high.";
inline constexpr const char* ownPaper = "Own size";
inline constexpr const char* printerSides[] = {"As the printer does", "One side",
                                               "Two sides, turned about the long edge",
                                               "Two sides, turned about the short edge"};
inline constexpr const char* printerColors[] = {"Colours", "Grey"};
inline constexpr const char* dotsPerInch = " dots per inch";
inline constexpr const char* copiedAt = "Copied to the clipboard at ";
inline constexpr const char* copyTooLarge = ", the most for a sheet of this size";
inline constexpr const char* shrunkTo = "   The columns fit at ";
inline constexpr const char* copyRefused = "The clipboard does not take the page.";

}  // namespace pavane

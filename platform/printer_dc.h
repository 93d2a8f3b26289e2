#pragma once

#include "platform/CDC.h"

namespace pavane
{

/// Asked while a job is drawn; 0 stops it.
using AbortProc = int (*)(CDC& dc);

/// A printer, whose jobs are PDF files: fonts are embedded and text stays text.
///
/// Between pages it answers as the printer does (caps, fonts, measures of text) and draws nothing.
/// A unit is a dot; the whole sheet can be drawn on, its corner is the origin. Pages go to the disk
/// one by one. Until EndDoc the file has no name, so that a job that is killed, aborted or fails
/// leaves what was there before.
class PAVANE_API CPrinterDC : public CDC
{
public:
    /// `sheet` in hundredths of a millimetre, as it lies; `dpi` dots per inch, 600 for 0. With a
    /// non-zero `gray` colours are printed as grey.
    explicit CPrinterDC(const CSize& sheet, int dpi = 600, int gray = 0);
    /// Aborts an open document.
    ~CPrinterDC() override;

    /// Size of the pages that follow, as for the constructor. 0 while a page is open, or for a
    /// sheet of no size; fonts, pens, mapping and clip stay.
    int ResetDC(const CSize& sheet);
    const CSize& sheet() const;

    /// Opens a document that EndDoc gives the name `file`; an empty name makes one for EndDocKeep.
    /// Non-zero on success, else `error` is one line on why not.
    int StartDoc(const CString& title, const CString& file, CString& error);
    /// Non-zero on success. Otherwise, as with EndPage, lastError tells and AbortDoc is due.
    int StartPage();
    int EndPage();
    /// Writes the end and gives the file its name; non-zero on success, else as AbortDoc.
    int EndDoc(CString& error);
    /// The same for a document without a name: `temporary` is where it is. The caller removes it;
    /// what a killed program could not remove is removed by the next one's StartDoc.
    int EndDocKeep(CString& temporary, CString& error);
    /// Forgets the document; non-zero if there was one.
    int AbortDoc();

    /// `proc` is asked every 50 ms while something is drawn, in the middle of long curves too. Once
    /// it has answered 0 nothing more is drawn and the job can only be aborted. Null: nobody.
    int SetAbortProc(AbortProc proc);
    int isAborted() const;
    /// One line on why the last call failed.
    const CString& lastError() const;

private:
    struct Job;
    int finish(CString& error);
    std::unique_ptr<Job> job_;
};

}  // namespace pavane

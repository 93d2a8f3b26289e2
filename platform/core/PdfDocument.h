#pragma once

#include "platform/core/PdfContent.h"

namespace pavane
{

/// Pages on their way to a PDF file, one after the other. Equal pages give equal bytes whenever
/// they are written. What is not finished is for the caller to forget.
class PdfDocument
{
public:
    /// `dpi` units are an inch; `goesOn` is asked while pictures are packed.
    PdfDocument(PdfFile::Sink sink, const CString& title, int dpi, std::function<bool()> goesOn);
    /// Begins a page of `sheet`, points of 1/72 inch, and `size` units. Non-zero on success.
    int startPage(CPointF sheet, CSize size);
    /// What the open page is drawn on; the same for all pages.
    VectorDevice& device() { return content_; }
    int endPage();
    /// Writes what follows the last page; nothing may come after it.
    int finish();
    /// Why one of them failed: a clause without its subject.
    CString fault() const;

private:
    PdfFile file_;
    PdfFonts fonts_;
    PdfContent content_;
    CString title_;
    double unit_;
    CPointF sheet_;
    int pages_;
    int fontNames_;
    std::vector<int> kids_;
};

}  // namespace pavane

#include "platform/core/PdfDocument.h"

#include "posix/plain_file.h"

#include <utility>

namespace pavane
{

PdfDocument::PdfDocument(PdfFile::Sink sink, const CString& title, int dpi,
                         std::function<bool()> goesOn)
    : file_(std::move(sink)), content_(file_, fonts_, std::move(goesOn)), title_(title),
      unit_(72.0 / dpi), pages_(file_.newObject()), fontNames_(file_.newObject())
{
}

int PdfDocument::startPage(CPointF sheet, CSize size)
{
    sheet_ = sheet;
    content_.startPage(size, unit_, sheet.y);
    return file_.error() == 0;
}

int PdfDocument::endPage()
{
    const std::string uses = content_.endPage(fontNames_);
    kids_.push_back(file_.newObject());
    std::string text = "<</Type/Page/Parent " + pdfReference(pages_) + "/MediaBox[0 0 ";
    putNumber(text, sheet_.x);
    text += ' ';
    putNumber(text, sheet_.y);
    file_.object(kids_.back(), text + ']' + uses + ">>");
    return file_.error() == 0;
}

int PdfDocument::finish()
{
    constexpr CPointF a4{595.276, 841.89};
    // a document has a page
    if (kids_.empty() && !(startPage(a4, {1, 1}) && endPage()))
        return 0;
    fonts_.write(file_, fontNames_);
    std::string tree = "<</Type/Pages/Count " + std::to_string(kids_.size()) + "/Kids[";
    for (const int kid : kids_)
        tree += pdfReference(kid) + '\n';
    file_.object(pages_, tree + "]>>");
    const int catalogue = file_.newObject();
    file_.object(catalogue, "<</Type/Catalog/Pages " + pdfReference(pages_) + ">>");
    const int information = file_.newObject();
    file_.object(information, "<</Title" + pdfText(title_) + "/Creator(pavane)/Producer(pavane)>>");
    return file_.finish(catalogue, information);
}

CString PdfDocument::fault() const { return systemFault("cannot be written", file_.error()); }

}  // namespace pavane

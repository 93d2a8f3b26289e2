#include "platform/core/PdfDocument.h"

#include "posix/plain_file.h"

namespace pavane
{

namespace
{

constexpr double pointsPerUnit = 72.0 / 2540;  // of a sheet

}  // namespace

PdfDocument::PdfDocument(int descriptor, const CString& title, int dpi,
                         std::function<bool()> goesOn)
    : file_(descriptor), content_(file_, fonts_, std::move(goesOn)), title_(title),
      unit_(72.0 / dpi), pages_(file_.newObject()), fontNames_(file_.newObject())
{
}

int PdfDocument::startPage(CSize sheet, CSize size)
{
    sheet_ = sheet;
    content_.startPage(size, unit_, sheet.cy * pointsPerUnit);
    return file_.error() == 0;
}

int PdfDocument::endPage()
{
    const std::string uses = content_.endPage(fontNames_);
    kids_.push_back(file_.newObject());
    std::string text = "<</Type/Page/Parent " + pdfReference(pages_) + "/MediaBox[0 0 ";
    putNumber(text, sheet_.cx * pointsPerUnit);
    text += ' ';
    putNumber(text, sheet_.cy * pointsPerUnit);
    file_.object(kids_.back(), text + ']' + uses + ">>");
    return file_.error() == 0;
}

int PdfDocument::finish()
{
    constexpr CSize a4{21000, 29700};
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

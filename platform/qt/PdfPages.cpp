#include "platform/qt/PdfPages.h"

#include "posix/plain_file.h"

#include <cerrno>
#include <QPageSize>

namespace pavane
{

qint64 GrowingFile::writeData(const char* bytes, qint64 count)
{
    if (error_ == 0 && !writeAll(descriptor_, {bytes, static_cast<std::size_t>(count)}))
        error_ = errno;
    return count;  // the writer would not hear of it
}

PdfPages::PdfPages(int descriptor, const CString& title, int dpi, FontTable& fonts)
    : fonts_(fonts), file_(descriptor), pdf_(&file_)
{
    pdf_.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf_.setResolution(dpi);
    pdf_.setTitle(textOf(title));
    pdf_.setCreator(QStringLiteral("pavane"));
}

int PdfPages::startPage(CSize sheet, CSize size)
{
    constexpr double points = 72.0 / 2540;
    pdf_.setPageSize(QPageSize(QSizeF(sheet.cx * points, sheet.cy * points), QPageSize::Point,
                               QString(), QPageSize::ExactMatch));
    if (!painter_)
        painter_ = std::make_unique<PainterDevice>(&pdf_, size, pdf_.resolution() / 96.0, fonts_);
    else if (!pdf_.newPage())
        return 0;
    painter_->setSize(size);
    return painter_->isActive() && file_.error() == 0;
}

int PdfPages::finish()
{
    // a document has a page
    return (painter_ || startPage({21000, 29700}, {1, 1})) && painter_->finish() &&
           file_.error() == 0;
}

CString PdfPages::fault() const { return systemFault("cannot be written", file_.error()); }

}  // namespace pavane

#pragma once

#include "platform/core/PageDocument.h"
#include "platform/qt/PainterDevice.h"

#include <QIODevice>
#include <QPdfWriter>

namespace pavane
{

/// An open file of somebody else that only grows, and remembers the first failure.
class GrowingFile : public QIODevice
{
public:
    explicit GrowingFile(int descriptor) : descriptor_(descriptor)
    {
        (void)open(QIODevice::WriteOnly);
    }
    bool isSequential() const override { return true; }
    int error() const { return error_; }  ///< a value of errno

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override;

private:
    int descriptor_;
    int error_ = 0;
};

/// Pages of a PDF file by the toolkit's writer.
class PdfPages : public PageDocument
{
public:
    PdfPages(int descriptor, const CString& title, int dpi, FontTable& fonts);
    int startPage(CSize sheet, CSize size) override;
    VectorDevice& device() override { return *painter_; }
    int endPage() override { return file_.error() == 0; }
    int finish() override;
    CString fault() const override;

private:
    FontTable& fonts_;
    GrowingFile file_;
    QPdfWriter pdf_;
    std::unique_ptr<PainterDevice> painter_;
};

}  // namespace pavane

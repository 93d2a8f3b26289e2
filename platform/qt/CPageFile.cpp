#include "platform/core/file_output.h"
#include "platform/core/png_bytes.h"
#include "platform/core/PrintedPage.h"
#include "platform/core/SvgDevice.h"
#include "platform/picture.h"
#include "platform/qt/PainterDevice.h"
#include "platform/qt/QtGraphics.h"
#include "posix/ForkGate.h"

#include <algorithm>
#include <functional>
#include <new>
#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>

namespace pavane
{

namespace
{

constexpr int greatestSide = 32768;
constexpr int greatestScale = 48;

/// What a page draws on until its file is written.
class PageBackend : public DeviceBackend
{
public:
    PageBackend(CSize size, int scale, PictureGround ground, PrintedPage& page)
        : size_(size), scale_(scale), ground_(ground), page_(page)
    {
    }
    bool isTransparent() const override { return ground_ == PictureGround::transparent; }
    CSize size() const override { return size_; }
    double scale() const override { return scale_; }
    VectorDevice* page() override { return &page_; }
    bool isStopped() const override { return page_.isStopped(); }
    const StopFlag* stopFlag() const override { return &page_.stopFlag(); }

private:
    CSize size_;
    int scale_;
    PictureGround ground_;
    PrintedPage& page_;
};

}  // namespace

/// Members in the order of need: the context draws on the device, which writes to the buffer.
struct CPageFile::Data {
    QBuffer buffer;
    std::unique_ptr<QPdfWriter> pdf;
    std::unique_ptr<PainterDevice> painter;
    std::unique_ptr<SvgDevice> svg;
    PrintedPage page{0};
    std::unique_ptr<CDC> dc;
};

CPageFile::CPageFile(Format format, int width, int height, const CString& title, int scale,
                     PictureGround ground)
    : data_(std::make_unique<Data>())
{
    width = std::clamp(width, 1, greatestSide);
    height = std::clamp(height, 1, greatestSide);
    scale = std::clamp(scale, 1, greatestScale);
    const CSize size{width * scale, height * scale};
    VectorDevice* device = nullptr;
    const auto hook = dynamic_cast<QtGraphics*>(graphicsHook());
    if (format == Format::svg) {
        data_->svg = std::make_unique<SvgDevice>(size, scale, title);
        device = data_->svg.get();
    } else if (hook) {
        const ForkGate gate;
        data_->buffer.open(QIODevice::WriteOnly);
        data_->pdf = std::make_unique<QPdfWriter>(&data_->buffer);
        data_->pdf->setPageSize(QPageSize(QSizeF(width * 0.75, height * 0.75), QPageSize::Point,
                                          QString(), QPageSize::ExactMatch));
        data_->pdf->setPageMargins(QMarginsF(0, 0, 0, 0));
        data_->pdf->setResolution(96 * scale);
        data_->pdf->setTitle(textOf(title));
        data_->pdf->setCreator(QStringLiteral("pavane"));
        data_->painter =
            std::make_unique<PainterDevice>(data_->pdf.get(), size, scale, hook->fonts());
        device = data_->painter.get();
    }
    data_->page.drawOn(device);
    data_->dc =
        device
            ? std::make_unique<CDC>(std::make_unique<PageBackend>(size, scale, ground, data_->page))
            : std::make_unique<CDC>();
}

CPageFile::~CPageFile() = default;

CDC& CPageFile::dc() { return *data_->dc; }

int CPageFile::NewPage()
{
    const ForkGate gate;
    return data_->pdf && data_->painter && data_->pdf->newPage();
}

void CPageFile::AskBefore(std::function<int()> goesOn) { data_->page.askBefore(std::move(goesOn)); }

int CPageFile::CloseBytes(std::vector<unsigned char>& bytes, CString& error)
{
    error.clear();
    if (data_->dc->isStopped()) {
        error = pictureGivenUp;
        return 0;
    }
    data_->dc = std::make_unique<CDC>();  // the page takes nothing more
    if (data_->svg) {
        const std::string text = data_->svg->finished();
        data_->svg.reset();
        bytes.assign(text.begin(), text.end());
        return 1;
    }
    CString why;
    if (!CPicture::CanDrawText(&why)) {
        error = "The page could not be drawn: " + why;
        return 0;
    }
    const ForkGate gate;
    if (!data_->painter || !data_->painter->finish()) {
        error = "The page could not be drawn";
        return 0;
    }
    data_->painter.reset();
    data_->pdf.reset();
    const QByteArray& made = data_->buffer.data();
    bytes.assign(made.begin(), made.end());
    return 1;
}

int CPageFile::Close(const CString& file, CString& error)
{
    std::vector<unsigned char> bytes;
    return CloseBytes(bytes, error) &&
           writeWhole(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, error);
}

}  // namespace pavane

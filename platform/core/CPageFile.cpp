#include "platform/core/file_output.h"
#include "platform/core/PdfDocument.h"
#include "platform/core/png_bytes.h"
#include "platform/core/PrintedPage.h"
#include "platform/core/SvgDevice.h"
#include "platform/picture.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr int greatestSide = 32768;
constexpr int greatestScale = 48;
constexpr int pixelsPerInch = 96;
constexpr double pointsPerPixel = 72.0 / pixelsPerInch;

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

/// Members in the order of need: the context draws on the page, which passes it to the document.
struct CPageFile::Data {
    CPointF sheet;  ///< points of 1/72 inch
    CSize size;     ///< units
    std::vector<unsigned char> bytes;
    std::unique_ptr<PdfDocument> pdf;
    std::unique_ptr<SvgDevice> svg;
    PrintedPage page{0};
    std::unique_ptr<CDC> dc;

    /// 0, or ENOMEM.
    int keep(std::string_view more)
    {
        try {
            bytes.insert(bytes.end(), more.begin(), more.end());
        } catch (const std::bad_alloc&) {
            return ENOMEM;
        }
        return 0;
    }
};

CPageFile::CPageFile(Format format, int width, int height, const CString& title, int scale,
                     PictureGround ground)
    : data_(std::make_unique<Data>())
{
    width = std::clamp(width, 1, greatestSide);
    height = std::clamp(height, 1, greatestSide);
    scale = std::clamp(scale, 1, greatestScale);
    data_->sheet = {width * pointsPerPixel, height * pointsPerPixel};
    data_->size = {width * scale, height * scale};
    VectorDevice* device = nullptr;
    if (format == Format::svg) {
        data_->svg = std::make_unique<SvgDevice>(data_->size, scale, title);
        device = data_->svg.get();
    } else if (graphicsHook()) {
        data_->pdf = std::make_unique<PdfDocument>(
            [data = data_.get()](std::string_view bytes) { return data->keep(bytes); }, title,
            pixelsPerInch * scale, [data = data_.get()] { return !data->dc->isStopped(); });
        (void)data_->pdf->startPage(data_->sheet, data_->size);
        device = &data_->pdf->device();
    }
    data_->page.drawOn(device);
    data_->dc = device ? std::make_unique<CDC>(
                             std::make_unique<PageBackend>(data_->size, scale, ground, data_->page))
                       : std::make_unique<CDC>();
}

CPageFile::~CPageFile() = default;

CDC& CPageFile::dc() { return *data_->dc; }

int CPageFile::NewPage()
{
    if (!data_->pdf || !data_->pdf->endPage() || !data_->pdf->startPage(data_->sheet, data_->size))
        return 0;
    (void)data_->dc->SaveDC();
    (void)data_->dc->RestoreDC(-1);  // the new page hears of the clip
    return 1;
}

void CPageFile::AskBefore(std::function<int()> goesOn) { data_->page.askBefore(std::move(goesOn)); }

int CPageFile::CloseBytes(std::vector<unsigned char>& bytes, CString& error)
{
    error.clear();
    if (data_->dc->isStopped()) {
        error = pictureGivenUp;
        return 0;
    }
    data_->page.drawOn(nullptr);  // it takes nothing more
    if (const auto svg = std::move(data_->svg)) {
        const std::string text = svg->finished();
        bytes.assign(text.begin(), text.end());
        return 1;
    }
    CString why;
    if (!CPicture::CanDrawText(&why)) {
        error = "The page could not be drawn: " + why;
        return 0;
    }
    const auto pdf = std::move(data_->pdf);
    if (!pdf || !pdf->endPage() || !pdf->finish()) {
        error = "The page could not be drawn";
        return 0;
    }
    if (data_->dc->isStopped()) {
        error = pictureGivenUp;
        return 0;
    }
    bytes = std::move(data_->bytes);
    return 1;
}

int CPageFile::Close(const CString& file, CString& error)
{
    std::vector<unsigned char> bytes;
    return CloseBytes(bytes, error) &&
           writeWhole(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, error);
}

}  // namespace pavane

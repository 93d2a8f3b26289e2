#pragma once

#include "platform/core/DeviceBackend.h"
#include "posix/StopFlag.h"

#include <functional>
#include <vector>

namespace pavane
{

/// What a printer's context draws on: passes everything to the open page, while the job goes on.
class PrintedPage : public VectorDevice
{
public:
    explicit PrintedPage(int gray) : gray_(gray) {}
    /// `device` gets what is drawn; null: nobody.
    void drawOn(VectorDevice* device) { device_ = device; }
    /// `goesOn` is asked now and then; after the first 0 nothing is passed on any more.
    void askBefore(std::function<int()> goesOn) { stop_.ask(std::move(goesOn)); }
    /// Asks when it is time to; whether drawing goes on.
    bool goesOn() const { return !stop_.isStopped(); }
    bool isStopped() const { return !goesOn(); }
    const StopFlag& stopFlag() const { return stop_; }
    /// A new document.
    void restart() { stop_.clear(); }

    void setClip(const CRgn::Data* clip) override;
    void polyline(const CPointF* points, std::size_t count, const StrokeStyle& pen) override;
    void polygon(const CPointF* points, std::size_t count, bool winding, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void ellipse(CPointF centre, double radiusX, double radiusY, const StrokeStyle& pen,
                 const FillStyle& brush) override;
    void fillRect(const CRect& rect, const FillStyle& brush) override;
    void image(const CRect& target, const ImageView& image) override;
    void text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color) override;

private:
    std::uint32_t inked(std::uint32_t color) const;
    StrokeStyle inked(StrokeStyle pen) const;
    FillStyle inked(FillStyle brush) const;

    int gray_;
    VectorDevice* device_ = nullptr;
    StopFlag stop_;
};

/// A sheet of paper at a resolution. A sheet has an even number of dots: those of the usual sizes
/// are then the usual numbers, as 4960 x 7016 for A4 at 600 dots per inch.
class PrinterBackend : public DeviceBackend
{
public:
    PrinterBackend(CSize sheet, int dpi, int gray);
    CSize size() const override { return size_; }
    double scale() const override { return dpi_ / 96.0; }
    double hairline() const override { return 0.5 * scale(); }
    std::size_t pointsAtOnce() const override { return 20000; }
    bool isStopped() const override { return page_.isStopped(); }
    const StopFlag* stopFlag() const override { return &page_.stopFlag(); }
    VectorDevice* page() override { return &page_; }

    int setSheet(CSize sheet);
    const CSize& sheet() const { return sheet_; }
    int dpi() const { return dpi_; }
    PrintedPage& printed() { return page_; }

private:
    CSize sheet_;
    int dpi_;
    CSize size_;
    PrintedPage page_;
};

}  // namespace pavane

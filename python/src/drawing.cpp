#include "python/src/drawing.h"

#include "pavane/axes/ABAxis.h"
#include "platform/picture_bytes.h"
#include "platform/picture_file.h"
#include "platform/window_dc.h"
#include "python/src/bind.h"
#include "python/src/errors.h"
#include "python/src/platform_use.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <new>
#include <pybind11/stl.h>
#include <unistd.h>

namespace pavane::python
{

namespace
{

constexpr int screenDpi = 96;
constexpr int unitsPerPixel = 12;
constexpr int mostRatio = 8;
constexpr std::chrono::milliseconds betweenLooks{50};
constexpr const char* noMemory = "there is no memory for a picture of this size";

}  // namespace

void DrawingLock::take(const StopFlag& stop)
{
    while (!mutex_.try_lock_for(betweenLooks)) {
        if (stop.isStopped())
            throw std::runtime_error("the drawing was given up");
        if (const int holder = process_.load(); holder && holder != getpid())
            throw std::runtime_error("this process was forked while another thread drew this "
                                     "figure: fork before drawing, or use spawn");
    }
    process_ = getpid();
}

void DrawingLock::drop()
{
    process_ = 0;
    mutex_.unlock();
}

Drawing::Drawing(int width, int height) : width_(width), height_(height) {}

Drawing::~Drawing() = default;

std::shared_ptr<const CPicture> Drawing::drawn(int ratio, PictureGround ground,
                                               const StopFlag& stop, CString& error)
{
    const bool isUsual = ratio == 1 && ground == PictureGround::white;
    if (isUsual && kept_)
        return kept_;
    const RunningPlatform platform;
    error = platform.fault();
    if (!error.empty())
        return nullptr;
    auto picture = std::make_shared<CPicture>(width_ * ratio, height_ * ratio, ground, &stop);
    if (stop.isStopped())
        return nullptr;
    CBitmap bitmap;
    if (!picture->width() || (ratio > 1 && !bitmap.CreateBitmap(width_, height_, ratio))) {
        error = noMemory;
        return nullptr;
    }
    const std::unique_ptr<CDC> dc = ratio > 1 ? std::make_unique<CMemoryDC>(bitmap) : picture->dc();
    dc->setStop(&stop);
    draw(*dc, CRect(0, 0, width_, height_));
    if (stop.isStopped())
        return nullptr;
    const std::uint32_t* from = bitmap.bits();
    for (int y = 0; ratio > 1 && y < picture->height(); ++y, from += picture->width())
        std::copy_n(from, picture->width(), picture->row(y));
    if (isUsual)
        kept_ = picture;
    return picture;
}

std::shared_ptr<const CPicture> Drawing::picture(int ratio, PictureGround ground)
{
    if (ratio < 1 || ratio > mostRatio)
        throw py::value_error("a ratio is a whole number from 1 to 8");
    if (ratio > 1 && ground == PictureGround::transparent)
        throw py::value_error("a transparent picture has a ratio of 1");
    check();
    std::shared_ptr<const CPicture> result;
    CString error;
    runFree([&](Interrupts& interrupts) {
        const DrawingLock::Hold hold(lock_, interrupts.flag());
        result = drawn(ratio, ground, interrupts.flag(), error);
    });
    if (result)
        return result;
    if (error == noMemory)
        throw std::bad_alloc();
    throw std::runtime_error(error);
}

template <typename Close>
void Drawing::makePage(const std::string& format, PictureGround ground, const Close& close)
{
    check();
    CString error;
    int isStarted = 0;
    runFree([&](Interrupts& interrupts) {
        const DrawingLock::Hold hold(lock_, interrupts.flag());
        const RunningPlatform platform;
        error = platform.fault();
        isStarted = error.empty();
        if (!isStarted)
            return;
        CPageFile page(format == "pdf" ? CPageFile::Format::pdf : CPageFile::Format::svg, width_,
                       height_, title(), unitsPerPixel, ground);
        page.dc().setStop(&interrupts.flag());
        draw(page.dc(), CRect(0, 0, width_ * unitsPerPixel, height_ * unitsPerPixel));
        close(page);
    });
    if (!isStarted)
        throw std::runtime_error(error);
}

void Drawing::save(const CString& file, const std::string& format, int ratio, bool isTransparent)
{
    const PictureGround ground = isTransparent ? PictureGround::transparent : PictureGround::white;
    CString error;
    int isWritten = 0;
    if (format != "png") {
        makePage(format, ground, [&](CPageFile& page) { isWritten = page.Close(file, error); });
    } else {
        const std::shared_ptr<const CPicture> whole = picture(ratio, ground);
        runFree([&](Interrupts& interrupts) {
            isWritten = SavePNG(*whole, file, error, screenDpi * ratio,
                                [&] { return !interrupts.flag().isStopped(); });
        });
    }
    if (!isWritten)
        throwUnwritten(file, error);
}

py::bytes Drawing::bytes(const std::string& format, int ratio, bool isTransparent, bool isFast)
{
    const PictureGround ground = isTransparent ? PictureGround::transparent : PictureGround::white;
    std::vector<unsigned char> bytes;
    CString error;
    int isMade = 0;
    if (format != "png") {
        makePage(format, ground, [&](CPageFile& page) { isMade = page.CloseBytes(bytes, error); });
    } else {
        const std::shared_ptr<const CPicture> whole = picture(ratio, ground);
        runFree([&](Interrupts& interrupts) {
            isMade = PNGBytes(*whole, bytes, error, screenDpi * ratio,
                              isFast ? PngSpeed::fastest : PngSpeed::usual, &interrupts.flag());
        });
    }
    if (!isMade)
        throw std::runtime_error(error);
    return py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void Drawing::toPixels(double* x, double* y, std::size_t count)
{
    check();
    runFree([&](Interrupts& interrupts) {
        const DrawingLock::Hold hold(lock_, interrupts.flag());
        const RunningPlatform platform;
        if (!platform.fault().empty())
            throw std::runtime_error(platform.fault());
        CPicture small(1, 1);
        layOut(*small.dc(), CRect(0, 0, width_, height_));
        for (std::size_t i = 0; i < count; ++i) {
            const CPointF at = axis().RPtoGPF(x[i], y[i]);
            x[i] = at.x;
            y[i] = at.y;
        }
    });
}

void Drawing::toValues(double* x, double* y, std::size_t count)
{
    check();
    runFree([&](Interrupts& interrupts) {
        const DrawingLock::Hold hold(lock_, interrupts.flag());
        const RunningPlatform platform;
        if (!platform.fault().empty())
            throw std::runtime_error(platform.fault());
        CPicture small(1, 1);
        layOut(*small.dc(), CRect(0, 0, width_, height_));
        const ABAxis& a = axis();
        const CRect plot = a.getGraphRect();
        const TMinMax& range = a.getMinMax();
        const auto value = [](double part, double low, double high, int direct) {
            if (direct < 0)
                part = 1 - part;
            return direct ? low + part * (high - low)
                          : std::exp(std::log(low) + part * (std::log(high) - std::log(low)));
        };
        for (std::size_t i = 0; i < count; ++i) {
            x[i] = value((x[i] - plot.left) / (plot.right - plot.left), range.xMin, range.xMax,
                         a.getXDirect());
            y[i] = value((plot.bottom - y[i]) / (plot.bottom - plot.top), range.yMin, range.yMax,
                         a.getYDirect());
        }
    });
}

namespace
{

/// Red, green and blue of each pixel where they lie in the picture, which the array keeps.
py::array pixelsOf(const std::shared_ptr<const CPicture>& picture)
{
    constexpr int bytes = sizeof(std::uint32_t);
    const bool isLittle = std::endian::native == std::endian::little;
    const auto* first = reinterpret_cast<const unsigned char*>(picture->row(0));
    const auto* owner = new std::shared_ptr<const CPicture>(picture);
    const py::capsule keeper(
        owner, [](void* p) { delete static_cast<std::shared_ptr<const CPicture>*>(p); });
    py::array view(py::dtype::of<unsigned char>(), {picture->height(), picture->width(), 3},
                   {picture->width() * bytes, bytes, isLittle ? -1 : 1}, first + (isLittle ? 2 : 1),
                   keeper);
    view.attr("flags").attr("writeable") = false;
    return view;
}

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

py::tuple convert(Drawing& drawing, const Doubles& x, const Doubles& y,
                  void (Drawing::*conversion)(double*, double*, std::size_t))
{
    if (x.size() != y.size())
        throw py::value_error("as many x as y are wanted");
    Doubles toX(x.size()), toY(y.size());
    std::copy_n(x.data(), x.size(), toX.mutable_data());
    std::copy_n(y.data(), y.size(), toY.mutable_data());
    (drawing.*conversion)(toX.mutable_data(), toY.mutable_data(),
                          static_cast<std::size_t>(x.size()));
    return py::make_tuple(toX, toY);
}

}  // namespace

void bindDrawing(py::module_& m)
{
    py::class_<Drawing, std::shared_ptr<Drawing>>(m, "Drawing")
        .def_property_readonly("width", &Drawing::width)
        .def_property_readonly("height", &Drawing::height)
        .def(
            "pixels", [](Drawing& d, int ratio) { return pixelsOf(d.picture(ratio)); },
            py::arg("ratio"))
        .def("file_bytes", &Drawing::bytes, py::arg("format"), py::arg("ratio"),
             py::arg("transparent"), py::arg("fast"))
        .def("save", &Drawing::save, py::arg("path"), py::arg("format"), py::arg("ratio"),
             py::arg("transparent"))
        .def_property_readonly("is_small", [](const Drawing& d) { return d.isSmall() != 0; })
        .def("notes", &Drawing::notes)
        .def("to_pixels", [](Drawing& d, const Doubles& x,
                             const Doubles& y) { return convert(d, x, y, &Drawing::toPixels); })
        .def("to_values", [](Drawing& d, const Doubles& x, const Doubles& y) {
            return convert(d, x, y, &Drawing::toValues);
        });
}

}  // namespace pavane::python

#include "apps/view/picture_file.h"

#include "apps/view/file_ending.h"
#include "pavane/axes/maps/map_titles.h"
#include "platform/picture.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int screenDpi = 96;
constexpr int unitsPerPixel = 12;

/// The figure at one pixel a unit.
int drawPlain(CPicture& picture, const ViewOptions& options, const ViewInputs& inputs,
              const FigureView& view)
{
    if (!picture.width())
        return 0;
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    drawFigure(*dc, CRect(0, 0, picture.width(), picture.height()), options, inputs, view);
    return 1;
}

/// The figure as a finer screen shows it: text and lines keep their size.
int drawFine(CPicture& picture, int fineness, const ViewOptions& options, const ViewInputs& inputs,
             const FigureView& view)
{
    const int width = picture.width() / fineness;
    const int height = picture.height() / fineness;
    CBitmap bitmap;
    if (!picture.width() || !bitmap.CreateBitmap(width, height, fineness))
        return 0;
    CMemoryDC dc(bitmap);
    dc.SetSmooth(1);
    drawFigure(dc, CRect(0, 0, width, height), options, inputs, view);
    const std::uint32_t* from = bitmap.bits();
    for (int y = 0; y < picture.height(); ++y, from += picture.width())
        std::copy_n(from, picture.width(), picture.row(y));
    return 1;
}

int writePNG(const std::string& file, int width, int height, int fineness,
             const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
             std::string& error)
{
    CPicture picture(width * fineness, height * fineness);
    if (fineness == 1 ? drawPlain(picture, options, inputs, view)
                      : drawFine(picture, fineness, options, inputs, view))
        return SavePNG(picture, file, error, screenDpi * fineness);
    error = "there is no memory for a picture of this size";
    return 0;
}

int writePage(CPageFile::Format format, const std::string& file, int width, int height,
              const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
              std::string& error)
{
    CPageFile page(format, width, height, mapTitle(inputs.map.header), unitsPerPixel);
    drawFigure(page.dc(), CRect(0, 0, width * unitsPerPixel, height * unitsPerPixel), options,
               inputs, view);
    return page.Close(file, error);
}

}  // namespace

int pictureFormatOf(const std::string& file, PictureFormat& format)
{
    const std::string ending = fileEnding(file);
    if (ending != "png" && ending != "pdf" && ending != "svg")
        return 0;
    format = ending == "png"   ? PictureFormat::png
             : ending == "pdf" ? PictureFormat::pdf
                               : PictureFormat::svg;
    return 1;
}

int writePicture(const std::string& file, PictureFormat format, int width, int height, int fineness,
                 const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
                 std::string& error)
{
    const CPageFile::Format page =
        format == PictureFormat::pdf ? CPageFile::Format::pdf : CPageFile::Format::svg;
    if (format == PictureFormat::png
            ? writePNG(file, width, height, fineness, options, inputs, view, error)
            : writePage(page, file, width, height, options, inputs, view, error))
        return 1;
    error = file + ": " + error;
    return 0;
}

}  // namespace pavane

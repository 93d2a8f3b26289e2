#include "apps/view/picture_file.h"

#include "apps/view/file_ending.h"
#include "platform/CDC.h"
#include "platform/picture.h"

namespace pavane
{

namespace
{

constexpr int screenDpi = 96;
constexpr int unitsPerPixel = 12;

int writePNG(const std::string& file, int width, int height, int fineness,
             const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
             std::string& error)
{
    CPicture picture(width * fineness, height * fineness);
    if (!picture.width()) {
        error = "there is no memory for a picture of this size";
        return 0;
    }
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    drawFigure(*dc, width, height, fineness, options, inputs, view);
    return SavePNG(picture, file, error, screenDpi * fineness);
}

int writePage(CPageFile::Format format, const std::string& file, int width, int height,
              const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
              std::string& error)
{
    CPageFile page(format, width, height, figureTitle(inputs), unitsPerPixel);
    drawFigure(page.dc(), width, height, unitsPerPixel, options, inputs, view);
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

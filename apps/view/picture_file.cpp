#include "apps/view/picture_file.h"

#include "apps/view/file_ending.h"
#include "platform/picture.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int screenDpi = 96;
constexpr int unitsPerPixel = 12;

/// The picture at one pixel a unit.
int drawPlain(CPicture& picture, const PictureJob& job)
{
    if (!picture.width())
        return 0;
    job.draw(*picture.dc(), CRect(0, 0, job.width, job.height));
    return 1;
}

/// The picture as a finer screen shows it: text and lines keep their size.
int drawFine(CPicture& picture, const PictureJob& job)
{
    CBitmap bitmap;
    if (!picture.width() || !bitmap.CreateBitmap(job.width, job.height, job.fineness))
        return 0;
    CMemoryDC dc(bitmap);
    job.draw(dc, CRect(0, 0, job.width, job.height));
    const std::uint32_t* from = bitmap.bits();
    for (int y = 0; y < picture.height(); ++y, from += picture.width())
        std::copy_n(from, picture.width(), picture.row(y));
    return 1;
}

int writePNG(const std::string& file, const PictureJob& job, std::string& error)
{
    CPicture picture(job.width * job.fineness, job.height * job.fineness);
    if (job.fineness == 1 ? drawPlain(picture, job) : drawFine(picture, job))
        return SavePNG(picture, file, error, screenDpi * job.fineness);
    error = "there is no memory for a picture of this size";
    return 0;
}

int writePage(CPageFile::Format format, const std::string& file, const PictureJob& job,
              std::string& error)
{
    CPageFile page(format, job.width, job.height, job.title, unitsPerPixel);
    page.AskBefore(job.goesOn);
    job.draw(page.dc(), CRect(0, 0, job.width * unitsPerPixel, job.height * unitsPerPixel));
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

int writePicture(const std::string& file, PictureFormat format, const PictureJob& job,
                 std::string& error)
{
    const CPageFile::Format page =
        format == PictureFormat::pdf ? CPageFile::Format::pdf : CPageFile::Format::svg;
    if (format == PictureFormat::png ? writePNG(file, job, error)
                                     : writePage(page, file, job, error))
        return 1;
    error = file + ": " + error;
    return 0;
}

}  // namespace pavane

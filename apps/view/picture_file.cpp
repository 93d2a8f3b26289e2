#include "apps/view/picture_file.h"

#include "apps/view/file_ending.h"
#include "platform/picture_file.h"
#include "platform/window_dc.h"
#include "tessel/StopFlag.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int screenDpi = 96;
constexpr int unitsPerPixel = 12;

void turn(const PictureJob& job, int page)
{
    if (job.turnTo)
        job.turnTo(page);
}

/// The picture at one pixel a unit.
int drawPlain(CPicture& picture, const PictureJob& job, const StopFlag& stop)
{
    if (!picture.width())
        return 0;
    const auto dc = picture.dc();
    dc->setStop(&stop);
    job.draw(*dc, CRect(0, 0, job.width, job.height));
    return 1;
}

/// The picture as a finer screen shows it: text and lines keep their size.
int drawFine(CPicture& picture, const PictureJob& job, const StopFlag& stop)
{
    CBitmap bitmap;
    if (!picture.width() || !bitmap.CreateBitmap(job.width, job.height, job.fineness))
        return 0;
    CMemoryDC dc(bitmap);
    dc.setStop(&stop);
    job.draw(dc, CRect(0, 0, job.width, job.height));
    const std::uint32_t* from = bitmap.bits();
    for (int y = 0; y < picture.height(); ++y, from += picture.width())
        std::copy_n(from, picture.width(), picture.row(y));
    return 1;
}

int writePNG(const std::string& file, const PictureJob& job, std::string& error)
{
    CPicture picture(job.width * job.fineness, job.height * job.fineness);
    StopFlag stop;
    stop.ask(job.goesOn);
    if (job.fineness == 1 ? drawPlain(picture, job, stop) : drawFine(picture, job, stop))
        return SavePNG(picture, file, error, screenDpi * job.fineness,
                       [&stop] { return !stop.isStopped(); });
    error = "there is no memory for a picture of this size";
    return 0;
}

int writePage(CPageFile::Format format, const std::string& file, const PictureJob& job,
              std::string& error)
{
    CPageFile page(format, job.width, job.height, job.title, unitsPerPixel);
    page.AskBefore(job.goesOn);
    const CRect all(0, 0, job.width * unitsPerPixel, job.height * unitsPerPixel);
    job.draw(page.dc(), all);
    for (int i = 1; i < job.pages && format == CPageFile::Format::pdf; ++i) {
        if (!page.NewPage()) {
            error = "there is no room for another page";
            return 0;
        }
        turn(job, i);
        job.draw(page.dc(), all);
    }
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

std::string pageFileName(const std::string& file, int page, int pages)
{
    if (pages <= 1)
        return file;
    const std::string ending = '.' + fileEnding(file);
    const int hasEnding = ending.size() > 1 && ending.size() < file.size();
    const std::size_t stem = file.size() - (hasEnding ? ending.size() : 0);
    return file.substr(0, stem) + '-' + std::to_string(page + 1) + file.substr(stem);
}

int writePicture(const std::string& file, PictureFormat format, const PictureJob& job,
                 std::string& error)
{
    const CPageFile::Format page =
        format == PictureFormat::pdf ? CPageFile::Format::pdf : CPageFile::Format::svg;
    const int isWhole = format == PictureFormat::pdf;
    for (int i = 0; i < (isWhole ? 1 : job.pages); ++i) {
        const std::string name = isWhole ? file : pageFileName(file, i, job.pages);
        turn(job, i);
        if (!(format == PictureFormat::png ? writePNG(name, job, error)
                                           : writePage(page, name, job, error))) {
            error.insert(0, ": ").insert(0, name);
            return 0;
        }
    }
    return 1;
}

}  // namespace pavane

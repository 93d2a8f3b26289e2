#include "apps/view/batch_output.h"

#include "apps/view/DrawnWindow.h"
#include "apps/view/print_batch.h"
#include "platform/platform.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <cstdio>

namespace pavane
{

int printText(const std::string& text, std::string& error)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return 1;
    error = "standard output: cannot be written";
    return 0;
}

void printNotes(const std::vector<std::string>& notes)
{
    for (const std::string& note : notes)
        std::fprintf(stderr, "pavane-view: %s\n", plainText(note).c_str());
}

std::string statLine(const char* key, double value, int digits, std::string_view unit)
{
    std::string text = std::string(key) + ' ' + valToStr(value, digits);
    if (!unit.empty())
        text.append(" ").append(unit);
    return text + '\n';
}

namespace
{

int print(const ViewOptions& options, const BatchJob& job, std::string& error)
{
    const std::unique_ptr<ABWindow> window =
        job.newWindow ? job.newWindow()
                      : std::make_unique<DrawnWindow>(job.picture.draw, job.picture.pages,
                                                      job.picture.turnTo);
    return printInBatch(options.print, job.picture.title, job.caption, *window, error);
}

}  // namespace

int writePictures(char** argv, const ViewOptions& options, const std::function<BatchJob()>& newJob,
                  std::string& error)
{
    const struct {
        const std::string& file;
        PictureFormat format;
    } pictures[] = {{options.png, PictureFormat::png},
                    {options.pdf, PictureFormat::pdf},
                    {options.svg, PictureFormat::svg}};
    if (!InitPlatform(1, argv, PlatformUse::pictures, error))
        return 0;
    int written = 1;
    {
        const BatchJob job = newJob();
        for (const auto& picture : pictures)
            if (!picture.file.empty())
                written = written && writePicture(picture.file, picture.format, job.picture, error);
        if (options.print.wanted())
            written = written && print(options, job, error);
    }
    ShutdownPlatform();
    return written;
}

}  // namespace pavane

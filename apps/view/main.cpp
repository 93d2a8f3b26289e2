#include "apps/view/figure.h"
#include "apps/view/inputs.h"
#include "apps/view/numbers.h"
#include "apps/view/options.h"
#include "apps/view/progress.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/fits_map.h"

#include <csignal>
#include <cstdio>
#include <new>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, badInput = 2 };

int complain(const std::string& error)
{
    std::fprintf(stderr, "pavane-view: %s\n", error.c_str());
    return badInput;
}

int print(const std::string& text)
{
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
           std::fflush(stdout) == 0;
}

int writeNumbers(const ViewOptions& options, const ViewInputs& inputs, std::string& error)
{
    const int nothingElse =
        !options.wantsPicture() && options.mask.empty() && options.visibilities.empty();
    std::string text;
    if (options.stats || nothingElse)
        text += statisticsText(inputs);
    if (!options.visibilities.empty())
        text += visibilitiesText(inputs.model, inputs.uv);
    if (!print(text)) {
        error = "standard output: cannot be written";
        return 0;
    }
    return 1;
}

int writePNG(const ViewOptions& options, const ViewInputs& inputs, std::string& error)
{
    CPicture picture(options.width, options.height);
    if (!picture.width()) {
        error = "there is no memory for a picture of this size";
        return 0;
    }
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    drawFigure(*dc, options.width, options.height, 1, options, inputs);
    return SavePNG(picture, options.png, error);
}

int writePage(CPageFile::Format format, const std::string& file, const ViewOptions& options,
              const ViewInputs& inputs, std::string& error)
{
    constexpr int unitsPerPixel = 12;
    CPageFile page(format, options.width, options.height, figureTitle(inputs), unitsPerPixel);
    drawFigure(page.dc(), options.width, options.height, unitsPerPixel, options, inputs);
    return page.Close(file, error);
}

int writePictures(const ViewOptions& options, const ViewInputs& inputs, std::string& error)
{
    const struct {
        const std::string& file;
        CPageFile::Format format;
    } pages[] = {{options.pdf, CPageFile::Format::pdf}, {options.svg, CPageFile::Format::svg}};
    if (!options.png.empty() && !writePNG(options, inputs, error)) {
        error = options.png + ": " + error;
        return 0;
    }
    for (const auto& page : pages)
        if (!page.file.empty() && !writePage(page.format, page.file, options, inputs, error)) {
            error = page.file + ": " + error;
            return 0;
        }
    return 1;
}

/// Starts the toolkit for the pictures only, after all input is known to be good.
int makePictures(char** argv, const ViewOptions& options, const ViewInputs& inputs,
                 std::string& error)
{
    if (!InitPlatform(1, argv, PlatformUse::pictures)) {
        error = "the drawing toolkit does not start";
        return 0;
    }
    const int written = writePictures(options, inputs, error);
    ShutdownPlatform();
    return written;
}

int choosePalette(const ViewOptions& options, std::string& error)
{
    if (options.palette.empty())
        return LoadDefaultPalette() || LoadBuiltInPalette();
    if (LoadPalette(options.palette))
        return 1;
    error = options.palette + ": is no palette; there are";
    const AObjArray<CString> names = PaletteNames();
    for (int i = 0; i < names.count(); ++i)
        error += ' ' + names(i);
    return 0;
}

int run(char** argv, const ViewOptions& options, std::string& error)
{
    ViewInputs inputs;
    if (!choosePalette(options, error) || !readInputs(options, inputs, error))
        return 0;
    if (!options.mask.empty() &&
        !writeFitsMask(options.mask, inputs.mask, inputs.map.header, error)) {
        error = options.mask + ": " + error;
        return 0;
    }
    if (options.wantsPicture() && !makePictures(argv, options, inputs, error))
        return 0;
    return writeNumbers(options, inputs, error);
}

}  // namespace

int main(int argc, char** argv)
{
    // beyond a limit of file size writing fails and is reported, instead of ending the program
    std::signal(SIGXFSZ, SIG_IGN);
    ViewOptions options;
    std::string error;
    if (!parseOptions(std::vector<std::string>(argv + 1, argv + argc), options, error)) {
        std::fprintf(stderr, "pavane-view: %s\n%s\n", error.c_str(), usageLine());
        return wrongUse;
    }
    if (options.help)
        return print(helpText()) ? done : badInput;
    try {
        return run(argv, options, error) ? done : complain(error);
    } catch (const std::bad_alloc&) {
        return complain("there is not enough memory");
    }
}

#include "apps/view/figure.h"
#include "apps/view/inputs.h"
#include "apps/view/numbers.h"
#include "apps/view/options.h"
#include "apps/view/palette_choice.h"
#include "apps/view/picture_file.h"
#include "apps/view/same_file.h"
#include "apps/view/window_program.h"
#include "pavane/axes/maps/map_titles.h"
#include "platform/platform.h"
#include "tessel/fits_map.h"
#include "tessel/plain_text.h"

#include <csignal>
#include <cstdio>
#include <new>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, badInput = 2 };

int complain(const std::string& error)
{
    std::fprintf(stderr, "pavane-view: %s\n", plainText(error).c_str());
    return badInput;
}

int refuse(const std::string& error)
{
    (void)complain(error);
    std::fprintf(stderr, "%s\n", usageLine(viewProgram()).c_str());
    return wrongUse;
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

int writePictures(const ViewOptions& options, const ViewInputs& inputs, std::string& error)
{
    const struct {
        const std::string& file;
        PictureFormat format;
    } pictures[] = {{options.png, PictureFormat::png},
                    {options.pdf, PictureFormat::pdf},
                    {options.svg, PictureFormat::svg}};
    InputsFigure figure(options, inputs);
    const PictureJob job{mapTitle(inputs.map.header), options.width, options.height, 1,
                         [&](CDC& dc, const CRect& rect) { figure.draw(dc, rect); }};
    for (const auto& picture : pictures)
        if (!picture.file.empty() && !writePicture(picture.file, picture.format, job, error))
            return 0;
    for (const std::string& note : figure.notes())
        std::fprintf(stderr, "pavane-view: note: %s\n", note.c_str());
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

int runBatch(char** argv, const ViewOptions& options, std::string& error)
{
    ViewInputs inputs;
    std::vector<std::string> notes;
    if (!choosePalette(options.palette, error) || !readInputs(options, inputs, notes, error))
        return 0;
    for (const std::string& note : notes)
        std::fprintf(stderr, "pavane-view: %s\n", plainText(note).c_str());
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
    if (!parseOptions(std::vector<std::string>(argv + 1, argv + argc), options, error))
        return refuse(error);
    if (options.help || options.version)
        return print(options.help ? helpText(viewProgram()) : versionLine(viewProgram()))
                   ? done
                   : badInput;
    error = outputClash(options);
    if (!error.empty())
        return refuse(error);
    try {
        if (options.batch)
            return runBatch(argv, options, error) ? done : complain(error);
        if (!choosePalette(options.palette, error) || !runWindow(argv, options, error))
            return complain(error);
        return done;
    } catch (const std::bad_alloc&) {
        return complain("there is not enough memory");
    }
}

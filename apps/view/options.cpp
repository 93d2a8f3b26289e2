#include "apps/view/options.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int leastSize = 64;
constexpr int greatestSize = 16384;

int readSize(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::size_t cross = text.find('x');
    int width = 0;
    int height = 0;
    if (cross == std::string::npos || !stoval(std::string_view(text).substr(0, cross), width) ||
        !stoval(std::string_view(text).substr(cross + 1), height)) {
        error = "--size wants WIDTHxHEIGHT in pixels, not '" + text + "'";
        return 0;
    }
    const auto fits = [](int size) { return size >= leastSize && size <= greatestSize; };
    if (!fits(width) || !fits(height)) {
        error = "--size allows " + std::to_string(leastSize) + " to " +
                std::to_string(greatestSize) + " pixels a side, not '" + text + "'";
        return 0;
    }
    options.width = width;
    options.height = height;
    options.hasSize = 1;
    return 1;
}

int readRange(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos ||
        !stoval(std::string_view(text).substr(0, comma), options.low) ||
        !stoval(std::string_view(text).substr(comma + 1), options.high) ||
        !std::isfinite(options.low) || !std::isfinite(options.high) ||
        !(options.low < options.high)) {
        error = "--range wants two numbers LOW,HIGH with LOW below HIGH, not '" + text + "'";
        return 0;
    }
    options.hasRange = 1;
    return 1;
}

int readScale(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view names[] = {"linear", "sqrt", "log", "equal"};
    const auto found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names)) {
        error = "--scale knows linear, sqrt, log and equal, not '" + text + "'";
        return 0;
    }
    options.scale = static_cast<ViewScale>(found - std::begin(names));
    return 1;
}

int readAspect(const std::string& text, ViewOptions& options, std::string& error)
{
    if (text != "free" && text != "equal") {
        error = "--aspect knows equal and free, not '" + text + "'";
        return 0;
    }
    options.freeAspect = text == "free";
    return 1;
}

int readPlane(const std::string& text, ViewOptions& options, std::string& error)
{
    if (!stoval(text, options.plane) || options.plane < 0) {
        error = "--plane wants a number from 0, not '" + text + "'";
        return 0;
    }
    return 1;
}

int readLevels(const std::string& text, ViewOptions& options, std::string& error)
{
    return parseLevels(text, options.levels, error);
}

/// An option that takes a text: where the text goes, or what reads it.
struct Option {
    std::string_view name;
    std::string ViewOptions::*text;
    int (*read)(const std::string&, ViewOptions&, std::string&);
    int onlyInBatch = 0;
};

constexpr Option optionTable[] = {
    {"--png", &ViewOptions::png, nullptr, 1},
    {"--pdf", &ViewOptions::pdf, nullptr, 1},
    {"--svg", &ViewOptions::svg, nullptr, 1},
    {"--size", nullptr, readSize},
    {"--aspect", nullptr, readAspect},
    {"--levels", nullptr, readLevels},
    {"--scale", nullptr, readScale},
    {"--range", nullptr, readRange},
    {"--palette", &ViewOptions::palette, nullptr},
    {"--plane", nullptr, readPlane},
    {"--areas", &ViewOptions::areas, nullptr},
    {"--mask", &ViewOptions::mask, nullptr, 1},
    {"--model", &ViewOptions::model, nullptr, 1},
    {"--visibilities", &ViewOptions::visibilities, nullptr, 1},
};

/// Applies the option at `arguments[i]`, moving i to its text if it takes one.
int applyOption(const std::vector<std::string>& arguments, std::size_t& i, ViewOptions& options,
                std::string& error)
{
    const std::string& name = arguments[i];
    if (name == "--batch" || name == "--stats" || name == "--help") {
        (name == "--batch" ? options.batch : name == "--stats" ? options.stats : options.help) = 1;
        return 1;
    }
    const auto found = std::find_if(std::begin(optionTable), std::end(optionTable),
                                    [&](const Option& o) { return o.name == name; });
    if (found == std::end(optionTable)) {
        error = "there is no option '" + name + "'";
        return 0;
    }
    if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
        error = name + " wants a value";
        return 0;
    }
    const std::string& value = arguments[++i];
    if (found->read)
        return found->read(value, options, error);
    options.*(found->text) = value;
    return 1;
}

/// The option that only a batch knows, "" when there is none.
std::string batchOnly(const ViewOptions& options)
{
    for (const auto& option : optionTable)
        if (option.onlyInBatch && option.text && !(options.*(option.text)).empty())
            return std::string(option.name);
    return options.hasSize ? "--size" : options.stats ? "--stats" : "";
}

int checkTogether(const ViewOptions& options, std::string& error)
{
    const std::string only = options.batch ? std::string() : batchOnly(options);
    if (!only.empty())
        error = only + " goes with --batch; the window has a menu for it";
    else if (options.map.empty() && options.batch)
        error = "no map is named";
    else if (options.map.empty() && (!options.areas.empty() || options.plane >= 0))
        error = "--areas and --plane go with a map";
    else if (!options.mask.empty() && options.areas.empty())
        error = "--mask needs the areas that it is made of: --areas FILE";
    else if (!options.visibilities.empty() && options.model.empty())
        error = "--visibilities needs the model that they are computed from: --model FILE";
    return error.empty();
}

}  // namespace

const char* usageLine()
{
    return "usage: pavane-view [MAP.fits] [--areas F] [--plane N] [--levels UNIT:LIST] [--scale S] "
           "[--range LO,HI] [--palette NAME] [--aspect free], without a window: --batch [--png F] "
           "[--pdf F] [--svg F] [--size WxH] [--mask OUT.fits] [--model F.txt] "
           "[--visibilities UV.csv] [--stats] (--help says more)";
}

std::string helpText()
{
    return std::string(usageLine()) + R"(

Opens the map in a window, where areas are marked with the mouse or the keys (F1 there tells how).

  --areas F                   areas: .areas, polygons of matrix cells (.cma), region files (.reg,
                              .crtf)
  --plane N                   which plane of a cube, from 0
  --levels UNIT:LIST          contours; UNIT peak (per cent of the peak), sigma (multiples of the
                              noise) or abs (unit of the map); a list that ends with "..." goes on
                              in the same ratio up to the peak: peak:-1,1,2,4,...   none: no contour
  --scale S                   colours spread linear, sqrt, log or equal (histogram-equalised)
  --range LO,HI               values of the first and the last colour
  --palette NAME              another palette: a name as shipped, or a file
  --aspect free               let cells be oblong to fill the size, as those of a map of very few
                              rows or columns are

Without a window:

  --batch                     write files and print numbers
  --png F, --pdf F, --svg F   write the map as a picture or a page
  --size WxH                  its size in pixels of 96 per inch, 64 to 16384 a side (1000x900)
  --mask OUT.fits             write the mask of the areas: the map's pixels and coordinates, 0 and 1
  --model F.txt               components, their outlines drawn over the map
  --visibilities UV.csv       print u,v,re,im of the model for each line u,v (wavelengths)
  --stats                     print peak, its place, noise, cells and flux in the mask

exit status: 0 done, 1 wrong use, 2 bad input, an output that could not be written, or no display
)";
}

int parseOptions(const std::vector<std::string>& arguments, ViewOptions& options,
                 std::string& error)
{
    options = ViewOptions();
    error.clear();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].rfind("--", 0) == 0) {
            if (!applyOption(arguments, i, options, error))
                return 0;
        } else if (!options.map.empty()) {
            error = "one map at a time: '" + arguments[i] + "' is a second one";
            return 0;
        } else {
            options.map = arguments[i];
        }
    }
    return options.help || checkTogether(options, error);
}

}  // namespace pavane

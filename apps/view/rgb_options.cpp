#include "apps/view/rgb_options.h"

#include "apps/view/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr std::string_view rangeNames[rgbBands] = {"--red-range", "--green-range", "--blue-range"};

/// What is said of one map's colours, or draws none of three.
constexpr std::string_view strangers[] = {"--range", "--palette", "--contrast", "--surface",
                                          "--planes"};

template <std::size_t band>
int readRange(const std::string& text, ViewOptions& options, std::string& error)
{
    return readColourRange(std::string(rangeNames[band]), text, options.rgb.looks[band], error);
}

int readRgb(const std::string&, ViewOptions& options, std::string&)
{
    options.rgb.wanted = 1;
    return 1;
}

}  // namespace

int readColourRange(const std::string& name, const std::string& text, MapLook& look,
                    std::string& error)
{
    constexpr std::string_view perCent = "p:";
    look.inPerCent = text.starts_with(perCent);
    const std::string_view ends =
        std::string_view(text).substr(look.inPerCent ? perCent.size() : 0);
    const std::size_t comma = ends.find(',');
    if (comma == std::string::npos || !stoval(ends.substr(0, comma), look.low) ||
        !stoval(ends.substr(comma + 1), look.high) || !std::isfinite(look.low) ||
        !std::isfinite(look.high) || !(look.low < look.high) ||
        (look.inPerCent && (look.low < 0 || look.high > 100))) {
        error = name +
                " wants two numbers LOW,HIGH with LOW below HIGH, or p:LOW,HIGH in per cent of "
                "the cells, not '" +
                text + "'";
        return 0;
    }
    look.hasRange = 1;
    return 1;
}

void addRgbOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply) {
        table.push_back({text, apply, traits, 0, 0});
    };
    add({"--rgb", "", "",
         "show three maps, R.fits G.fits B.fits, as red, green and blue of one; --out writes them "
         "as one file, --regrid brings the others onto the cells of the first, --shift moves the "
         "second and, given again, the third"},
        readRgb);
    add({"--red-range", "", "LO,HI",
         "values of no red and of the brightest, or p:LO,HI as --range has it; without it those "
         "of the file, or all"},
        readRange<0>);
    add({"--green-range", "", "LO,HI", "the same of green"}, readRange<1>);
    add({"--blue-range", "", "LO,HI", "the same of blue"}, readRange<2>);
}

int isRgbOption(std::string_view name)
{
    return name == "--rgb" ||
           std::find(std::begin(rangeNames), std::end(rangeNames), name) != std::end(rangeNames);
}

int checkRgbOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                    std::string& error)
{
    if (!options.rgb.wanted) {
        if (options.made.hasSecondShift)
            error = "--shift is given twice; that goes with --rgb";
        return error.empty();
    }
    if (given.operands.size() != rgbBands)
        error = "--rgb wants three maps: R.fits G.fits B.fits";
    for (const auto* option : given.options)
        if (error.empty() && std::find(std::begin(strangers), std::end(strangers), option->name) !=
                                 std::end(strangers))
            error = std::string(option->name) + " does not go with --rgb" +
                    (option->name == "--range" ? ": each colour has a range, as --red-range" : "");
    if (error.empty() && !options.overlay.contours.empty() && !options.made.shift.isNone())
        error = "--shift moves a map of --rgb or that of --contours, not both at once";
    return error.empty();
}

}  // namespace pavane

#include "apps/view/profiles/profile_options.h"

#include "apps/view/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace pavane
{

namespace
{

/// The numbers between commas; 0 when one of them is none.
int readNumbers(std::string_view text, std::vector<double>& numbers)
{
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        double number = 0;
        if (!stoval(text.substr(at, comma - at), number) || !std::isfinite(number))
            return 0;
        numbers.push_back(number);
        at = comma + 1;
    }
    return 1;
}

int readProfile(const std::string& text, ViewOptions& options, std::string& error)
{
    return readProfileLine(text, "--profile", options.profile.line, error);
}

int readAcross(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view names[] = {"mean", "greatest", "sum"};
    const auto* const found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names)) {
        error = "--across knows mean, greatest and sum, not '" + text + "'";
        return 0;
    }
    options.profile.line.across = static_cast<AcrossLine>(found - std::begin(names));
    options.profile.hasAcross = 1;
    return 1;
}

int readFit(const std::string& text, ViewOptions& options, std::string& error)
{
    constexpr int most = 50;
    GaussianFitWish& wish = options.profile.fit;
    const std::string_view all = text;
    const std::size_t end = std::min(all.find(','), all.size());
    int isRead =
        stoval(all.substr(0, end), wish.sources) && wish.sources >= 1 && wish.sources <= most;
    for (std::size_t at = end; isRead && at < all.size();) {
        const std::size_t comma = std::min(all.find(',', at + 1), all.size());
        const std::string_view word = all.substr(at + 1, comma - at - 1);
        isRead = word == "background" || word == "beam";
        (word == "beam" ? wish.isBeam : wish.hasBackground) = 1;
        at = comma;
    }
    if (!isRead) {
        error = "--fit wants a number of Gaussians, 1 to " + std::to_string(most) +
                ", and perhaps ,background and ,beam behind it, not '" + text + "'";
        return 0;
    }
    return options.profile.hasFit = 1;
}

int readResidual(const std::string& text, ViewOptions& options, std::string&)
{
    options.profile.residual = text;
    return 1;
}

}  // namespace

int readProfileLine(const std::string& text, const char* option, ProfileLine& line,
                    std::string& error)
{
    constexpr std::size_t fewest = 4;
    constexpr double mostWidth = 10000;
    std::vector<double> numbers;
    const int areRead = readNumbers(text, numbers);
    line.corners.clear();
    // corners have two numbers each, so that an odd one is the width
    if (areRead && numbers.size() % 2) {
        line.width = numbers.back();
        numbers.pop_back();
    }
    if (!areRead || numbers.size() < fewest || !(line.width > 0 && line.width <= mostWidth)) {
        error =
            option +
            std::string(" wants X1,Y1,X2,Y2 in pixels from 1, further corners and perhaps a width "
                        "in cells above 0, not '") +
            text + "'";
        return 0;
    }
    for (std::size_t i = 0; i < numbers.size(); i += 2)
        line.corners.push_back({numbers[i] - 1, numbers[i + 1] - 1});
    return 1;
}

int isMeasuredTable(const std::string& name)
{
    return name == profileTableName || name == spectrumTableName || name == histogramTableName ||
           name == fitTableName;
}

void addProfileOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply) {
        table.push_back({text, apply, traits, 0, 0});
    };
    add({"--profile", "", "X1,Y1,X2,Y2[,...][,WIDTH]",
         "the map along a line of two or more corners, in pixels from 1, x first; an odd number at "
         "the end is its width in cells; printed, unless there is a --table profile"},
        readProfile);
    add({"--across", "", "HOW",
         "what becomes of the values across a wide profile: mean, greatest or sum",
         "mean greatest sum"},
        readAcross);
    add({"--fit", "", "N[,background][,beam]",
         "fit N Gaussians to each area of --areas, else to the map, with a constant below them or "
         "with the shape of the beam; printed as \"key value unit\", written by --table fit; fits "
         "that fail are an error, with --partial a note"},
        readFit);
    add({"--residual", "", "F.fits", "write the map without the Gaussians of --fit"}, readResidual);
}

int checkProfileOptions(const ViewOptions& options, std::string& error)
{
    const ProfileWish& wish = options.profile;
    if (wish.hasAcross && !(wish.line.width > 1) && !(options.made.line.width > 1))
        error = "--across goes with a --profile or --pv of a width above 1";
    else if (!wish.wanted() && options.wantsTable(profileTableName))
        error = "--table profile wants the line that it is along: --profile X1,Y1,X2,Y2[,WIDTH]";
    else if (!wish.hasFit && options.wantsTable(fitTableName))
        error = "--table fit wants to know how many Gaussians: --fit N";
    else if (!wish.hasFit && !wish.residual.empty())
        error = "--residual goes with --fit";
    else if ((wish.wanted() || wish.hasFit) && options.map.empty())
        error = "no map is named";
    return error.empty();
}

int isOfAllPlanes(const ViewOptions& options)
{
    return !options.tables.empty() && !options.profile.wanted() && !options.profile.hasFit &&
           !options.wantsPicture() && !options.stats && options.mask.empty() &&
           !options.print.wanted() &&
           std::all_of(options.tables.begin(), options.tables.end(),
                       [](const TableWish& wish) { return wish.table == spectrumTableName; });
}

}  // namespace pavane

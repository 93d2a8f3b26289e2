#include "pavane/axes/maps/cells/level_list.h"

#include "pavane/axes/maps/cells/contour_lines.h"
#include "tessel/value_text.h"

#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view goesOnEnding = ",...";
constexpr std::size_t mostLevels = 100;

/// What is wrong with a list that does not read as one.
std::string faultOfList(std::string_view text)
{
    const std::size_t colon = text.find(':');
    const std::string_view unit = text.substr(0, colon);
    if (colon == std::string_view::npos || (unit != "peak" && unit != "sigma" && unit != "abs"))
        return "wants peak:, sigma: or abs: before its numbers, or none, not '" +
               std::string(text) + "'";
    std::string_view rest = text.substr(colon + 1);
    for (int which = 1;; ++which) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        double number = 0;
        if (!stoval(item, number) || !std::isfinite(number))
            return "has '" + std::string(item) + "' as number " + std::to_string(which) +
                   (item == "..." ? "; only the end of a list goes on" : ", which is none");
        if (comma == std::string_view::npos)
            break;
        rest.remove_prefix(comma + 1);
    }
    return "has too many numbers, more than " + std::to_string(ContourLines::mostLevels);
}

/// What is wrong with numbers that are to go on; "" when nothing is.
std::string faultOfEnd(const std::vector<double>& factors)
{
    const std::size_t n = factors.size();
    if (n < 2)
        return "wants two numbers before '...'";
    if (factors[n - 2] > 0 && factors[n - 1] > factors[n - 2])
        return {};
    return "cannot go on from " + valToStr(factors[n - 2]) + " to " + valToStr(factors[n - 1]) +
           ": the two numbers before '...' rise above 0";
}

std::string readList(std::string text, LevelChoice& choice)
{
    const std::size_t ending = goesOnEnding.size();
    if (text.size() > ending && text.compare(text.size() - ending, ending, goesOnEnding) == 0) {
        choice.goesOn = 1;
        text.resize(text.size() - ending);
    }
    if (!choice.list.read(text))
        return faultOfList(text);
    return choice.goesOn ? faultOfEnd(choice.list.factors) : std::string();
}

/// What a factor of 1 is worth.
double unitOf(const ContourLevels& list, double peak, double noise)
{
    return list.unit == LevelUnit::peak ? peak / 100 : list.unit == LevelUnit::noise ? noise : 1.0;
}

}  // namespace

int parseLevels(const std::string& text, LevelChoice& choice, std::string& error)
{
    choice = LevelChoice();
    choice.text = text;
    choice.none = text == "none";
    const std::string fault = choice.none ? std::string() : readList(text, choice);
    if (fault.empty())
        return 1;
    error = fault;
    return 0;
}

std::vector<double> levelValues(const LevelChoice& choice, double peak, double noise)
{
    if (choice.none)
        return {};
    ContourLevels list = choice.list;
    const double unit = unitOf(list, peak, noise);
    if (choice.goesOn && unit > 0) {
        std::vector<double>& factors = list.factors;
        const double ratio = factors.back() / factors[factors.size() - 2];
        while (factors.size() < mostLevels && factors.back() * ratio * unit < peak)
            factors.push_back(factors.back() * ratio);
    }
    return list.values(peak, noise);
}

std::string levelNote(const LevelChoice& choice, double peak, double noise)
{
    if (choice.none || !choice.list.isAbovePeak(peak, noise))
        return {};
    return "peak below 3 sigma, contours at \u00b13 sigma";
}

}  // namespace pavane

#include "apps/view/level_list.h"

#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view goesOnEnding = ",...";
constexpr std::size_t mostLevels = 100;

int readList(std::string text, LevelChoice& choice)
{
    const std::size_t ending = goesOnEnding.size();
    if (text.size() > ending && text.compare(text.size() - ending, ending, goesOnEnding) == 0) {
        choice.goesOn = 1;
        text.resize(text.size() - ending);
    }
    if (!choice.list.read(text))
        return 0;
    const std::vector<double>& factors = choice.list.factors;
    const std::size_t n = factors.size();
    return !choice.goesOn || (n >= 2 && factors[n - 2] > 0 && factors[n - 1] > factors[n - 2]);
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
    if (choice.none || readList(text, choice))
        return 1;
    error =
        "--levels wants peak:, sigma: or abs: and numbers with commas between, not '" + text + "'";
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

}  // namespace pavane

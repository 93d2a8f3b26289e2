#include "pavane/axes/maps/cells/contour_levels.h"

#include "pavane/axes/maps/cells/contour_lines.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double lowestSigma = 3;

constexpr struct Prefix {
    std::string_view name;
    LevelUnit unit;
} prefixes[] = {
    {"peak:", LevelUnit::peak}, {"sigma:", LevelUnit::noise}, {"abs:", LevelUnit::absolute}};

std::vector<double> automaticLevels(double peak, double noise)
{
    const double low = lowestSigma * noise;
    std::vector<double> levels;
    if (noise > 0) {
        levels = {-low, low};
        for (double level = 2 * low; level < peak && levels.size() < 40; level *= 2)
            levels.push_back(level);
        return levels;
    }
    for (const double percent : {1, 2, 4, 8, 16, 32, 64, 90})
        levels.push_back(peak * percent / 100);
    return levels;
}

}  // namespace

int ContourLevels::read(const CString& text)
{
    for (const Prefix& prefix : prefixes) {
        if (!text.starts_with(prefix.name))
            continue;
        std::string_view rest = std::string_view(text).substr(prefix.name.size());
        std::vector<double> numbers;
        for (;;) {
            const std::size_t comma = rest.find(',');
            double number = 0;
            if (!stoval(rest.substr(0, comma), number) || !std::isfinite(number))
                return 0;
            numbers.push_back(number);
            if (comma == std::string_view::npos)
                break;
            rest.remove_prefix(comma + 1);
        }
        if (numbers.size() > ContourLines::mostLevels)
            return 0;
        unit = prefix.unit;
        factors = numbers;
        return 1;
    }
    return 0;
}

CString ContourLevels::text() const
{
    if (unit == LevelUnit::automatic)
        return "auto";
    if (factors.empty())
        return "none";
    CString text;
    for (const Prefix& prefix : prefixes)
        if (prefix.unit == unit)
            text = prefix.name;
    for (std::size_t i = 0; i < factors.size(); ++i)
        text.append(i > 0 ? "," : "").append(valToStr(factors[i]));
    return text;
}

std::vector<double> ContourLevels::values(double peak, double noise) const
{
    std::vector<double> levels;
    if (unit == LevelUnit::automatic)
        levels = automaticLevels(peak, noise);
    else if (unit != LevelUnit::noise || noise > 0)  // of no noise all multiples are one line at 0
        for (const double factor : factors)
            levels.push_back(unit == LevelUnit::absolute ? factor
                             : unit == LevelUnit::peak   ? factor * peak / 100
                                                         : factor * noise);
    std::erase_if(levels, [](double level) { return !std::isfinite(level); });
    std::sort(levels.begin(), levels.end());
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    return levels;
}

int ContourLevels::isAbovePeak(double peak, double noise) const
{
    return unit == LevelUnit::automatic && noise > 0 && peak <= lowestSigma * noise;
}

}  // namespace pavane

#include "apps/view/map_unit.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace pavane
{

namespace
{

constexpr struct {
    std::string_view text;
    double factor;
} prefixes[] = {{"", 1},    {"m", 1e-3}, {"u", 1e-6}, {"\u00b5", 1e-6}, {"n", 1e-9},
                {"k", 1e3}, {"K", 1e3},  {"M", 1e6},  {"G", 1e9}};

std::string lower(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// Non-zero when `text` is `base`, alone or followed by something that is not a letter.
int beginsWithUnit(std::string_view text, std::string_view base)
{
    return text.substr(0, base.size()) == base &&
           (text.size() == base.size() ||
            !std::isalpha(static_cast<unsigned char>(text[base.size()])));
}

}  // namespace

MapUnit mapUnit(const std::string& bunit)
{
    MapUnit unit;
    unit.name = bunit;
    for (const auto& prefix : prefixes) {
        if (bunit.compare(0, prefix.text.size(), prefix.text) != 0)
            continue;
        const std::string_view rest = std::string_view(bunit).substr(prefix.text.size());
        unit.isFlux = beginsWithUnit(rest, "Jy") || beginsWithUnit(rest, "JY");
        if (!unit.isFlux && !beginsWithUnit(rest, "K") && !beginsWithUnit(rest, "Hz"))
            continue;
        unit.factor = prefix.factor;
        unit.name = rest;
        break;
    }
    if (!unit.isFlux)
        return unit;
    const std::string per = lower(unit.name).substr(2);
    unit.perPixel = per == "/pixel" || per == "/pix";
    unit.isFlux = unit.perPixel || per.empty() || per == "/beam";
    unit.name = "Jy" + (unit.isFlux ? per : unit.name.substr(2));
    return unit;
}

}  // namespace pavane

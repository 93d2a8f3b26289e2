#include "pavane/axes/maps/map_unit.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace pavane
{

namespace
{

constexpr struct {
    std::string_view text;
    double factor;
} prefixes[] = {{"", 1},     {"m", 1e-3}, {"u", 1e-6}, {"\u00b5", 1e-6}, {"\u03bc", 1e-6},
                {"n", 1e-9}, {"k", 1e3},  {"K", 1e3},  {"M", 1e6},       {"G", 1e9}};

/// Units with a common use of prefixes, and how papers spell them.
constexpr struct {
    std::string_view text, name;
} bases[] = {{"Jy", "Jy"}, {"JY", "Jy"}, {"jy", "Jy"}, {"K", "K"},   {"Hz", "Hz"},
             {"HZ", "Hz"}, {"m", "m"},   {"s", "s"},   {"as", "as"}, {"pc", "pc"},
             {"W", "W"},   {"V", "V"},   {"eV", "eV"}, {"g", "g"},   {"J", "J"},
             {"N", "N"},   {"Pa", "Pa"}, {"T", "T"},   {"G", "G"},   {"rad", "rad"}};

/// What stands for "per" behind a unit.
constexpr std::string_view inverses[] = {"^{-1}", "^(-1)", "**(-1)",      "**-1",
                                         "^-1",   "-1",    "\u207b\u00b9"};

std::string lower(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

std::string_view trimmed(std::string_view text, std::string_view dropped = " ")
{
    const std::size_t first = text.find_first_not_of(dropped);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(dropped) - first + 1);
}

/// Non-zero when `text` is `base`, alone or with more behind it, but no power of it.
int beginsWithUnit(std::string_view text, std::string_view base)
{
    if (!text.starts_with(base))
        return 0;
    const std::string_view rest = text.substr(base.size());
    return rest.empty() ||
           (!std::isalnum(static_cast<unsigned char>(rest[0])) && rest[0] != '^' &&
            rest[0] != '-' && rest[0] != '+' && rest[0] != '_' && !rest.starts_with("**"));
}

/// "beam" or "pixel" of the words that mean them, "" for another word.
std::string_view areaOf(const std::string& word)
{
    return word == "beam" || word == "bm"     ? "beam"
           : word == "pixel" || word == "pix" ? "pixel"
                                              : "";
}

/// The area that a text in small letters divides by: "beam" of "/beam", " beam-1", ".beam**-1".
std::string_view dividedBy(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with("per "))
        return areaOf(std::string(trimmed(text.substr(4))));
    if (text.starts_with('/'))
        return areaOf(std::string(trimmed(text.substr(1), " ()")));
    for (const std::string_view inverse : inverses)
        if (text.ends_with(inverse))
            return areaOf(
                std::string(trimmed(text.substr(0, text.size() - inverse.size()), " .*")));
    return {};
}

/// Cuts what a flux was integrated over from the end of a unit, with the sign of the product.
std::string cutWidth(std::string& text)
{
    for (const std::string_view width : {"km/s", "m/s", "Hz"})
        for (const std::string_view times : {".", " ", "*"})
            if (text.size() > width.size() && text.ends_with(width) &&
                std::string_view(text).substr(0, text.size() - width.size()).ends_with(times)) {
                text.resize(text.size() - width.size() - times.size());
                return ' ' + std::string(width);
            }
    return {};
}

/// "beam-1 Jy" with its parts in the common order.
std::string inCommonOrder(const std::string& unit)
{
    const std::size_t blank = unit.find(' ');
    if (blank == std::string::npos)
        return unit;
    const std::string first = lower(std::string_view(unit).substr(0, blank));
    return first.starts_with('/') || dividedBy(first).empty()
               ? unit
               : std::string(trimmed(std::string_view(unit).substr(blank))) + ' ' + first;
}

/// Splits off the prefix; 0 when the unit begins with none that takes one.
int split(const std::string& text, MapUnit& unit)
{
    for (const auto& prefix : prefixes)
        for (const auto& base : bases) {
            if (!text.starts_with(prefix.text) ||
                !beginsWithUnit(std::string_view(text).substr(prefix.text.size()), base.text))
                continue;
            unit.factor = prefix.factor;
            unit.prefix = prefix.text;
            unit.name = std::string(base.name) + text.substr(prefix.text.size() + base.text.size());
            return 1;
        }
    return 0;
}

}  // namespace

MapUnit mapUnit(const std::string& bunit)
{
    MapUnit unit;
    unit.name = bunit;
    if (!split(inCommonOrder(bunit), unit) || !beginsWithUnit(unit.name, "Jy"))
        return unit;
    std::string rest = unit.name.substr(2);
    unit.width = cutWidth(rest);
    const std::string_view area = dividedBy(lower(rest));
    unit.perPixel = area == "pixel";
    unit.isFlux = !area.empty() || trimmed(rest).empty();
    if (unit.isFlux)
        unit.name = "Jy" + (area.empty() ? std::string() : '/' + std::string(area)) + unit.width;
    else
        unit.width.clear();
    return unit;
}

int takesPrefix(const std::string& unit)
{
    MapUnit taken;
    return split(unit, taken) && taken.prefix.empty();
}

int prefixPower(double value, int digits)
{
    constexpr int mostPrefixPower = 12;
    if (value == 0 || !std::isfinite(value))
        return 0;
    // 999.99 of four digits is 1 of the next prefix
    const double size = std::fabs(value);
    const double whole = std::floor(std::log10(size));
    const double shown = std::round(size / std::pow(10.0, whole - digits + 1));
    const double carried = shown >= std::pow(10.0, digits) ? whole + 1 : whole;
    const int power = 3 * static_cast<int>(std::floor(carried / 3));
    return std::abs(power) > mostPrefixPower ? 0 : power;
}

std::string titleUnit(const std::string& unit)
{
    return (takesPrefix(unit) ? " [%s" : "~ [") + unit + ']';
}

}  // namespace pavane

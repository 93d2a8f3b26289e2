#include "tessel/sky_cards.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr double greatestParameter = 1e10;

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The number of a card's value field. An exponent may be written with D.
int numberOf(std::string_view field, double& value)
{
    std::string text(field.substr(0, field.find('/')));
    std::replace(text.begin(), text.end(), 'D', 'E');
    double read = 0;
    if (!stoval(text, read) || !std::isfinite(read))
        return 0;
    value = read;
    return 1;
}

std::string textOf(std::string_view field)
{
    const std::size_t open = field.find('\'');
    if (open == std::string_view::npos)
        return "";
    const std::string_view rest = field.substr(open + 1);
    std::string text(trimmed(rest.substr(0, rest.find('\''))));
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// The two numbers of a keyword such as PV2_1 or CD1_3 behind its letters.
int indicesOf(std::string_view key, std::string_view letters, int& first, int& second)
{
    const std::size_t bar = key.find('_');
    return key.substr(0, letters.size()) == letters && bar != std::string_view::npos &&
           stoval(key.substr(letters.size(), bar - letters.size()), first) &&
           stoval(key.substr(bar + 1), second);
}

void takeParameter(int axis, int number, double value, SkyCards& found)
{
    if (axis < 1 || axis > 2 || number < 0 || number > 29 || std::abs(value) > greatestParameter)
        return;
    for (SkyParameter& old : found.parameters)
        if (old.axis == axis && old.number == number) {
            old.value = value;
            return;
        }
    if (static_cast<int>(found.parameters.size()) < mostSkyParameters)
        found.parameters.push_back({axis, number, value});
}

}  // namespace

SkyCards readSkyCards(const std::vector<std::string>& cards)
{
    SkyCards found;
    int hasCrval[2] = {0, 0};
    for (const std::string& card : cards) {
        if (card.size() < 11)
            continue;
        const std::string_view key = trimmed(std::string_view(card).substr(0, 8));
        const std::string_view field = std::string_view(card).substr(10);
        int first = 0;
        int second = 0;
        double value = 0;
        if (key == "RADESYS" || (key == "RADECSYS" && found.radesys.empty())) {
            found.radesys = textOf(field);
            continue;
        }
        if (!numberOf(field, value))
            continue;
        if (key == "CRVAL1" || key == "CRVAL2")
            hasCrval[key.back() - '1'] = 1;
        else if (key == "LONPOLE") {
            found.lonpole = value;
            found.hasLonpole = std::abs(value) <= 360;
        } else if (key == "LATPOLE") {
            found.latpole = value;
            found.hasLatpole = std::abs(value) <= 90;
        } else if (indicesOf(key, "PV", first, second))
            takeParameter(first, second, value, found);
        else if (indicesOf(key, "CD", first, second) || indicesOf(key, "PC", first, second))
            found.isCoupled |= (first <= 2) != (second <= 2) && value != 0;
    }
    found.hasPosition = cards.empty() || (hasCrval[0] && hasCrval[1]);
    return found;
}

}  // namespace pavane

#include "tessel/sky_cards.h"

#include "tessel/HeaderCards.h"
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

std::string inCapitals(std::string_view field)
{
    std::string text = fieldText(field);
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
        const std::string_view field = valueField(card);
        if (field.empty())
            continue;
        const std::string_view key = withoutBlanks(std::string_view(card).substr(0, 8));
        int first = 0;
        int second = 0;
        double value = 0;
        if (key == "RADESYS" || (key == "RADECSYS" && found.radesys.empty())) {
            if (const std::string name = inCapitals(field); !name.empty())
                found.radesys = name;
            continue;
        }
        if (!fieldNumber(field, value))
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
